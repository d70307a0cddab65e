#pragma once

#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/CallRecorder.h"
#include "tests/vireo/textures/texels.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"

namespace tavo {

inline constexpr unsigned int DEPTH = GLRenderTextureFBO::FLAG_DEPTH;
inline constexpr unsigned int STENCIL = GLRenderTextureFBO::FLAG_STENCIL;
inline constexpr unsigned int FLOAT16 = GLRenderTextureFBO::FLAG_FLOAT16;
inline constexpr unsigned int FLOAT32 = GLRenderTextureFBO::FLAG_FLOAT32;
inline constexpr unsigned int RECTANGLE = GLRenderTextureFBO::FLAG_RECTANGLE;

inline std::unique_ptr<GLRenderTextureFBO> makeTarget(GLContext* context)
{
    return std::make_unique<GLRenderTextureFBO>(context);
}

inline std::unique_ptr<GLRenderTextureFBO> makeTarget(
    GLContext* context, unsigned int width, unsigned int height, unsigned int components, unsigned int flags)
{
    auto renderTexture = makeTarget(context);
    EXPECT_TRUE(renderTexture->create(width, height, components, flags));
    return renderTexture;
}

// The GL names that a render texture is made of, as recorded calls show them; "0" for none.
struct Names
{
    std::string texture;
    std::string framebuffer;
    std::string depthBuffer;
    std::string stencilBuffer;
};

inline int boundFramebuffer()
{
    return getInteger(GL_FRAMEBUFFER_BINDING_EXT);
}

inline int attachmentParameter(GLenum attachment, GLenum name)
{
    int value = 0;
    tavo::glGetFramebufferAttachmentParameterivEXT(GL_FRAMEBUFFER_EXT, attachment, name, &value);
    return value;
}

inline std::string attachedName(GLenum attachment)
{
    if (attachmentParameter(attachment, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT) == GL_NONE)
        return "0";
    return std::to_string(attachmentParameter(attachment, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT));
}

// Those of the framebuffer that is bound.
inline Names boundNames()
{
    const CallRecorder::Pause ownCalls;
    return {attachedName(GL_COLOR_ATTACHMENT0_EXT), std::to_string(boundFramebuffer()),
        attachedName(GL_DEPTH_ATTACHMENT_EXT), attachedName(GL_STENCIL_ATTACHMENT_EXT)};
}

// Those of an idle render texture.
inline Names namesOf(GLRenderTextureFBO& renderTexture)
{
    const CallRecorder::Pause ownCalls;
    renderTexture.activate();
    const Names names = boundNames();
    renderTexture.deactivate();
    return names;
}

// How many names of each kind the driver holds.
struct NumNames
{
    unsigned int textures = 0;
    unsigned int framebuffers = 0;
    unsigned int renderbuffers = 0;

    bool operator==(const NumNames&) const = default;
};

inline NumNames countNames()
{
    const CallRecorder::Pause ownCalls;
    constexpr unsigned int highestName = 10000;
    NumNames numbers;
    for (unsigned int name = 1; name < highestName; ++name) {
        numbers.textures += glIsTexture(name) ? 1 : 0;
        numbers.framebuffers += tavo::glIsFramebufferEXT(name) ? 1 : 0;
        numbers.renderbuffers += tavo::glIsRenderbufferEXT(name) ? 1 : 0;
    }
    return numbers;
}

inline Calls join(std::initializer_list<Calls> parts)
{
    Calls all;
    for (const Calls& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

// The calls of GLTexture::bind and unbind; the name is "0" for the latter.
inline Calls bindCalls(const std::string& unit, const std::string& target, const std::string& name)
{
    return {"glActiveTextureARB(" + unit + ")", "glBindTexture(" + target + ", " + name + ")"};
}

inline const std::string TO_WINDOW = "glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0)";
inline const std::string RECT = "GL_TEXTURE_RECTANGLE_ARB";

// The calls that destroy render textures without depth or stencil buffers.
inline Calls destructionCalls(const std::vector<Names>& renderTextures)
{
    Calls calls;
    for (const Names& names : renderTextures) {
        calls.push_back("glDeleteTextures(1, (" + names.texture + "))");
        calls.push_back("glDeleteFramebuffersEXT(1, (" + names.framebuffer + "))");
    }
    return calls;
}

} // namespace tavo
