#pragma once

#include <Qt>

namespace tavo {

/// The modifier keys held during an event.
///
///     const Modifiers modifiers(Qt::ControlModifier);
class Modifiers
{
public:
    Modifiers(QFlags<Qt::KeyboardModifier> modifiers = Qt::NoModifier)
        : m_Modifiers(modifiers)
    {}

    bool isShift() const { return m_Modifiers.testFlag(Qt::ShiftModifier); }
    bool isControl() const { return m_Modifiers.testFlag(Qt::ControlModifier); }
    bool isAlt() const { return m_Modifiers.testFlag(Qt::AltModifier); }

private:
    QFlags<Qt::KeyboardModifier> m_Modifiers;
};

} // namespace tavo
