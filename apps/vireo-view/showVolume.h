#pragma once

#include <string>
#include <vector>

#include "apps/vireo-view/Exhibits.h"
#include "apps/vireo-view/showSlices.h"
#include "vireo/show/show.h"

namespace vireo_view {

// The samples, which the column gives away.
tavo::Samples samplesOf(NumberColumn& samples);

// A volume in a scene, or in slices, of which one time is seen.
class ShownVolume
{
public:
    // Shows the first time, in the scene of that name and under the path of the exhibit's name.
    ShownVolume(VolumeExhibit exhibit, const std::string& scene);

    // Shows it in the slices of that name, below those layers.
    ShownVolume(VolumeExhibit exhibit, const std::string& slices, const LayersOnSlices& layers);

    const std::string& getName() const { return m_Name; }
    std::size_t getNumTimes() const { return m_Times.size(); }
    double getSecondsPerTime() const { return m_SecondsPerTime; } // 0 if the file does not say

    // What a person has chosen stays.
    void showTime(std::size_t time) const;

private:
    tavo::Item showInScene(std::size_t time) const;

    std::string m_Name;
    std::string m_View;
    bool m_IsInSlices;
    double m_SecondsPerTime;
    std::vector<SentVolume> m_Times;
};

} // namespace vireo_view
