#pragma once

#include <algorithm>
#include <fstream>
#include <malloc.h>
#include <stdexcept>
#include <string>

namespace vireo_bench {

// By how many bytes the process has grown at most since this was made.
class PeakMemory
{
public:
    PeakMemory()
    {
        malloc_trim(0); // what was given back before is not there to be taken
        if (!(std::ofstream("/proc/self/clear_refs") << 5 << std::flush)) // forgets the peak until now
            throw std::runtime_error("this system does not let a process forget its peak");
        m_Before = statusOf("VmRSS");
    }

    double bytes() const { return std::max(0.0, statusOf("VmHWM") - m_Before); }

private:
    // A line of /proc/self/status, in bytes.
    static double statusOf(const std::string& key)
    {
        std::ifstream status("/proc/self/status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with(key + ":"))
                return std::stod(line.substr(key.size() + 1)) * 1024;
        return 0;
    }

    double m_Before;
};

} // namespace vireo_bench
