#pragma once

#include <QString>
#include <set>
#include <string>

namespace tavo {

// The file that a view's picture goes to, made of the view's name: letters, digits and what else every file system
// takes, and ".png". `taken` has the names that were given away, whose number makes another one.
QString pictureFileOf(const std::string& viewName, std::set<QString>& taken);

} // namespace tavo
