#pragma once

#include <map>
#include <string>

#include "vireo/show/scenes/ItemChoice.h"

namespace tavo {

// What a person has chosen of the items of a scene, by their paths. It stays when the items go and come again.
class SceneChoices
{
public:
    // Of an item; whether it is visible may have been chosen of a branch that it is in.
    ItemChoice of(const std::string& path) const;

    // All but whether it is visible.
    void set(const std::string& path, const ItemChoice& choice);

    // Of all that is and comes to be in a branch.
    void setVisible(const std::string& branch, bool isVisible);

    // Forgets what was chosen of a branch and of what is in it.
    void reset(const std::string& branch);

    // Whether anything was chosen of a branch, or of what is in it.
    bool areAnyIn(const std::string& branch) const;

private:
    std::map<std::string, ItemChoice> m_Choices;
};

} // namespace tavo
