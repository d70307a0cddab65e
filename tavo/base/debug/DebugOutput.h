#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <functional>
#include <iomanip>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>

#include "tavo/base/Export.h"

namespace tavo {

class DebugWindow;
class EventDisplayerEvent;
class MetaClass;

/// What std::setw and the like return. The debug output does not accept these: each piece of text has its own stream,
/// so a format would be lost before the next piece.
template <typename T>
concept StreamFormat = std::same_as<T, decltype(std::setw(0))> || std::same_as<T, decltype(std::setprecision(0))> ||
    std::same_as<T, decltype(std::setfill(' '))> || std::same_as<T, decltype(std::setbase(0))> ||
    std::same_as<T, decltype(std::setiosflags({}))> || std::same_as<T, decltype(std::resetiosflags({}))>;

/// Whether it is a pointer to characters.
template <typename T>
inline constexpr bool isCharacters =
    std::is_pointer_v<std::decay_t<T>>&& std::is_convertible_v<std::decay_t<T>, const char*>;

/// How many kinds of text it converts to.
template <typename T>
inline constexpr int numTextsOf = int(std::is_convertible_v<const T&, const char*>) +
                                  int(std::is_convertible_v<const T&, std::string>) +
                                  int(std::is_convertible_v<const T&, std::string_view>);

/// Characters, or what converts to exactly one kind of text, such as a path. It is written as that text. What converts
/// to several kinds is left to its operator<<.
template <typename T>
concept Text = isCharacters<T> ||(numTextsOf<T> == 1);

/// What has an operator<< for std::ostream and is not text.
template <typename T>
concept Streamable = !Text<T> && !std::is_function_v<std::remove_pointer_t<T>> && !StreamFormat<T> &&
                     requires(std::ostream & stream, const T& value)
{
    stream << value;
};

/// The channel on which a running application shows what it is doing: lines of text, and events that displayers show in
/// the debug window. There is one, `debugOutput`, usable from the first static initialiser to the last destructor.
///
///     debugOutput << "step " << 3 << " took " << 0.25 << " seconds\n";
///
/// Text may come from any thread. Its last megabyte is kept. While there is a debug window, text goes to its log, in
/// one piece per frame, so that a flood of it leaves the window usable; while there is none, it goes to the standard
/// error stream, with what still waited for the log. The log keeps the last 10,000 lines, of 1,000 characters each.
///
/// Events need a QApplication and must come from its thread. The first one opens the debug window. Later ones of the
/// same displayer class and name go to the same section of it.
class TAVO_BASE_EXPORT DebugOutput
{
public:
    DebugOutput& operator<<(const std::string& text);
    DebugOutput& operator<<(const char* text);
    DebugOutput& operator<<(std::string_view text);
    DebugOutput& operator<<(std::nullptr_t) { return *this << static_cast<const char*>(nullptr); }

    /// Writes whatever a stream can write. Numbers are written with the fewest digits that read back exactly. Signed
    /// and unsigned char are numbers; a bool is "true" or "false". What the value's own operator throws is passed on,
    /// and nothing is written.
    template <Streamable T>
    DebugOutput& operator<<(const T& value)
    {
        using Value = std::remove_cv_t<T>;
        if constexpr (std::same_as<Value, char>)
            return *this << std::string(1, value);
        else if constexpr (std::is_arithmetic_v<T> && !std::same_as<Value, bool>)
            return writeNumber(Value(value));
        else
            return writeBy([&value](std::ostream& stream) { stream << value; });
    }

    /// Not available: use formats with a std::ostream of your own.
    template <StreamFormat T>
    DebugOutput& operator<<(const T& format) = delete;
    DebugOutput& operator<<(std::ios_base& (*format)(std::ios_base&)) = delete;

    /// Takes std::endl, std::ends and std::flush. There is nothing to flush.
    DebugOutput& operator<<(std::ostream& (*manipulator)(std::ostream&)) { return writeBy(manipulator); }

    /// Hands the event to the displayer of that class and name; the first event makes the displayer. Returns false if
    /// no displayer got the event: there is no QApplication (said once on the standard error stream), this is not its
    /// thread, or the displayer cannot be made. What a displayer throws is reported, not passed on.
    /// @owns The caller keeps the event. What it carries passes to the displayer as the event's class says, but only if
    /// this returns true.
    bool displayEvent(const MetaClass* displayerClass, std::string name, const EventDisplayerEvent* event);

    /// The debug window; null until the first event or requireWindow() makes it, and after the QApplication has gone.
    /// In the QApplication's thread its log holds all text so far.
    /// @owns The debug output owns the window.
    DebugWindow* getWindow() const;

    /// The debug window. The first call makes it, and leaves it hidden.
    /// @needs A QApplication, and its thread.
    DebugWindow& requireWindow();

    /// Says who makes the debug window when it is needed next, for libraries that bring one of their own; null for a
    /// plain one. Any thread may call this.
    static void setWindowMaker(DebugWindow* (*maker)());

    /// The text that is kept.
    std::string getText() const;

private:
    template <typename Number>
    DebugOutput& writeNumber(Number number)
    {
        constexpr std::size_t MOST_CHARACTERS = 64;
        char text[MOST_CHARACTERS];
        std::to_chars_result result{};
        if constexpr (std::is_floating_point_v<Number>)
            result = std::to_chars(text, text + MOST_CHARACTERS, number, std::chars_format::general);
        else
            result = std::to_chars(text, text + MOST_CHARACTERS, number);
        return *this << std::string_view(text, static_cast<std::size_t>(result.ptr - text));
    }

    DebugOutput& writeBy(const std::function<void(std::ostream&)>& print);
};

extern TAVO_BASE_EXPORT DebugOutput debugOutput;

} // namespace tavo
