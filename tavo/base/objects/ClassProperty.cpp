#include "tavo/base/objects/ClassProperty.h"

namespace tavo {

ClassProperty::ClassProperty(const char* name, unsigned int version, unsigned int flags)
    : m_Name(name)
    , m_Version(version)
    , m_Flags(flags)
{}

ClassProperty::~ClassProperty() = default;

} // namespace tavo
