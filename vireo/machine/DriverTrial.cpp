#include "vireo/machine/DriverTrial.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>

#include "vireo/context/hasFixedFunctions.h"

namespace tavo {

namespace {

// Forgets the errors that are pending, and says how many there were. A driver whose context is lost may have one for
// ever.
int takeErrors()
{
    constexpr int MOST = 16;
    int count = 0;
    while (count < MOST && glGetError() != GL_NO_ERROR)
        ++count;
    return count;
}

bool hasFailed()
{
    return takeErrors() != 0;
}

template <typename Function>
void fetch(Function& function, const char* name)
{
    function = reinterpret_cast<Function>(reinterpret_cast<void (*)()>(wglGetProcAddress(name)));
}

unsigned int bindingOf(unsigned int textures)
{
    return textures == GL_TEXTURE_2D ? GL_TEXTURE_BINDING_2D : GL_TEXTURE_BINDING_RECTANGLE_ARB;
}

const char* smallProgram(unsigned int target)
{
    return target == GL_VERTEX_PROGRAM_ARB ? "!!ARBvp1.0\nMOV result.position, vertex.position;\nEND"
                                           : "!!ARBfp1.0\nMOV result.color, program.local[0];\nEND";
}

} // namespace

// Parts of a target, which it frees, in a framebuffer that is bound while it lives.
class DriverTrial::TrialTarget
{
public:
    TrialTarget(const Functions& gl, unsigned int textures)
        : m_GL(gl)
        , m_Textures(textures)
        , m_TextureBefore(getNumber(bindingOf(textures)))
        , m_FramebufferBefore(getNumber(GL_FRAMEBUFFER_BINDING_EXT))
        , m_RenderbufferBefore(getNumber(GL_RENDERBUFFER_BINDING_EXT))
    {
        m_GL.genFramebuffers(1, &m_Framebuffer);
        m_GL.bindFramebuffer(GL_FRAMEBUFFER_EXT, m_Framebuffer);
    }

    ~TrialTarget()
    {
        m_GL.bindFramebuffer(GL_FRAMEBUFFER_EXT, static_cast<unsigned int>(m_FramebufferBefore));
        m_GL.bindRenderbuffer(GL_RENDERBUFFER_EXT, static_cast<unsigned int>(m_RenderbufferBefore));
        glBindTexture(m_Textures, static_cast<unsigned int>(m_TextureBefore));
        m_GL.deleteFramebuffers(1, &m_Framebuffer);
        for (const unsigned int renderbuffer : m_Renderbuffers)
            m_GL.deleteRenderbuffers(1, &renderbuffer);
        for (const unsigned int texture : m_Names)
            glDeleteTextures(1, &texture);
    }

    TrialTarget(const TrialTarget&) = delete;
    TrialTarget& operator=(const TrialTarget&) = delete;

