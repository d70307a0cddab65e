#pragma once

#include <unordered_map>

#include "tavo/base/Export.h"

namespace tavo {

class Object;

/// Remembers what one copy operation has copied, so that an object that it meets twice is copied once. It owns nothing.
/// Drop it when an object in it dies or a copy fails.
///
///     CopyContext copies;
///     Object* const copy = object.copy(&copies);
///     Object* const same = object.copy(&copies); // the one copy again
class TAVO_BASE_EXPORT CopyContext
{
public:
    /// The copy of that object; null if there is none yet.
    Object* findCopy(const Object* original) const;

    /// Remembers the copy of that object, in place of an earlier one. The copy operation calls this.
    void addCopy(const Object* original, Object* copy);

private:
    std::unordered_map<const Object*, Object*> m_Copies;
};

} // namespace tavo
