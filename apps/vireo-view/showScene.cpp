#include "apps/vireo-view/showScene.h"

#include <utility>

#include "apps/vireo-view/UniqueNames.h"
#include "vireo/show/scenes/lookLikeCategories.h"
#include "vireo/show/show.h"

namespace vireo_view {

namespace {

// What is sent takes the numbers, without copying them.
template <typename Sent>
Sent taken(NumberColumn& column)
{
    return std::visit([](auto& values) { return Sent(std::move(values)); }, column);
}

tavo::Faces facesOf(Geometry& geometry)
{
    if (geometry.numCorners == 3)
        return {std::move(geometry.faces)};
    if (geometry.numCorners != 0)
        geometry.cornerCounts.assign(geometry.faces.size() / geometry.numCorners, geometry.numCorners);
    return {tavo::Numbers(std::move(geometry.faces)), tavo::Numbers(std::move(geometry.cornerCounts))};
}

// All that is sent of a geometry, which its places share.
class Sender
{
public:
    explicit Sender(Geometry geometry)
        : m_IsMesh(!geometry.faces.empty())
        , m_Positions(taken<tavo::Points>(geometry.positions))
        , m_Faces(facesOf(geometry))
        , m_Normals(taken<tavo::Points>(geometry.normals))
        , m_Colours(taken<tavo::Colours>(geometry.colours))
        , m_Labels(taken<tavo::Numbers>(geometry.labels))
        , m_Colour(geometry.colour)
        , m_FaceColours(taken<tavo::Colours>(geometry.ofFaces.colours))
        , m_FaceLabels(taken<tavo::Numbers>(geometry.ofFaces.labels))
    {
        takeScalars(geometry);
    }

    void send(const tavo::Scene& scene, const std::string& path) const
    {
        const tavo::Item item = m_IsMesh ? scene.mesh(path, m_Positions, m_Faces) : scene.cloud(path, m_Positions);
        if (!m_Normals.isEmpty())
            item.normals(m_Normals);
        if (m_Colour)
            item.colour(*m_Colour);
        if (!m_Colours.isEmpty())
            item.colours(m_Colours);
        if (!m_Labels.isEmpty())
            item.labels(m_Labels);
        for (const auto& [name, values] : m_Scalars)
            sendNumbers(item, name, values);
        sendOfFaces(item);
    }

private:
    // Of faces those have other names than those of points.
    void takeScalars(Geometry& geometry)
    {
        UniqueNames names;
        for (Geometry::Scalar& scalar : geometry.scalars)
            m_Scalars.emplace_back(names.add(scalar.name), taken<tavo::Numbers>(scalar.values));
        for (Geometry::Scalar& scalar : geometry.ofFaces.scalars)
            m_FaceScalars.emplace_back(names.add(scalar.name), taken<tavo::Numbers>(scalar.values));
    }

    void sendOfFaces(const tavo::Item& item) const
    {
        if (m_Colours.isEmpty() && !m_FaceColours.isEmpty())
            item.colours(m_FaceColours).onFaces("colours");
        if (m_Labels.isEmpty() && !m_FaceLabels.isEmpty())
            item.labels(m_FaceLabels).onFaces("labels");
        for (const auto& [name, values] : m_FaceScalars)
            sendNumbers(item, name, values).onFaces(name);
    }

    static tavo::Item sendNumbers(const tavo::Item& item, const std::string& name, const tavo::Numbers& values)
    {
        return tavo::lookLikeCategories(name, values) ? item.labels(name, values) : item.scalar(name, values);
    }

    bool m_IsMesh;
    tavo::Points m_Positions;
    tavo::Faces m_Faces;
    tavo::Points m_Normals;
    tavo::Colours m_Colours;
    tavo::Numbers m_Labels;
    std::optional<tavo::RGBA8> m_Colour;
    tavo::Colours m_FaceColours;
    tavo::Numbers m_FaceLabels;
    std::vector<std::pair<std::string, tavo::Numbers>> m_Scalars;
    std::vector<std::pair<std::string, tavo::Numbers>> m_FaceScalars;
};

} // namespace

void showScene(SceneExhibit exhibit, const std::string& scene)
{
    const tavo::Statement together;
    const tavo::Scene shown = tavo::scene(scene);
    shown.view(nameOf(exhibit.side));
    if (exhibit.isTurned)
        shown.transform(exhibit.name, {0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1});
    for (Geometry& geometry : exhibit.geometries) {
        const std::vector<Placement> placements = std::move(geometry.placements);
        const Sender sender(std::move(geometry));
        for (const Placement& placement : placements) {
            const std::string path = placement.path.empty() ? exhibit.name : exhibit.name + "/" + placement.path;
            sender.send(shown, path);
            if (placement.matrix)
                shown.transform(path, *placement.matrix);
        }
    }
}

} // namespace vireo_view
