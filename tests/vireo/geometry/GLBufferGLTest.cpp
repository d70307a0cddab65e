#include <gmock/gmock.h>
#include <memory>

#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/Undestroyed.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/GLBuffer.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

// A buffer with its protected parts in reach.
class OpenBuffer : public GLBuffer
{
public:
    explicit OpenBuffer(GLContext* context, unsigned int target = GL_ARRAY_BUFFER_ARB)
        : GLBuffer(context, target)
    {}

    using GLBuffer::init;
    using GLBuffer::m_BufferId;
    using GLBuffer::m_SizeInBytes;
    using GLBuffer::m_Target;
    using GLBuffer::readElements;
    using GLBuffer::readFromBuffer;
    using GLBuffer::writeElements;
    using GLBuffer::writeToBuffer;

    std::string name() const { return std::to_string(m_BufferId); }
};

class GLBufferGLTest : public ContextTest
{
protected:
    std::unique_ptr<OpenBuffer> makeBuffer(unsigned int sizeInBytes)
    {
        auto buffer = std::make_unique<OpenBuffer>(context());
        EXPECT_TRUE(buffer->init(sizeInBytes, GL_STATIC_DRAW_ARB));
        return buffer;
    }

    static int boundBuffer(GLenum binding = GL_ARRAY_BUFFER_BINDING_ARB)
    {
        int name = 0;
        glGetIntegerv(binding, &name);
        return name;
    }

    std::vector<unsigned char> m_Read;
    std::vector<unsigned char> m_Data{1, 2, 3, 4, 5, 6, 7, 8};
};

TEST_F(GLBufferGLTest, HasANameAndNoStorageAtFirst)
{
    CallRecorder recorder;
    const OpenBuffer buffer(context(), GL_ELEMENT_ARRAY_BUFFER_ARB);
    expectCalls(recorder, {"glGenBuffersARB(1, ptr)"});
    EXPECT_NE(buffer.m_BufferId, 0u);
    EXPECT_EQ(buffer.getSizeInBytes(), 0u);
    EXPECT_EQ(buffer.m_Target, GL_ELEMENT_ARRAY_BUFFER_ARB);
    EXPECT_EQ(buffer.getContext(), context());
}

TEST_F(GLBufferGLTest, BindsToItsTarget)
{
    OpenBuffer buffer(context(), GL_ELEMENT_ARRAY_BUFFER_ARB);
    EXPECT_THAT(callsOf([&] { buffer.bind(); }),
        ElementsAre("glBindBufferARB(GL_ELEMENT_ARRAY_BUFFER_ARB, " + buffer.name() + ")"));
    EXPECT_EQ(boundBuffer(GL_ELEMENT_ARRAY_BUFFER_BINDING_ARB), static_cast<int>(buffer.m_BufferId));
    EXPECT_THAT(callsOf([&] { buffer.unbind(); }), ElementsAre("glBindBufferARB(GL_ELEMENT_ARRAY_BUFFER_ARB, 0)"));
    EXPECT_EQ(boundBuffer(GL_ELEMENT_ARRAY_BUFFER_BINDING_ARB), 0);
}

TEST_F(GLBufferGLTest, MakesItsStorage)
{
    OpenBuffer buffer(context());
    CallRecorder recorder;
    EXPECT_TRUE(buffer.init(40, GL_DYNAMIC_DRAW_ARB));
    expectCalls(recorder, {"glBindBufferARB(GL_ARRAY_BUFFER_ARB, " + buffer.name() + ")",
                              "glBufferDataARB(GL_ARRAY_BUFFER_ARB, 40, null, GL_DYNAMIC_DRAW_ARB)", "glGetError()",
                              "glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0)"});
    EXPECT_EQ(buffer.getSizeInBytes(), 40u);

    EXPECT_TRUE(buffer.init(12, GL_STATIC_DRAW_ARB)) << "a second time";
    EXPECT_EQ(buffer.getSizeInBytes(), 12u);
}

TEST_F(GLBufferGLTest, StaysBoundWithItsNewSizeIfStorageIsRefused)
{
    OpenBuffer buffer(context());
    CallRecorder recorder;
    EXPECT_FALSE(buffer.init(40, GL_RGBA));
    expectCalls(recorder, {"glBindBufferARB(GL_ARRAY_BUFFER_ARB, " + buffer.name() + ")",
                              "glBufferDataARB(GL_ARRAY_BUFFER_ARB, 40, null, GL_RGBA)", "glGetError()"});
    EXPECT_EQ(buffer.getSizeInBytes(), 40u);
    EXPECT_EQ(boundBuffer(), static_cast<int>(buffer.m_BufferId));
}

