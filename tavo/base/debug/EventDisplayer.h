#pragma once

#include <QPointer>
#include <QWidget>

#include "tavo/base/Export.h"
#include "tavo/base/debug/EventDisplayerEvent.h"
#include "tavo/base/objects/Object.h"

namespace tavo {

// Shows the events of one name in the debug window. A subclass with a class record and a factory is all that it takes:
// the debug output creates a displayer for every name, asks it once for its widget and hands it every event.
class TAVO_BASE_EXPORT EventDisplayer : public Object
{
public:
    const MetaClass* getInstanceClass() const override;
    ~EventDisplayer() override;

    // The class record, without a factory.
    static const MetaClass* getClass();

    // The displayer's widget, made by the first call as a child of parent, which owns it; null if the displayer has
    // none, or none any more.
    QWidget* getWidget(QWidget* parent);

protected:
    // Makes the widget; called once.
    virtual QWidget* createSpecialWidget(QWidget* parent) = 0;

public:
    // Shows an event. The event belongs to the caller, the name is the one under which it was sent.
    virtual void displayEvent(const EventDisplayerEvent* event, const char* name) = 0;

private:
    QPointer<QWidget> m_SpecialWidget;
    bool m_HasMadeWidget = false;
};

} // namespace tavo
