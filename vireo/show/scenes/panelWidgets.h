#pragma once

#include <QComboBox>
#include <QSignalBlocker>
#include <QString>

namespace tavo {

// What the panels of views are made of.

template <typename Widget>
Widget* made(Widget* widget, const char* name, const QString& accessibleName, const QString& toolTip)
{
    widget->setObjectName(name);
    widget->setAccessibleName(accessibleName);
    widget->setToolTip(toolTip);
    return widget;
}

// As narrow as the panel is, however long what can be chosen.
QComboBox* makeComboBox(const char* name, const QString& accessibleName, const QString& toolTip);

// Adds an entry for every colour map, in the order of their names.
void addColourMaps(QComboBox& box);

// What the program changes is no choice of a person.
template <typename Box>
void setQuietly(Box* box, decltype(box->value()) value)
{
    const QSignalBlocker quiet(box);
    if (box->value() != value)
        box->setValue(value);
}

void chooseQuietly(QComboBox* box, int index);

} // namespace tavo