TEST_F(GLBufferGLTest, TakesAnErrorFromBeforeForItsOwn)
{
    OpenBuffer buffer(context());
    glEnable(0xFFFFFFFF);
    EXPECT_FALSE(buffer.init(40, GL_STATIC_DRAW_ARB));
    EXPECT_THAT(drainErrors(), IsEmpty());
}

TEST_F(GLBufferGLTest, WritesAndReadsBytes)
{
    const auto buffer = makeBuffer(8);
    CallRecorder recorder;
    recorder.namePointer(m_Data.data(), "data");
    buffer->writeToBuffer(m_Data.data(), 2, 6);
    expectCalls(recorder,
        {"glBindBufferARB(GL_ARRAY_BUFFER_ARB, " + buffer->name() + ")",
            "glBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 2, 6, data)", "glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0)"});

    m_Read.resize(4);
    recorder.namePointer(m_Read.data(), "read");
    recorder.clear();
    buffer->readFromBuffer(m_Read, 4, 4);
    expectCalls(recorder,
        {"glBindBufferARB(GL_ARRAY_BUFFER_ARB, " + buffer->name() + ")",
            "glGetBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 4, 4, read)", "glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0)"});
    EXPECT_THAT(m_Read, ElementsAre(3, 4, 5, 6));
}

TEST_F(GLBufferGLTest, GivesWhatItReadsTheSizeOfTheRange)
{
    const auto buffer = makeBuffer(8);
    buffer->writeToBuffer(m_Data.data(), 0, 8);
    buffer->readFromBuffer(m_Read, 0, 3);
    EXPECT_THAT(m_Read, ElementsAre(1, 2, 3)) << "from nothing";
    m_Read.assign(20, 9);
    buffer->readFromBuffer(m_Read, 6, 2);
    EXPECT_THAT(m_Read, ElementsAre(7, 8)) << "from more";
    buffer->readFromBuffer(m_Read, 8, 0);
    EXPECT_THAT(m_Read, IsEmpty());
}

TEST_F(GLBufferGLTest, RefusesRangesThatEndBeyondIt)
{
    const auto buffer = makeBuffer(8);
    buffer->writeToBuffer(m_Data.data(), 0, 8);
    const auto write = [&](int offset, unsigned int size) { buffer->writeToBuffer(m_Data.data(), offset, size); };
    const auto read = [&](int offset, unsigned int size) { buffer->readFromBuffer(m_Read, offset, size); };
    const char* const writeMessage = "GLBuffer::writeToBuffer | out of range!";
    const char* const readMessage = "GLBuffer::readFromBuffer | out of range!";
    const auto attempts = [&] {
        EXPECT_THAT([&] { write(0, 9); }, ThrowsMessage<PException>(writeMessage));
        EXPECT_THAT([&] { write(1, 8); }, ThrowsMessage<PException>(writeMessage));
        EXPECT_THAT([&] { write(-4, 3); }, ThrowsMessage<PException>(writeMessage));
        EXPECT_THAT([&] { read(0, 9); }, ThrowsMessage<PException>(readMessage));
        EXPECT_THAT([&] { read(8, 1); }, ThrowsMessage<PException>(readMessage));
    };
    EXPECT_THAT(callsOf(attempts), IsEmpty());
    EXPECT_THAT(m_Read, IsEmpty());
    read(0, 8);
    EXPECT_EQ(m_Read, m_Data) << "nothing was lost";
}

TEST_F(GLBufferGLTest, AddsOffsetAndSizeIn32Bits)
{
    const auto buffer = makeBuffer(8);
    EXPECT_THAT(callsOf([&] { buffer->writeToBuffer(m_Data.data(), -4, 8); }),
        testing::Contains("glBufferSubDataARB(GL_ARRAY_BUFFER_ARB, -4, 8, ptr)"))
        << "which is 4 in 32 bits";
    EXPECT_THAT(drainErrors(), ElementsAre(GL_INVALID_VALUE));
}

// A buffer that is not as large as it says, so that no driver needs the memory.
TEST_F(GLBufferGLTest, FindsElementsBeyond2GiB)
{
    const auto buffer = makeBuffer(8);
    buffer->m_SizeInBytes = 0xFFFFFFFF;
    EXPECT_THAT(callsOf([&] { buffer->writeElements(m_Data.data(), 0x10000000, 1, 8); }),
        testing::Contains("glBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 2147483648, 8, ptr)"));
    EXPECT_THAT(callsOf([&] { buffer->readElements(m_Read, 0x1FFFFFFE, 1, 8); }),
        testing::Contains("glGetBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 4294967280, 8, ptr)"));
    EXPECT_THAT(drainErrors(), ElementsAre(GL_INVALID_VALUE)) << "which stays one until it is asked for";
}

