#pragma once

#include <memory>

namespace tavo {

class GLContext;
class GLRenderTargetFBO;
class GLShaderARB;

// Light for clouds without normals: a pixel is the darker the nearer its neighbours are, so that edges and hollows
// show. All that it needs are the depths of what was drawn.
//
// The slopes to eight neighbours on a circle count, in units of length per length across the picture. So the same shape
// looks the same at every scale, size of picture and projection:
//
//     slope_j = (z / z_j - 1) · height / (2 tan(angle / 2) · radius)       in perspective, z being in front of the eye
//     slope_j = (z - z_j) · height / (height that is seen · radius)        in orthographic views
//     shade   = exp(-strength · mean of min(max(slope_j, 0), 10))
class EyeDomeLighting
{
public:
    // How the depths were drawn.
    struct View
    {
        bool isOrthographic = false;
        double nearest = 1; // the two planes, in front of the eye; the second is farther than the first
        double farthest = 2;
        // Of what the picture shows: in orthographic views itself, in perspective at the distance 1 from the eye, which
        // is 2 tan(angle / 2).
        double heightSeen = 1;
    };

    // In pixels; the picture is in the lower left corner of its target.
    struct Size
    {
        int width = 0;
        int height = 0;
    };

    static constexpr double STRENGTH = 0.28;
    static constexpr double RADIUS = 1.4; // in logical pixels

    // What its program fetches, from the places that `right`, `up`, `rightUp` and `rightDown` lead to: the colour and
    // the depth of a pixel, and the depths of its eight neighbours, in `ones` and `others`.
    static const char* const FETCHES;

    // Null where the driver has no targets of depths or no ARB programs.
    // Needs the context to be current, here and below.
    static std::unique_ptr<EyeDomeLighting> make(GLContext& context);

    ~EyeDomeLighting();
    EyeDomeLighting(const EyeDomeLighting&) = delete;
    EyeDomeLighting& operator=(const EyeDomeLighting&) = delete;

    // Draws a picture over the whole viewport, with its colours shaded. Where nothing was drawn, at the depth 1, they
    // stay as they are; so does alpha. The depths that are there are neither read nor written.
    //
    // The viewport has the size of the picture. A logical pixel is pixelRatio device pixels wide. GL's state stays.
    void draw(const GLRenderTargetFBO& picture, const Size& size, const View& view, double pixelRatio = 1);

private:
    explicit EyeDomeLighting(std::unique_ptr<GLShaderARB> program);

    void setParameters(const Size& size, const View& view, double radius);

    std::unique_ptr<GLShaderARB> m_Program;
};

} // namespace tavo
