#pragma once

#include <atomic>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <string>

#include "vireo/show/scenes/SceneItem.h"
#include "vireo/show/volumes/isosurface.h"

namespace tavo {

// Makes the isosurfaces of a scene's volumes, where the samples or the value are others than before: of small volumes
// at once, and of large ones in a thread. Until then, the surface from before stays.
class VolumeSurfaces
{
public:
    using Items = std::map<std::string, SceneItem>;
    using Say = std::function<void(const std::string& path, const std::string& sentence)>;

    VolumeSurfaces() = default;
    ~VolumeSurfaces();
    VolumeSurfaces(const VolumeSurfaces&) = delete;
    VolumeSurfaces& operator=(const VolumeSurfaces&) = delete;

    // Begins what has to be made, and takes what is ready. Why there is no surface is said.
    void follow(Items& items, const Say& say);

    // Whether there is more to come.
    bool areBusy() const { return !m_Works.empty(); }

    // How far those are that are made, from 0 to 1.
    double progress() const;

    // Leaves all surfaces as they are until other samples or values come.
    void giveUp();

    // Takes what is ready. Returns whether any item has changed.
    bool take(Items& items, const Say& say);

    // The same of all there is to come: waits for it.
    void finish(Items& items, const Say& say);

private:
    // What a surface is made of.
    struct Source
    {
        std::weak_ptr<const void> owner; // of the samples, which are not kept
        const void* samples = nullptr;
        Vector3d places[4];
        double value = 0;

        bool operator==(const Source& other) const;
    };

    // What a thread is told, and says.
    struct Talk
    {
        std::atomic<bool> isUnwanted = false;
        std::atomic<double> part = 0; // that is done
    };

    struct Work
    {
        Source source;
        std::shared_ptr<Talk> talk;
        std::future<Isosurface> surface;
    };

    static Source sourceOf(const VolumeGrid& grid, const NumberArray& samples, double value);
    void begin(SceneItem& item, const std::string& path, const SceneItem& volume, const Say& say);
    void giveUp(const std::string& path);

    std::map<std::string, Source> m_Made; // by the paths of the surfaces
    std::map<std::string, Work> m_Works;
};

} // namespace tavo
