#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tavo {

// What a class needs of the driver, and what to expect of it where something is missing. In these words MachineReport
// speaks of the class, and the class of itself.
struct ClassNeeds
{
    struct Need
    {
        const char* extension;
        const char* without; // what happens then, as the end of a sentence
    };

    const char* name;
    std::vector<Need> needs; // the most important first
};

// All classes that use GL. They need the compatibility profile besides.
const std::vector<ClassNeeds>& classNeeds();

using HasExtension = std::function<bool(const char*)>;

// What is missing, and what happens without, as one sentence about the driver, or who else lacks it. Empty if nothing
// is missing.
std::string sayMissing(const ClassNeeds& needs, const HasExtension& has, const std::string& who = "the driver");

// What the user can do about a missing extension, where others are listed or none is.
std::string adviceOnMissing(bool anyIsListed);

// Says on the debug output, once for each class, that it cannot do its work with the driver of this process, and why.
// The class must be one of the above. Says nothing if it can.
void reportMissing(std::string_view className);

} // namespace tavo
