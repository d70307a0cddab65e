#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "vireo/Export.h"

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

// What a class finds in the core profile, which lacks what it draws with, and what to do about it.
extern const char* const CORE_PROFILE_ONLY;
extern const char* const GET_COMPATIBILITY;
// What a Cg program finds in a context that is not made through GLX, and what to do.
extern const char* const UNSEEN_BY_CG;
extern const char* const GET_SEEN_BY_CG;

// Says on the debug output that a class cannot do its work with the driver of this process, and why; nothing if it can.
// The class must be one of the above. Only the first call for each does anything. True, so that a class can keep it:
//
//     static const bool isReported = reportMissing("GLTexture2D");
//
// Exported for libvireoshow.
VIREO_EXPORT bool reportMissing(std::string_view className);

// Says so for another reason, in the same words.
void reportRefusal(const std::string& className, const std::string& finding, const std::string& advice);

} // namespace tavo
