#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "vireo/show/scenes/SceneUpdate.h"

namespace tavo {

class SceneItem;

// What is saved of an item, as it was sent.
struct ItemData
{
    struct Numbers
    {
        std::vector<std::string> names; // one for each column
        NumberTuples tuples;
        bool areOfParts;
    };

    ItemShape shape;
    std::vector<Numbers> numbers; // besides the shape's own
};

// Items as comma-separated values: a row for each point, with its coordinates and all its numbers as they were sent,
// and behind them one for each face, with the numbers of its vertices and its own. Segments and stretches of lines have
// rows if they have numbers of their own. Of several items the first column has the paths. The text comes in pieces,
// one for each call, and then an empty one: see saveFile().
std::function<QByteArray()> sceneAsText(const std::map<std::string, ItemData>& items);

// Saves that text in a file whose name ends with "csv". Why it could not be saved, for a person; empty if it was.
std::string saveScene(const QString& file, const std::map<std::string, SceneItem>& items);

} // namespace tavo
