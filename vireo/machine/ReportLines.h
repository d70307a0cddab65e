#pragma once

#include <string>
#include <utility>
#include <vector>

#include "vireo/machine/MachineReport.h"

namespace tavo {

// Writes the lines of a machine report, section by section.
class ReportLines
{
public:
    void begin(const char* section) { m_Section = section; }

    void addFact(const std::string& subject, const std::string& finding, const std::string& advice = {})
    {
        m_Lines.push_back({m_Section, subject, MachineReport::Answer::FACT, finding, advice});
    }

    // The advice is for where the answer is no.
    void add(const std::string& subject, bool works, const std::string& finding, const std::string& advice)
    {
        const auto answer = works ? MachineReport::Answer::YES : MachineReport::Answer::NO;
        m_Lines.push_back({m_Section, subject, answer, finding, works ? "" : advice});
    }

    std::vector<MachineReport::Line> take() { return std::move(m_Lines); }

private:
    std::string m_Section;
    std::vector<MachineReport::Line> m_Lines;
};

} // namespace tavo
