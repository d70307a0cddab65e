#pragma once

#include "tavo/base/Export.h"

namespace tavo {

/// What is sent to an EventDisplayer. A displayer class derives the events that it understands, and tells them apart by
/// their run-time type:
///
///     struct Progress : EventDisplayerEvent
///     {
///         int percent = 0;
///     };
///
///     void show(const EventDisplayerEvent& event)
///     {
///         if (const auto* progress = dynamic_cast<const Progress*>(&event))
///             debugOutput << progress->percent << "%\n";
///     }
class TAVO_BASE_EXPORT EventDisplayerEvent
{
public:
    virtual ~EventDisplayerEvent();
};

} // namespace tavo
