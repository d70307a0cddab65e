// A volume: three clouds of density, seen through a transfer function from values to colours.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tavo/points/RegularVolume.h>
#include <vireo/volume/SliceVolumeRenderer.h>

#include "ExampleView.h"

namespace {

using tavo::Vector3f;

constexpr int SIZE = 64;

// From 0 far away to 1 in the middle of a cloud.
float densityAt(const Vector3f& position)
{
    float density = 0;
    for (const Vector3f& middle : {Vector3f(-0.45, -0.35, 0), Vector3f(0.5, -0.3, 0.1), Vector3f(0, 0.45, -0.1)}) {
        const Vector3f distance = position - middle;
        density += std::exp(-8 * dot(distance, distance));
    }
    return std::min(density, 1.0f);
}

// Of SIZE samples along each axis, in a box from -1 to 1.
std::unique_ptr<tavo::RegularVolume> makeVolume()
{
    tavo::VertexDescriptor channels;
    channels.pushAttrib(tavo::VertexAttribDescriptor("density", 1, tavo::VertexAttribDescriptor::TYPE_FLOAT));
    auto samples = std::make_unique<tavo::PointSet>(channels, SIZE * SIZE * SIZE);
    auto* const densities = reinterpret_cast<float*>(samples->getData());
    std::size_t i = 0;
    for (int z = 0; z < SIZE; ++z)
        for (int y = 0; y < SIZE; ++y)
            for (int x = 0; x < SIZE; ++x)
                densities[i++] = densityAt(Vector3f(x, y, z) * (2.0f / SIZE) - Vector3f(1, 1, 1));
    const tavo::Box3f box({-1, -1, -1}, {1, 1, 1});
    return std::make_unique<tavo::RegularVolume>(tavo::Vector3i(SIZE, SIZE, SIZE), box, std::move(samples));
}

// Thin blue mist around dense orange kernels.
tavo::RGBA8 colourOf(void*, const tavo::StaticVector<float, 1>& density)
{
    const float d = density[0];
    if (d < 0.15f)
        return {0, 0, 0, 0};
    return d > 0.6f ? tavo::RGBA8(255, 230 * d, 60, 90) : tavo::RGBA8(70, 130, 255, 25 * d);
}

// Away from the viewer, in the volume's coordinates.
Vector3f viewingDirection()
{
    float matrix[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, matrix);
    return {-matrix[2], -matrix[6], -matrix[10]};
}

class VolumeView : public ExampleView
{
public:
    using ExampleView::ExampleView;

    ~VolumeView() override
    {
        makeCurrent();
        m_Renderer.disposeTextures();
    }

private:
    void setUp(tavo::GLContext&) override { m_Renderer.setTableSize(256); }

    void draw(tavo::GLContext&) override
    {
        glTranslatef(0, 0, -4);
        glRotatef(20, 1, 0, 0);
        glRotatef(-30, 0, 1, 0);
        m_Renderer.drawVolume(m_Volume.get(), viewingDirection(), "density", &colourOf, nullptr);
    }

    std::unique_ptr<tavo::RegularVolume> m_Volume = makeVolume();
    tavo::SliceVolumeRenderer m_Renderer;
};

} // namespace

int main(int argc, char** argv)
{
    return showExample<VolumeView>(argc, argv);
}
