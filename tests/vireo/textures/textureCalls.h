#pragma once

#include <string>

#include "tests/support/CallRecorder.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {

// Data of a few texels, named "data" in recorded calls.
inline char DATA[64] = {};

template <typename Operation>
Calls callsWithData(Operation operation)
{
    CallRecorder recorder;
    recorder.namePointer(DATA, "data");
    operation();
    return recorder.calls();
}

// What textures are told about their sampling: filters, and what lies beyond their edges.
inline const Calls REPEATING{"GL_TEXTURE_MAG_FILTER, GL_LINEAR", "GL_TEXTURE_MIN_FILTER, GL_LINEAR",
    "GL_TEXTURE_WRAP_S, GL_REPEAT", "GL_TEXTURE_WRAP_T, GL_REPEAT"};
inline const Calls NEAREST{"GL_TEXTURE_MAG_FILTER, GL_NEAREST", "GL_TEXTURE_MIN_FILTER, GL_NEAREST",
    "GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE", "GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE",
    "GL_TEXTURE_WRAP_R, GL_CLAMP_TO_EDGE"};

// The calls that select unit 0, bind the texture and write its parameters, and those that follow.
inline Calls callsAfterBinding(
    const GLTexture& texture, const std::string& target, const Calls& parameters, const Calls& others = {})
{
    Calls calls{"glActiveTextureARB(GL_TEXTURE0)",
        "glBindTexture(" + target + ", " + std::to_string(texture.getTextureID()) + ")"};
    for (const std::string& parameter : parameters)
        calls.push_back("glTexParameteri(" + target + ", " + parameter + ")");
    calls.insert(calls.end(), others.begin(), others.end());
    return calls;
}

// The call of glTexImage2D or glTexImage3DEXT for the first level; the size is such as "4, 3".
inline std::string texImageCall(const std::string& function, const std::string& target,
    const std::string& internalFormat, const std::string& size, const std::string& clientFormat,
    const std::string& typeAndData)
{
    return function + "(" + target + ", 0, " + internalFormat + ", " + size + ", 0, " + clientFormat + ", " +
           typeAndData + ")";
}

} // namespace tavo
