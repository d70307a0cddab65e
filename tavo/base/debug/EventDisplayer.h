#pragma once

#include <QPointer>
#include <QWidget>

#include "tavo/base/Export.h"
#include "tavo/base/debug/EventDisplayerEvent.h"
#include "tavo/base/objects/Object.h"

namespace tavo {

/// Shows the events of one name in the debug window. The debug output makes a displayer for every name, asks it once
/// for its widget, and hands it every event. A displayer of your own is a subclass with a class record and a factory:
///
///     #include <QProgressBar>
///
///     class Gauge : public EventDisplayer
///     {
///     public:
///         const MetaClass* getInstanceClass() const override;
///         void displayEvent(const EventDisplayerEvent* event, const char* name) override;
///
///     protected:
///         QWidget* createSpecialWidget(QWidget* parent) override { return new QProgressBar(parent); }
///     };
class TAVO_BASE_EXPORT EventDisplayer : public Object
{
public:
    const MetaClass* getInstanceClass() const override;
    ~EventDisplayer() override;

    /// The class record, which has no factory.
    static const MetaClass* getClass();

    /// The displayer's widget, which the first call makes as a child of `parent`. Null if the displayer has none, or it
    /// has been destroyed.
    /// @owns The parent owns the widget.
    QWidget* getWidget(QWidget* parent);

protected:
    /// Makes the widget. Called once.
    virtual QWidget* createSpecialWidget(QWidget* parent) = 0;

public:
    /// Shows an event that was sent under that name.
    /// @owns The caller keeps the event.
    virtual void displayEvent(const EventDisplayerEvent* event, const char* name) = 0;

private:
    QPointer<QWidget> m_SpecialWidget;
    bool m_HasMadeWidget = false;
};

} // namespace tavo
