#pragma once

#include <string>
#include <vector>

#include "apps/vireo-view/Exhibits.h"
#include "vireo/show/show.h"

namespace vireo_view {

// A volume in a scene, of which one time is seen.
class ShownVolume
{
public:
    // Shows the first time, in the scene of that name and under the path of the exhibit's name.
    ShownVolume(VolumeExhibit exhibit, const std::string& scene);

    const std::string& getName() const { return m_Name; }
    std::size_t getNumTimes() const { return m_Times.size(); }
    double getSecondsPerTime() const { return m_SecondsPerTime; } // 0 if the file does not say

    // What a person has chosen in the scene stays.
    tavo::Item showTime(std::size_t time) const;

private:
    std::string m_Name;
    std::string m_Scene;
    VoxelGrid m_Grid;
    double m_SecondsPerTime;
    std::vector<tavo::Samples> m_Times;
};

} // namespace vireo_view
