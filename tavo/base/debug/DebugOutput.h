#pragma once

#include <string>

#include "tavo/base/Export.h"

namespace tavo {

class DebugWindow;
class EventDisplayerEvent;
class MetaClass;

// The channel on which a running application shows what it is doing: lines of text, and events that displayers of the
// sender's choice show in the debug window. There is one, debugOutput, usable from the first static initialiser to the
// last destructor.
//
// Text may come from any thread. It is kept (the last megabyte), appended to the debug window's log while there is a
// window, and written to the standard error stream while there is none.
//
// Events need a QApplication and come from its thread. The first one opens the debug window; later ones of the same
// displayer class and name go to the same section of it.
class TAVO_BASE_EXPORT DebugOutput
{
public:
    DebugOutput& operator<<(const std::string& text);
    DebugOutput& operator<<(const char* text);

    // Hands the event to the displayer of that class and name, made on the first event. The event stays the caller's;
    // what it carries passes to the displayer as the event's class says. False if no displayer got it, and with it
    // nothing that it carries: without a QApplication (said once on the standard error stream), from another thread, or
    // when the displayer cannot be made. What a displayer throws is reported, not passed on.
    bool displayEvent(const MetaClass* displayerClass, std::string name, const EventDisplayerEvent* event);

    // The debug window, null before the first event and after the QApplication has gone. It belongs to the debug
    // output.
    DebugWindow* getWindow() const;

    // The text that is kept.
    std::string getText() const;
};

extern TAVO_BASE_EXPORT DebugOutput debugOutput;

} // namespace tavo
