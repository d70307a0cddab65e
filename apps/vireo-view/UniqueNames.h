#pragma once

#include <map>
#include <set>
#include <string>

namespace vireo_view {

// Tells names apart: the second "a" becomes "a (2)".
class UniqueNames
{
public:
    std::string add(const std::string& name)
    {
        std::string own = name;
        for (int& number = m_Numbers.try_emplace(name, 2).first->second; own.empty() || !m_Names.insert(own).second;)
            own = name + " (" + std::to_string(number++) + ")";
        return own;
    }

private:
    std::set<std::string> m_Names;
    std::map<std::string, int> m_Numbers; // which a name gets next
};

} // namespace vireo_view
