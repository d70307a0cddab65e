#pragma once

#include <functional>

#include "tavo/base/gui/Camera.h"
#include "tavo/base/objects/ClassRecord.h"
#include "vireo/displayers/GLEventConfiguration.h"
#include "vireo/displayers/GLEventObject.h"

namespace tavo {

// An event object for tests: does what it is told to when it draws, and tells what was done to it.
class TestEventObject : public GLEventObject
{
public:
    // What has happened to all of them.
    static inline int s_NumLiving = 0;
    static inline int s_NumUpdates = 0;
    static inline int s_NumDrawn = 0;
    // The camera that the last one was drawn with.
    static inline Camera s_Camera;

    explicit TestEventObject(const Box3f& box = {{0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}})
        : m_Box(box)
    {
        ++s_NumLiving;
    }
    TestEventObject(const TestEventObject&) = delete;
    TestEventObject& operator=(const TestEventObject&) = delete;
    ~TestEventObject() override
    {
        --s_NumLiving;
        whenDestroyed();
    }

    const MetaClass* getInstanceClass() const override { return getClass(); }

    Box3f getBoundingBox() override
    {
        whenAskedForBox();
        return m_Box;
    }

    void drawGL(QGLWidget*, Camera& camera) override
    {
        ++s_NumDrawn;
        s_Camera = camera;
        whenDrawn();
    }

    GLEventConfiguration* createConfigWindow(QWidget* parent) override
    {
        whenConfigured();
        return hasPanel ? new Panel(parent, this) : nullptr;
    }

    void updateData(GLEventObject* newer) override
    {
        whenUpdated();
        ++s_NumUpdates;
        m_Box = dynamic_cast<TestEventObject&>(*newer).m_Box;
    }

    static const MetaClass* getClass()
    {
        static MetaClass* record = nullptr;
        return createClassRecord<TestEventObject>(record, "TestEventObject", nullptr);
    }

    std::function<void()> whenDrawn = [] {};
    std::function<void()> whenAskedForBox = [] {};
    std::function<void()> whenConfigured = [] {};
    std::function<void()> whenUpdated = [] {};
    std::function<void()> whenDestroyed = [] {};
    std::function<void()> whenPanelIsDestroyed = [] {};
    bool hasPanel = false;

private:
    struct Panel : GLEventConfiguration
    {
        Panel(QWidget* parent, TestEventObject* object)
            : GLEventConfiguration(parent, object)
            , whenDestroyed(object->whenPanelIsDestroyed)
        {}
        ~Panel() override { whenDestroyed(); }

        std::function<void()> whenDestroyed;
    };

    Box3f m_Box;
};

// One of another class.
class OtherTestEventObject : public TestEventObject
{
public:
    const MetaClass* getInstanceClass() const override
    {
        static MetaClass* record = nullptr;
        return createClassRecord<OtherTestEventObject>(record, "OtherTestEventObject", nullptr);
    }
};

} // namespace tavo
