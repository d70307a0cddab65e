#include "tavo/base/objects/CopyContext.h"

namespace tavo {

Object* CopyContext::findCopy(const Object* original) const
{
    const auto found = m_Copies.find(original);
    return found != m_Copies.end() ? found->second : nullptr;
}

void CopyContext::addCopy(const Object* original, Object* copy)
{
    m_Copies.insert_or_assign(original, copy);
}

} // namespace tavo
