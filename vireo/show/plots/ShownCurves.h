#pragma once

#include <set>
#include <string>

namespace tavo {

// Which curves of a plot a person has hidden, by their names: what is sent under a name later is hidden, too.
class ShownCurves
{
public:
    bool isHidden(const std::string& name) const { return (m_Now.names.count(name) != 0) != m_Now.areShown; }
    bool areAllShown() const { return m_Now.names.empty() && !m_Now.areShown; }

    // Hides a curve, or shows it again.
    void toggle(const std::string& name);

    // Shows one curve alone; where that is so already, what was shown before.
    void isolate(const std::string& name);

private:
    struct Choice
    {
        std::set<std::string> names; // of those that are hidden
        bool areShown = false;       // or of those that are shown, and all others are hidden
    };

    Choice m_Now;
    Choice m_Before; // a curve was isolated
};

} // namespace tavo
