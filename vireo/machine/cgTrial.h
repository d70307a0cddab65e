#pragma once

#include <string>
#include <vector>

namespace tavo {

// Whether this build of the library has Cg programs.
bool isBuiltWithCg();

// The version of the Cg runtime; empty in a build without.
std::string getCgVersion();

// One that GLShaderCG knows a target for.
struct CgProfileTrial
{
    const char* name;
    bool isForVertices;
    bool works; // the driver has it, and the runtime compiles a small program for it
};

// Tries them in the current context, which must have the compatibility profile. None in a build without Cg.
std::vector<CgProfileTrial> tryCgProfiles();

} // namespace tavo
