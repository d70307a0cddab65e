#pragma once

#include "tavo/base/gui/Modifiers.h"

namespace tavo {

/// A key (a value of Qt::Key) with the modifiers that were held when it was pressed.
///
///     const GeneralKey key(Qt::Key_Left, Qt::KeyboardModifiers(Qt::ShiftModifier));
///     const bool isShifted = key.getModifiers().isShift();
class GeneralKey
{
public:
    GeneralKey(int key, Modifiers modifiers)
        : m_Key(key)
        , m_Modifiers(modifiers)
    {}

    int getKey() const { return m_Key; }
    Modifiers getModifiers() const { return m_Modifiers; }

private:
    int m_Key;
    Modifiers m_Modifiers;
};

} // namespace tavo
