#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkColorTransferFunction.h>
#include <vtkFixedPointVolumeRayCastMapper.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkOpenGLGPUVolumeRayCastMapper.h>
#include <vtkPiecewiseFunction.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>
#include <vtkVolume.h>
#include <vtkVolumeProperty.h>

#include "benchmarks/peers/Scene.h"

namespace vireo_bench {

namespace {

// Draws off the screen.
class VtkScene : public Scene
{
public:
    explicit VtkScene(const Viewpoint& from)
    {
        m_Window->SetOffScreenRendering(true);
        m_Window->SetMultiSamples(0);
        m_Window->SetSize(SIZE, SIZE);
        m_Window->AddRenderer(m_Renderer);
        vtkCamera& camera = *m_Renderer->GetActiveCamera();
        camera.SetPosition(from.eye[0], from.eye[1], from.eye[2]);
        camera.SetFocalPoint(0, 0, 0);
        camera.SetViewUp(from.up[0], from.up[1], from.up[2]);
        camera.SetViewAngle(from.degrees);
        camera.SetClippingRange(from.nearest, from.farthest);
        VtkScene::draw();
    }
    void unload() override { m_Renderer->RemoveAllViewProps(); }
    void draw() override
    {
        m_Window->Render();
        m_Window->WaitForCompletion();
    }
    Bytes pixels() override
    {
        vtkNew<vtkUnsignedCharArray> pixels;
        m_Window->GetRGBACharPixelData(0, 0, SIZE - 1, SIZE - 1, 1, pixels);
        return {pixels->GetPointer(0), pixels->GetPointer(0) + pixels->GetDataSize()};
    }

protected:
    void show(vtkProp* prop) { m_Renderer->AddViewProp(prop); }

private:
    vtkNew<vtkRenderWindow> m_Window;
    vtkNew<vtkRenderer> m_Renderer;
};

// Floats that stay the caller's, as an array of VTK's.
vtkNew<vtkFloatArray> arrayOf(const float* values, std::size_t count, int numComponents)
{
    vtkNew<vtkFloatArray> array;
    array->SetNumberOfComponents(numComponents);
    array->SetArray(const_cast<float*>(values), static_cast<vtkIdType>(count), 1);
    return array;
}

vtkNew<vtkImageData> imageOf(const tavo::RegularVolume& volume)
{
    const tavo::Vector3i& extends = volume.getExtends();
    const tavo::Vector3f& min = volume.getBoundingBox().getMin();
    const tavo::Vector3f extent = volume.getBoundingBox().getExtent();
    vtkNew<vtkImageData> image;
    image->SetDimensions(extends.data());
    image->SetOrigin(min[0], min[1], min[2]);
    image->SetSpacing(extent[0] / extends[0], extent[1] / extends[1], extent[2] / extends[2]);
    const auto* const samples = reinterpret_cast<const float*>(volume.getPointSet()->getData());
    image->GetPointData()->SetScalars(arrayOf(samples, volume.getPointSet()->getNumPoints(), 1));
    return image;
}

// The head by one of the ray casters, a sample a millimetre, which is how far its slices are apart.
template <typename Mapper>
class VtkHead : public VtkScene
{
public:
    explicit VtkHead(const Viewpoint& from = VIEWPOINT_OF_HEAD)
        : VtkScene(from)
    {
        setWindow(DensityWindow());
    }
    void load() override
    {
        vtkNew<Mapper> mapper;
        mapper->SetInputData(imageOf(head()));
        mapper->AutoAdjustSampleDistancesOff();
        mapper->SetSampleDistance(1);
        vtkNew<vtkVolumeProperty> property;
        property->SetInterpolationTypeToLinear();
        property->SetColor(m_Colours);
        property->SetScalarOpacity(m_Opacity);
        vtkNew<vtkVolume> volume;
        volume->SetMapper(mapper);
        volume->SetProperty(property);
        show(volume);
    }
    void setWindow(const DensityWindow& window) override
    {
        m_Colours->RemoveAllPoints();
        m_Opacity->RemoveAllPoints();
        for (const float density : {window.black, window.white}) {
            const tavo::RGBA8 colour = window.look(density);
            m_Colours->AddRGBPoint(density, colour[0] / 255.0, colour[1] / 255.0, colour[2] / 255.0);
            m_Opacity->AddPoint(density, colour[3] / 255.0);
        }
    }

private:
    vtkNew<vtkColorTransferFunction> m_Colours;
    vtkNew<vtkPiecewiseFunction> m_Opacity;
};

class VtkPoints : public VtkScene
{
public:
    explicit VtkPoints(const Viewpoint& from = VIEWPOINT_OF_POINTS, Points points = randomPoints(NUM_POINTS))
        : VtkScene(from)
        , m_Points(std::move(points))
    {}
    void load() override
    {
        vtkNew<vtkPoints> points;
        points->SetData(arrayOf(m_Points.front().data(), 3 * m_Points.size(), 3));
        vtkNew<vtkCellArray> vertices;
        vertices->InsertNextCell(static_cast<int>(m_Points.size()));
        for (std::size_t i = 0; i < m_Points.size(); ++i)
            vertices->InsertCellPoint(static_cast<vtkIdType>(i));
        vtkNew<vtkPolyData> data;
        data->SetPoints(points);
        data->SetVerts(vertices);
        vtkNew<vtkPolyDataMapper> mapper;
        mapper->SetInputData(data);
        vtkNew<vtkActor> actor;
        actor->SetMapper(mapper);
        actor->GetProperty()->LightingOff();
        show(actor);
    }

private:
    Points m_Points;
};

using HeadOnCpu = VtkHead<vtkFixedPointVolumeRayCastMapper>;
using HeadInGl = VtkHead<vtkOpenGLGPUVolumeRayCastMapper>;

const Showings showings = {
    {Subject::HEAD, "VTK's ray caster on the CPU", [] { return std::make_unique<HeadOnCpu>(); }},
    {Subject::HEAD, "VTK's ray caster in GL", [] { return std::make_unique<HeadInGl>(); }},
    {Subject::VOLUME, "VTK's ray caster on the CPU", [] { return std::make_unique<HeadOnCpu>(VIEWPOINT_OF_VOLUME); }},
    {Subject::VOLUME, "VTK's ray caster in GL", [] { return std::make_unique<HeadInGl>(VIEWPOINT_OF_VOLUME); }},
    {Subject::POINTS, "VTK", [] { return std::make_unique<VtkPoints>(); }},
    {Subject::CLOUD, "VTK", [] { return std::make_unique<VtkPoints>(VIEWPOINT_OF_CLOUD); }},
    {Subject::SCAN, "VTK", [] { return std::make_unique<VtkPoints>(VIEWPOINT_OF_CLOUD, scannedPoints()); }},
};

} // namespace

} // namespace vireo_bench
