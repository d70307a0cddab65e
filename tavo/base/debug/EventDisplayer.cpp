#include "tavo/base/debug/EventDisplayer.h"

#include "tavo/base/objects/ClassRecord.h"

namespace tavo {

EventDisplayerEvent::~EventDisplayerEvent() = default;

EventDisplayer::~EventDisplayer() = default;

const MetaClass* EventDisplayer::getClass()
{
    static MetaClass* eventDisplayerMetaClass = nullptr;
    if (!eventDisplayerMetaClass)
        initClassRecord(createClassRecord<EventDisplayer>(eventDisplayerMetaClass, "EventDisplayer", nullptr),
            Object::getClass(), 1000);
    return eventDisplayerMetaClass;
}

const MetaClass* EventDisplayer::getInstanceClass() const
{
    return getClass();
}

QWidget* EventDisplayer::getWidget(QWidget* parent)
{
    if (!m_HasMadeWidget) {
        m_HasMadeWidget = true;
        m_SpecialWidget = createSpecialWidget(parent);
    }
    return m_SpecialWidget;
}

} // namespace tavo
