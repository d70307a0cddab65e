#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tavo {

using Calls = std::vector<std::string>;

// Writes down the gl, glu, wgl and Cg calls that are made on this thread while it lives, as text, and lets each of them
// go on to the real driver:
//
//     CallRecorder recorder;
//     texture.bind();
//     expectCalls(recorder, {"glBindTexture(GL_TEXTURE_2D, 5)"});
//
// Enumerants and bit masks appear by name, vectors by their values ("glVertex3fv((1, 2, 3))"), names of an array
// likewise ("glDeleteTextures(2, (4, 5))"), strings in quotes. A pointer is "null", a small number where it is an
// offset into a bound buffer, the name given to it by namePointer, or else "ptr". What a call makes itself (GLU calls
// GL, Cg calls GL) is not recorded; what the test makes is.
//
// Functions of GL 1.1, GLU, WGL and Cg are replaced (replaceFunction.h), and wglGetProcAddress hands out recording
// entry points. LinkedCalls.cpp, EntryPoints.cpp and CgCalls.cpp list what is known; other functions work, but are not
// recorded.
class CallRecorder
{
public:
    // Throws std::logic_error if another recorder is alive on this thread.
    CallRecorder();
    ~CallRecorder();
    CallRecorder(const CallRecorder&) = delete;
    CallRecorder& operator=(const CallRecorder&) = delete;

    // The calls so far, in the order they were made.
    const Calls& calls() const { return m_Calls; }
    void clear() { m_Calls.clear(); }

    // From now on a pointer to `start` appears as `name`, and one to the i-th byte behind it as "name+i".
    void namePointer(const void* start, const std::string& name, std::size_t sizeInBytes = 1);

    // From now on `look` is called before each recorded call goes on to the driver; what it calls is not recorded.
    void beforeEachCall(std::function<void()> look) { m_Look = std::move(look); }

    // While it lives, nothing is recorded on this thread; for support code that calls GL on a test's behalf.
    class Pause
    {
    public:
        Pause();
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
    };

    // For the recording functions: the recorder that this thread's next call belongs to, if any.
    static CallRecorder* listening();
    void add(std::string call);
    std::string describePointer(const void* pointer) const;

private:
    struct NamedRange
    {
        const char* start;
        std::size_t size;
        std::string name;
    };

    Calls m_Calls;
    std::vector<NamedRange> m_NamedRanges;
    std::function<void()> m_Look;
};

// Fails the running test, with a line-by-line difference, unless exactly these calls were recorded.
void expectCalls(const CallRecorder& recorder, const Calls& expected, const char* file = __builtin_FILE(),
    int line = __builtin_LINE());

// The calls that one operation makes.
template <typename Operation>
Calls callsOf(Operation operation)
{
    CallRecorder recorder;
    operation();
    return recorder.calls();
}

} // namespace tavo
