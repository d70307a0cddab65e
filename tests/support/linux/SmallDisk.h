#pragma once

#include <sched.h>
#include <string>
#include <sys/mount.h>

namespace tavo {

// A file system of some kilobytes on a folder, seen by this process and those that it starts.
class SmallDisk
{
public:
    SmallDisk(const std::string& folder, const std::string& size)
        : m_Folder(folder)
        , m_IsMounted(unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                      mount("none", folder.c_str(), "tmpfs", 0, ("size=" + size).c_str()) == 0)
    {}
    ~SmallDisk()
    {
        if (m_IsMounted)
            umount2(m_Folder.c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    // False where this process may not mount one.
    bool isMounted() const { return m_IsMounted; }

private:
    std::string m_Folder;
    bool m_IsMounted;
};

} // namespace tavo
