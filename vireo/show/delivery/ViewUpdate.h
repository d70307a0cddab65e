#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class QString;

namespace tavo {

class View;

enum class ViewKind : std::uint8_t
{
    Plot,
    Scene,
    Image,
    Slices
};

// What of a view is replaced by what was sent to it.
struct Replaced
{
    bool isAll = false;
    std::vector<std::string> names; // of curves and the like; none if it is all

    bool operator==(const Replaced& other) const { return isAll == other.isAll && names == other.names; }
};

// What was sent to one view and has not been shown. Made by any thread; applied, and its view made, in the thread of
// the window.
class ViewUpdate
{
public:
    virtual ~ViewUpdate() = default;

    // Takes over what came later. What it displaces is left in `newer`, whose end is the sender's affair. Short: it is
    // done while other threads wait.
    virtual void merge(ViewUpdate& newer) = 0;

    // What was said in it about updates to come, such as how many samples are kept of them: what is sent next is merged
    // into this. Null if there is nothing. Short, too.
    virtual std::unique_ptr<ViewUpdate> forTheNext() const { return nullptr; }

    // What of the view it replaces. Short, too.
    virtual Replaced replaced() const = 0;

    virtual std::unique_ptr<ViewUpdate> copy() const = 0;

    // Saves the data as a new view does that is sent this, which is used up; it needs no QApplication. Why they could
    // not be saved, for a person; empty if they were.
    virtual std::string saveData(const QString& file) = 0;
};

} // namespace tavo