    void attachTexture(
        unsigned int attachment, unsigned int internalFormat, unsigned int clientFormat, int width, int height)
    {
        unsigned int name = 0;
        glGenTextures(1, &name);
        m_Names.push_back(name);
        glBindTexture(m_Textures, name);
        glTexParameteri(m_Textures, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(m_Textures, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        const unsigned int type = clientFormat == GL_DEPTH_COMPONENT ? GL_UNSIGNED_INT : GL_UNSIGNED_BYTE;
        glTexImage2D(m_Textures, 0, static_cast<GLint>(internalFormat), width, height, 0, clientFormat, type, nullptr);
        m_GL.framebufferTexture2D(GL_FRAMEBUFFER_EXT, attachment, m_Textures, name, 0);
    }

    void attachRenderbuffer(std::initializer_list<unsigned int> attachments, unsigned int format, int width, int height)
    {
        unsigned int name = 0;
        m_GL.genRenderbuffers(1, &name);
        m_Renderbuffers.push_back(name);
        m_GL.bindRenderbuffer(GL_RENDERBUFFER_EXT, name);
        m_GL.renderbufferStorage(GL_RENDERBUFFER_EXT, format, width, height);
        for (const unsigned int attachment : attachments)
            m_GL.framebufferRenderbuffer(GL_FRAMEBUFFER_EXT, attachment, GL_RENDERBUFFER_EXT, name);
    }

    bool isComplete() const { return m_GL.checkFramebufferStatus(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT; }

private:
    const Functions& m_GL;
    unsigned int m_Textures;
    int m_TextureBefore;
    int m_FramebufferBefore;
    int m_RenderbufferBefore;
    unsigned int m_Framebuffer = 0;
    std::vector<unsigned int> m_Renderbuffers;
    std::vector<unsigned int> m_Names;
};

DriverTrial::DriverTrial()
    : m_NumErrorsBefore(takeErrors())
    , m_HasCompatibilityProfile(hasFixedFunctions())
{
    m_Extensions = ' ' + getString(GL_EXTENSIONS) + ' ';
    fetchFunctions();
    // Texels would be read from a buffer that is bound there.
    if (m_GL.bindBuffer && lists("GL_ARB_pixel_buffer_object")) {
        m_UnpackBuffer = getNumber(GL_PIXEL_UNPACK_BUFFER_BINDING_ARB);
        m_GL.bindBuffer(GL_PIXEL_UNPACK_BUFFER_ARB, 0);
    }
    takeErrors();
}

DriverTrial::~DriverTrial()
{
    if (m_UnpackBuffer != 0)
        m_GL.bindBuffer(GL_PIXEL_UNPACK_BUFFER_ARB, static_cast<unsigned int>(m_UnpackBuffer));
    takeErrors();
}

void DriverTrial::fetchFunctions()
{
    fetch(m_GL.genPrograms, "glGenProgramsARB");
    fetch(m_GL.deletePrograms, "glDeleteProgramsARB");
    fetch(m_GL.bindProgram, "glBindProgramARB");
    fetch(m_GL.programString, "glProgramStringARB");
    fetch(m_GL.getProgram, "glGetProgramivARB");
    fetch(m_GL.genBuffers, "glGenBuffersARB");
    fetch(m_GL.deleteBuffers, "glDeleteBuffersARB");
    fetch(m_GL.bindBuffer, "glBindBufferARB");
    fetch(m_GL.bufferData, "glBufferDataARB");
    fetch(m_GL.getBufferSubData, "glGetBufferSubDataARB");
    fetch(m_GL.texImage3D, "glTexImage3DEXT");
    fetch(m_GL.genFramebuffers, "glGenFramebuffersEXT");
    fetch(m_GL.deleteFramebuffers, "glDeleteFramebuffersEXT");
    fetch(m_GL.bindFramebuffer, "glBindFramebufferEXT");
    fetch(m_GL.checkFramebufferStatus, "glCheckFramebufferStatusEXT");
    fetch(m_GL.framebufferTexture2D, "glFramebufferTexture2DEXT");
    fetch(m_GL.framebufferRenderbuffer, "glFramebufferRenderbufferEXT");
    fetch(m_GL.genRenderbuffers, "glGenRenderbuffersEXT");
    fetch(m_GL.deleteRenderbuffers, "glDeleteRenderbuffersEXT");
    fetch(m_GL.bindRenderbuffer, "glBindRenderbufferEXT");
    fetch(m_GL.renderbufferStorage, "glRenderbufferStorageEXT");
}

std::string DriverTrial::getString(unsigned int name)
{
    const auto* const text = reinterpret_cast<const char*>(glGetString(name));
    takeErrors();
    return text ? text : "";
}

int DriverTrial::getNumber(unsigned int name)
{
    std::array<int, 4> numbers{}; // some have more than one
    glGetIntegerv(name, numbers.data());
    return hasFailed() ? 0 : numbers[0];
}

bool DriverTrial::lists(std::string_view extension) const
{
    return m_Extensions.find(' ' + std::string(extension) + ' ') != std::string::npos;
}

bool DriverTrial::takesProgram(unsigned int target) const
{
    const bool isListed = lists(target == GL_VERTEX_PROGRAM_ARB ? "GL_ARB_vertex_program" : "GL_ARB_fragment_program");
    if (!isListed || !m_GL.genPrograms || !m_GL.deletePrograms || !m_GL.bindProgram || !m_GL.programString ||
        !m_GL.getProgram)
        return false;
    GLint before = 0;
    m_GL.getProgram(target, GL_PROGRAM_BINDING_ARB, &before);
    unsigned int name = 0;
    m_GL.genPrograms(1, &name);
    m_GL.bindProgram(target, name);
    const char* const text = smallProgram(target);
    m_GL.programString(target, GL_PROGRAM_FORMAT_ASCII_ARB, static_cast<GLsizei>(std::strlen(text)), text);
    GLint length = 0;
    m_GL.getProgram(target, GL_PROGRAM_LENGTH_ARB, &length);
    m_GL.bindProgram(target, static_cast<unsigned int>(before));
    m_GL.deletePrograms(1, &name);
    return !hasFailed() && length > 0;
}

int DriverTrial::getProgramLimit(unsigned int target, unsigned int limit) const
{
    GLint value = 0;
    m_GL.getProgram(target, limit, &value);
    return hasFailed() ? 0 : value;
}

bool DriverTrial::hasBuffers() const
{
    if (!lists("GL_ARB_vertex_buffer_object") || !m_GL.genBuffers || !m_GL.deleteBuffers || !m_GL.bindBuffer ||
        !m_GL.bufferData || !m_GL.getBufferSubData)
        return false;
    constexpr std::array<unsigned char, 4> WRITTEN{1, 2, 3, 4};
    std::array<unsigned char, 4> read{};
    const int before = getNumber(GL_ARRAY_BUFFER_BINDING_ARB);
    unsigned int name = 0;
    m_GL.genBuffers(1, &name);
    m_GL.bindBuffer(GL_ARRAY_BUFFER_ARB, name);
    m_GL.bufferData(GL_ARRAY_BUFFER_ARB, WRITTEN.size(), WRITTEN.data(), GL_STATIC_DRAW_ARB);
    m_GL.getBufferSubData(GL_ARRAY_BUFFER_ARB, 0, read.size(), read.data());
    m_GL.bindBuffer(GL_ARRAY_BUFFER_ARB, static_cast<unsigned int>(before));
    m_GL.deleteBuffers(1, &name);
    return !hasFailed() && read == WRITTEN;
}

bool DriverTrial::hasFramebuffers() const
{
    return m_GL.genFramebuffers && m_GL.deleteFramebuffers && m_GL.bindFramebuffer && m_GL.checkFramebufferStatus &&
           m_GL.framebufferTexture2D && m_GL.framebufferRenderbuffer && m_GL.genRenderbuffers &&
           m_GL.deleteRenderbuffers && m_GL.bindRenderbuffer && m_GL.renderbufferStorage &&
           canDrawInto({GL_TEXTURE_2D, GL_RGBA}, 4, 4);
}

bool DriverTrial::canDrawInto(const TargetKind& kind) const
{
    constexpr int SIZE = 16;
    return hasFramebuffers() && canDrawInto(kind, SIZE, SIZE);
}

bool DriverTrial::canDrawInto(const TargetKind& kind, int width, int height) const
{
    using Part = TargetKind::Part;
    bool isComplete = false;
    {
        TrialTarget target(m_GL, kind.textures);
        if (kind.colours != 0)
            target.attachTexture(GL_COLOR_ATTACHMENT0_EXT, kind.colours, GL_RGBA, width, height);
        else {
            glDrawBuffer(GL_NONE);
            glReadBuffer(GL_NONE);
        }
        if (kind.depth == Part::TEXTURE)
            target.attachTexture(GL_DEPTH_ATTACHMENT_EXT, GL_DEPTH_COMPONENT24, GL_DEPTH_COMPONENT, width, height);
        else if (kind.depth == Part::BUFFER)
            target.attachRenderbuffer({GL_DEPTH_ATTACHMENT_EXT}, GL_DEPTH_COMPONENT24, width, height);
        else if (kind.depth == Part::PACKED)
            target.attachRenderbuffer(
                {GL_DEPTH_ATTACHMENT_EXT, GL_STENCIL_ATTACHMENT_EXT}, GL_DEPTH24_STENCIL8_EXT, width, height);
        if (kind.stencil == Part::BUFFER)
            target.attachRenderbuffer({GL_STENCIL_ATTACHMENT_EXT}, GL_STENCIL_INDEX, width, height);
        isComplete = target.isComplete();
    }
    return !hasFailed() && isComplete;
}

bool DriverTrial::takesTexture(unsigned int proxy, int size) const
{
    if (proxy == GL_PROXY_TEXTURE_3D)
        m_GL.texImage3D(proxy, 0, GL_RGBA, size, size, size, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    else
        glTexImage2D(proxy, 0, GL_RGBA, size, size, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    GLint width = 0;
    glGetTexLevelParameteriv(proxy, 0, GL_TEXTURE_WIDTH, &width);
    return !hasFailed() && width == size;
}

int DriverTrial::getLargestTexture(unsigned int proxy, unsigned int limit) const
{
    if (proxy == GL_PROXY_TEXTURE_3D && !m_GL.texImage3D)
        return 0;
    int size = getNumber(limit);
    while (size > 0 && !takesTexture(proxy, size))
        size /= 2;
    return size;
}

int DriverTrial::getLongestTarget() const
{
    int size = std::min(getNumber(GL_MAX_RENDERBUFFER_SIZE_EXT), getNumber(GL_MAX_TEXTURE_SIZE));
    while (size > 0 && !(hasFramebuffers() && canDrawInto({GL_TEXTURE_2D, GL_RGBA}, size, 1)))
        size /= 2;
    return size;
}

} // namespace tavo
