#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/inputs.h"

namespace vireo_bench {

// What vireo and its peers show in a square picture.
enum class Subject
{
    HEAD,
    VOLUME, // the head as a scene shows it
    POINTS,
    CLOUD, // as a scene shows it
    SCAN,  // of a building, as a cloud
    IMAGE,
    CURVES
};

// How much of each.
constexpr unsigned int NUM_POINTS = 1'000'000;
constexpr unsigned int IMAGE_SIDE = 4096;
constexpr std::size_t NUM_CURVES = 10;
constexpr std::size_t NUM_SAMPLES = 100'000;

// Where a subject is looked at from, towards the origin.
struct Viewpoint
{
    tavo::Vector3f eye;
    tavo::Vector3f up;
    double degrees; // of the picture's height
    double nearest;
    double farthest;
};

inline const Viewpoint VIEWPOINT_OF_HEAD = {{-300, 320, 240}, {0, 0, 1}, 26, 250, 1000};
inline const Viewpoint VIEWPOINT_OF_POINTS = {{0.8f, 0.9f, 1.4f}, {0, 1, 0}, 45, 0.01, 1000};

inline const Viewpoint VIEWPOINT_OF_CLOUD = {{0.861f, -1.491f, 0.803f}, {0, 0, 1}, 40, 0.01, 1000};
inline const Viewpoint VIEWPOINT_OF_VOLUME = {{-190.2f, 202.9f, 152.2f}, {0, 0, 1}, 40, 50, 1000};

// A picture of a subject in a window, or an off-screen buffer, of its own.
class Scene
{
public:
    static constexpr int SIZE = 512; // of the picture, in pixels

    Scene() = default;
    virtual ~Scene() = default;
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    // Takes over the data as an application has them, and forgets them.
    virtual void load() = 0;
    virtual void unload() = 0;

    // Has the head look as in that window of densities.
    virtual void setWindow(const DensityWindow&) {}

    // Draws, and returns when the picture is complete.
    virtual void draw() = 0;

    // The picture, as RGBA bytes from the lower left corner on.
    virtual Bytes pixels() = 0;
};

// A way to show a subject, and who it is.
struct Showing
{
    Subject subject;
    std::string name;
    std::function<std::unique_ptr<Scene>()> make;
};

// All ways that this program was built with, vireo's first.
std::vector<Showing> showingsOf(Subject subject);

// Adds ways before main begins; each source of scenes has one. So what is not built is not there, and nobody has to
// know.
struct Showings
{
    Showings(std::initializer_list<Showing> showings);
};

} // namespace vireo_bench
