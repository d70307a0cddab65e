#include "vireo/show/plots/ShownCurves.h"

namespace tavo {

void ShownCurves::toggle(const std::string& name)
{
    if (m_Now.names.erase(name) == 0)
        m_Now.names.insert(name);
}

void ShownCurves::isolate(const std::string& name)
{
    const std::set<std::string> alone{name};
    if (m_Now.areShown && m_Now.names == alone) {
        m_Now = m_Before;
        return;
    }
    if (!m_Now.areShown)
        m_Before = m_Now;
    m_Now = {alone, true};
}

} // namespace tavo
