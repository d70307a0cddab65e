#pragma once

// What the code in headers and documents takes for given: objects that a reader has anyway. Their types are not defined
// here, so that code shows the includes it needs.

#include <vector>

class QWidget;

namespace tavo {
class Camera;
class GLContext;
class GLTexture2D;
class GLVertexBuffer;
class Object;
class Persistent;
class PointSet;
class RegularVolume;
class RGBAImage;
} // namespace tavo

extern tavo::Camera& camera;
extern tavo::GLContext& context;
extern tavo::GLTexture2D& texture;
extern tavo::Object& object;
extern tavo::Persistent& shape;
extern tavo::PointSet& points;
extern tavo::RegularVolume& volume;
extern tavo::GLVertexBuffer& vertices;
extern const tavo::RGBAImage& image;
extern QWidget* parent;
extern const std::vector<double>& times;
extern const std::vector<double>& pressures;
extern const std::vector<double>& left;
extern const std::vector<double>& torque;
extern const std::vector<double>& echoes;
extern const std::vector<double>& heights;
extern const std::vector<float>& densities;
extern const std::vector<double>& corners;
extern const std::vector<int>& triangles;
void compute();
double now();
double measure();
