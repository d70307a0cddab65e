#include <cmath>
#include <random>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Program.h"
#include "tavo/base/objects/PException.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/show/Tuples.h"
#include "vireo/show/scenes/ScenePicker.h"
#include "vireo/show/scenes/SceneRenderer.h"

namespace vireo_bench {

namespace {

const QSize VIEW_SIZE(1024, 768);

// Hills, scanned line by line.
std::vector<tavo::Vector3d> hills(int side)
{
    std::vector<tavo::Vector3d> points;
    points.reserve(std::size_t(side) * std::size_t(side));
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            points.emplace_back(10.0 * x / side, 10.0 * y / side, std::sin(10.0 * x / side) * std::cos(8.0 * y / side));
    return points;
}

tavo::ItemUpdate cloudOf(int side)
{
    tavo::ItemUpdate item;
    item.shape.emplace();
    item.shape->points.numbers = tavo::Points(hills(side));
    return item;
}

tavo::ItemUpdate surfaceOf(int side)
{
    std::vector<std::array<int, 3>> triangles;
    for (int y = 0; y + 1 < side; ++y)
        for (int x = 0; x + 1 < side; ++x) {
            const int corner = y * side + x;
            triangles.push_back({corner, corner + 1, corner + side});
            triangles.push_back({corner + side + 1, corner + side, corner + 1});
        }
    tavo::ItemUpdate item = cloudOf(side);
    item.shape->kind = tavo::ItemKind::Mesh;
    item.shape->faces = {tavo::Faces(triangles), 3};
    return item;
}

// A scene of one item, seen as a whole.
class Scene : public Contestant
{
public:
    explicit Scene(tavo::ItemUpdate item)
    {
        if (!m_Context)
            throw tavo::PException("there is no context");
        tavo::SceneUpdate update;
        update.items["item"] = std::move(item);
        m_Model.apply(update);
        m_Camera.fit(m_Model.box(), {double(VIEW_SIZE.width()), double(VIEW_SIZE.height())});
        draw();
    }

protected:
    QImage draw() { return m_Renderer.draw(m_Camera, VIEW_SIZE, {Qt::white, Qt::black, QFont(), 1}); }

    std::shared_ptr<tavo::SceneContext> m_Context = tavo::SceneContext::get();
    tavo::SceneModel m_Model{"scene"};
    tavo::SceneCamera m_Camera;

private:
    tavo::SceneRenderer m_Renderer{m_Context, m_Model};
};

// At another place each time.
class Picking : public Scene
{
public:
    using Scene::Scene;

    void run() override
    {
        const QPoint pixel(static_cast<int>(312 + m_Random() % 400), static_cast<int>(284 + m_Random() % 200));
        m_HasFound = m_Picker.pick(m_Camera, VIEW_SIZE, pixel) || m_HasFound;
    }
    Bytes result() override
    {
        if (!m_HasFound)
            throw tavo::PException("nothing was found");
        return {};
    }

private:
    tavo::ScenePicker m_Picker{m_Context, m_Model};
    std::mt19937 m_Random{1};
    bool m_HasFound = false;
};

// The whole picture, of which one pixel would be asked.
class Drawing : public Scene
{
public:
    using Scene::Scene;

    void run() override { draw(); }
};

template <typename Kind>
std::function<std::unique_ptr<Contestant>()> of(tavo::ItemUpdate (*make)(int), int side)
{
    return [=] { return std::make_unique<Kind>(make(side)); };
}

void addPicks(const std::string& what, tavo::ItemUpdate (*make)(int), int side)
{
    add({"pick in " + what,
        {{"vireo", of<Picking>(make, side)}, {"drawing it", of<Drawing>(make, side), 1.0, anyResult}}});
}

} // namespace

} // namespace vireo_bench

int main(int argc, char** argv)
{
    using namespace vireo_bench;
    Program program(argc, argv);
    addPicks("a cloud of 10,000 points", cloudOf, 100);
    addPicks("a cloud of 1,000,000 points", cloudOf, 1000);
    addPicks("a cloud of 9,000,000 points", cloudOf, 3000);
    addPicks("a surface of 2,000,000 triangles", surfaceOf, 1000);
    return program.run();
}
