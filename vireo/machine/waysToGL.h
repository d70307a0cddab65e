#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tavo/platform/wgl.h"

namespace tavo {

// A native context that nobody sees, for asking the driver. It is not made current.
class TrialContext
{
public:
    virtual ~TrialContext() = default;

    HDC getDC() const { return m_DC; }
    HGLRC getRC() const { return m_RC; }

protected:
    HDC m_DC = nullptr;
    HGLRC m_RC = nullptr;
};

// One of the ways in which programs of this system get contexts.
struct WayToGL
{
    const char* name;
    // Null if there is none; then `refusal` says why.
    std::unique_ptr<TrialContext> (*makeContext)(std::string& refusal);
    const char* advice; // what to do where there is none
};

// That which windows use first.
const std::vector<WayToGL>& waysToGL();

// What to do on this system where the library was built without Cg programs.
extern const char* const GET_CG;

} // namespace tavo
