#pragma once

#include <QByteArray>
#include <QString>

namespace tavo {

// What the window remembers from run to run of a program, in settings of vireo's own, by the program's name. With
// VIREO_SHOW=fresh it remembers nothing.
namespace windowMemory {

enum class Thing
{
    Geometry,
    Layout,
    Theme,
    ScenePanel,
    ImagePanel,
    SlicesPanel
};

QByteArray recall(Thing thing);
void remember(Thing thing, const QByteArray& value);
void forget(Thing thing);

} // namespace windowMemory

} // namespace tavo
