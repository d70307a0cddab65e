#include "vireo/displayers/GLEventObject.h"

#include "tavo/base/objects/ClassRecord.h"

namespace tavo {

MetaClass* GLEventObject::GLEventObjectMetaClass = nullptr;

GLEventObject::GLEventObject() = default;
GLEventObject::GLEventObject(const GLEventObject& other) = default;
GLEventObject& GLEventObject::operator=(const GLEventObject& other) = default;
GLEventObject::~GLEventObject() = default;

const MetaClass* GLEventObject::getClass()
{
    return createClassRecord<GLEventObject>(GLEventObjectMetaClass, "GLEventObject", nullptr);
}

const MetaClass* GLEventObject::getInstanceClass() const
{
    return getClass();
}

void GLEventObject::initMetaClass() {}

void GLEventObject::init(const MetaClass* parent)
{
    getClass();
    initClassRecord(GLEventObjectMetaClass, parent, 1000);
}

void GLEventObject::shutdown()
{
    delete GLEventObjectMetaClass; // deliberately not reset
}

} // namespace tavo
