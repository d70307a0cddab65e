#pragma once

#include "tavo/base/Export.h"

namespace tavo {

// What is sent to an EventDisplayer. Each displayer class derives the events it understands and tells them apart by
// their run-time type.
class TAVO_BASE_EXPORT EventDisplayerEvent
{
public:
    virtual ~EventDisplayerEvent();
};

} // namespace tavo
