#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tavo {

// Which images show the same part. A link holds in both directions, and by way of others, as long as those are there.
// What is asked costs as much as there are links to follow, however many images there are.
class ImageLinks
{
public:
    void add(const std::string& from, const std::string& to);

    // Takes back what was said of the links of an image; those of others to it stay.
    void removeFrom(const std::string& name);

    // All that are linked to an image and are there, itself first.
    std::vector<std::string> linkedTo(
        const std::string& name, const std::function<bool(const std::string&)>& isThere) const;

private:
    using Names = std::map<std::string, std::set<std::string>>;

    Names m_To;
    Names m_From;
};

} // namespace tavo
