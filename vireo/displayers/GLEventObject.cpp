#include "vireo/displayers/GLEventObject.h"

#include "tavo/base/objects/ClassRecord.h"

namespace tavo {

TAVO_ABSTRACT_CLASS_RECORD(GLEventObject)

GLEventObject::GLEventObject() = default;
GLEventObject::GLEventObject(const GLEventObject& other) = default;
GLEventObject& GLEventObject::operator=(const GLEventObject& other) = default;
GLEventObject::~GLEventObject() = default;

} // namespace tavo
