#pragma once

#include <csignal>
#include <sys/resource.h>

namespace tavo {

// While it lives, no file grows beyond a size: what goes beyond fails to be written, as on a disk that is full.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_OldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_OldLimit);
        const rlimit limit{bytes, m_OldLimit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_OldLimit);
        std::signal(SIGXFSZ, m_OldHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*m_OldHandler)(int);
    rlimit m_OldLimit{};
};

} // namespace tavo