TEST_F(GLBufferGLTest, RefusesElementsThatEndBeyond4GiB)
{
    const auto buffer = makeBuffer(8);
    buffer->m_SizeInBytes = 0xFFFFFFFF;
    EXPECT_THAT(callsOf([&] {
        EXPECT_THAT([&] { buffer->writeElements(m_Data.data(), 0x1FFFFFFF, 1, 8); },
            ThrowsMessage<PException>("GLBuffer::writeToBuffer | out of range!"));
        EXPECT_THAT([&] { buffer->readElements(m_Read, 0x10000000, 0x10000001, 8); },
            ThrowsMessage<PException>("GLBuffer::readFromBuffer | out of range!"));
        EXPECT_THAT([&] { buffer->writeElements(m_Data.data(), 0x20000000, 1, 8); },
            ThrowsMessage<PException>("GLBuffer::writeToBuffer | out of range!"));
    }),
        IsEmpty());
    EXPECT_THAT(m_Read, IsEmpty());
}

TEST_F(GLBufferGLTest, TakesOnlyEmptyRangesBeforeInit)
{
    OpenBuffer buffer(context());
    EXPECT_THROW(buffer.writeToBuffer(m_Data.data(), 0, 1), PException);
    EXPECT_THROW(buffer.readFromBuffer(m_Read, 0, 1), PException);
    buffer.writeToBuffer(m_Data.data(), 0, 0);
    buffer.readFromBuffer(m_Read, 0, 0);
    EXPECT_THAT(m_Read, IsEmpty());
}

TEST_F(GLBufferGLTest, DeletesItsNameAtOnceInAnActiveTree)
{
    auto buffer = makeBuffer(8);
    const std::string name = buffer->name();
    EXPECT_THAT(callsOf([&] { buffer.reset(); }), ElementsAre("glDeleteBuffersARB(1, (" + name + "))"));
}

TEST_F(GLBufferGLTest, LeavesItsNameToAnInactiveTree)
{
    auto buffer = makeBuffer(8);
    const std::string name = buffer->name();
    context()->deactivate();
    EXPECT_THAT(callsOf([&] { buffer.reset(); }), IsEmpty());
    EXPECT_THAT(callsOf([&] { context()->activate(); }), testing::Contains("glDeleteBuffersARB(1, (" + name + "))"));
}

TEST_F(GLBufferGLTest, GivesItsNameToItsDyingContext)
{
    const auto buffer = makeBuffer(8);
    EXPECT_THAT(callsOf([&] { destroyContext(); }), ElementsAre("glDeleteBuffersARB(1, (" + buffer->name() + "))"));
    EXPECT_FALSE(buffer->isValid());
}

TEST_F(GLBufferGLTest, IsLostWithAnInactiveContext)
{
    auto buffer = makeBuffer(8);
    context()->deactivate();
    EXPECT_THAT(callsOf([&] {
        destroyContext();
        buffer.reset();
    }),
        IsEmpty());
    mainContext().makeCurrent();
}

TEST_F(GLBufferGLTest, RefusesEverythingWithoutAContext)
{
    const auto buffer = makeBuffer(8);
    destroyContext();
    const auto attempts = [&] {
        EXPECT_THAT([&] { buffer->init(8, GL_STATIC_DRAW_ARB); },
            ThrowsMessage<PException>("GLBuffer::init() - invalid context"));
        EXPECT_THAT([&] { buffer->bind(); }, ThrowsMessage<PException>("GLBuffer::bind() - invalid context"));
        EXPECT_THAT([&] { buffer->unbind(); }, ThrowsMessage<PException>("GLBuffer::unbind() - invalid context"));
        EXPECT_THAT([&] { buffer->writeToBuffer(m_Data.data(), 0, 100); },
            ThrowsMessage<PException>("GLBuffer::writeToBuffer() - invalid context"));
        EXPECT_THAT([&] { buffer->readFromBuffer(m_Read, 0, 100); },
            ThrowsMessage<PException>("GLBuffer::readFromBuffer() - invalid context"));
        EXPECT_THAT([&] { buffer->onDeleteContext(); },
            ThrowsMessage<PException>("GLBuffer::onDeleteContext() - invalid context"));
    };
    EXPECT_THAT(callsOf(attempts), IsEmpty());
    EXPECT_EQ(buffer->getSizeInBytes(), 8u) << "a refused init changes nothing";
}

TEST_F(GLBufferGLTest, SharesItsNameWithItsCopies)
{
    const auto buffer = makeBuffer(8);
    CallRecorder recorder;
    const Undestroyed<OpenBuffer> copy(*buffer);
    EXPECT_EQ(copy->m_BufferId, buffer->m_BufferId);
    EXPECT_EQ(copy->m_Target, buffer->m_Target);
    EXPECT_EQ(copy->getSizeInBytes(), 8u);
    EXPECT_EQ(copy->getContext(), context());
    expectCalls(recorder, {});
}

} // namespace
} // namespace tavo
