#pragma once

#include <string>
#include <vector>

#include "vireo/show/Picked.h"
#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneModel.h"

namespace tavo {

// What is under the pointer.
struct ScenePick
{
    Picked picked;
    Vector3d local; // the place, before `transform`
    // How far rounding to the type that was sent may have moved it, along an axis.
    double uncertainty = 0;
    // What a person is told, line by line. Numbers are written as they were sent, with all their digits.
    std::vector<std::string> lines;
};

// What is seen at one place of a picture.
struct Ray
{
    Vector3d start;
    Vector3d direction;
    bool isCut = false; // what lies before its start is not seen
};

// A place in the picture, in pixels.
Ray rayThrough(const SceneCamera& camera, const SceneCamera::Size& size, const Vector2d& place);

// The ray from where it comes into a box, or a little before.
Ray cutTo(const SceneBox& box, const Ray& ray);

// What was hit of an item: a point of a cloud, or of anything else what the vertex as drawn belongs to, where the ray
// meets it.
ScenePick pickOf(const SceneModel::Placed& placed, std::size_t vertex, const Ray& ray);

// A place in the filling of a surface that is cut, with a vertex and a face of it.
ScenePick pickOfSection(const SceneModel::Placed& placed, std::size_t vertex, std::size_t face, const Vector3d& local);

} // namespace tavo
