#pragma once

#include <unordered_map>

#include "tavo/base/Export.h"

namespace tavo {

class Object;

// What one copy operation has copied so far, so that an object that it meets twice is copied once. It owns nothing, and
// is of use only as long as the objects in it live and no copy has failed.
class TAVO_BASE_EXPORT CopyContext
{
public:
    // The copy of that object, or null if it has not been copied yet.
    Object* findCopy(const Object* original) const;

    void addCopy(const Object* original, Object* copy);

private:
    std::unordered_map<const Object*, Object*> m_Copies;
};

} // namespace tavo
