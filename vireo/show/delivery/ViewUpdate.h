#pragma once

#include <cstdint>
#include <memory>

class QWidget;

namespace tavo {

class View;

enum class ViewKind : std::uint8_t
{
    Plot
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

    // What of the view it will replace: an update of the same kind without data, for View::makeRoom(). What comes later
    // only adds to it. Short, too.
    virtual std::unique_ptr<ViewUpdate> replaced() const = 0;
};

} // namespace tavo
