#include "vireo/displayers/canTakeOver.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <string>
#include <typeinfo>

#include "tavo/base/debug/displayException.h"
#include "vireo/displayers/GLEventObject.h"

namespace tavo {

namespace {

struct Free
{
    void operator()(char* memory) const { std::free(memory); }
};

// As it is written in the source.
std::string nameOf(const std::type_info& type)
{
    const std::unique_ptr<char, Free> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, nullptr));
    return name ? name.get() : type.name();
}

} // namespace

bool canTakeOver(const GLEventObject& shown, const GLEventObject& newer)
{
    const MetaClass* const record = shown.getInstanceClass();
    if (record != newer.getInstanceClass())
        return false;
    if (record != GLEventObject::getClass() || typeid(shown) == typeid(newer))
        return true;
    warning("GLEventDisplayerWidget::setGLEventObject() - " + nameOf(typeid(shown)) + " and " + nameOf(typeid(newer)) +
            " have no class records of their own (see getInstanceClass), so the newer object replaces the shown one.");
    return false;
}

} // namespace tavo
