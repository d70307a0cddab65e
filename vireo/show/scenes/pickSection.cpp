#include "vireo/show/scenes/pickSection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "vireo/show/scenes/Triangulator.h"

namespace tavo {

namespace {

constexpr double UNBOUNDED = std::numeric_limits<double>::infinity();

// How far along a ray the box begins; none if it passes by.
std::optional<double> entryOf(const SceneBox& box, const Ray& ray)
{
    double entry = -UNBOUNDED;
    double exit = UNBOUNDED;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double first = (box.getMin()[axis] - ray.start[axis]) / ray.direction[axis];
        const double second = (box.getMax()[axis] - ray.start[axis]) / ray.direction[axis];
        entry = std::max(entry, std::min(first, second));
        exit = std::min(exit, std::max(first, second));
    }
    return entry <= exit && std::isfinite(entry) ? std::optional(entry) : std::nullopt;
}

bool isWithin(const Vector3d& place, const SceneBox& box)
{
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (!(place[axis] >= box.getMin()[axis] && place[axis] <= box.getMax()[axis]))
            return false;
    return true;
}

// Takes directions and places back to where they were before a matrix.
class Inverse
{
public:
    explicit Inverse(const Matrix4& matrix)
        : m_Origin(matrix * Vector3d())
    {
        const Vector3d x = matrix.turned({1, 0, 0}), y = matrix.turned({0, 1, 0}), z = matrix.turned({0, 0, 1});
        const double volume = dot(x, cross(y, z));
        m_Rows = {(1 / volume) * cross(y, z), (1 / volume) * cross(z, x), (1 / volume) * cross(x, y)};
    }

    Vector3d turned(const Vector3d& direction) const
    {
        return {dot(m_Rows[0], direction), dot(m_Rows[1], direction), dot(m_Rows[2], direction)};
    }
    Vector3d operator*(const Vector3d& place) const { return turned(place - m_Origin); }

private:
    Vector3d m_Origin;
    std::array<Vector3d, 3> m_Rows;
};

// Counts the sheets of a surface that a ray goes through.
class SheetCount
{
public:
    explicit SheetCount(const ItemShape& shape)
        : m_Shape(shape)
    {}

    // Of the shape as it was sent.
    void count(const Vector3d& start, const Vector3d& direction)
    {
        m_Shape.faces.numbers.visit([&](const auto* vertices, std::size_t) {
            std::size_t first = 0;
            for (std::size_t face = 0; face < m_Shape.numParts(); ++face) {
                const std::size_t numCorners = m_Shape.numCornersOf(face);
                takeCorners(vertices + first, numCorners, start);
                for (const auto& [a, b, c] : triangles())
                    countTriangle(face, {a, b, c}, direction);
                first += numCorners;
            }
        });
    }

    bool isOdd() const { return m_Number % 2 == 1; }

    // Of the nearest sheet, and of its corners the one that is nearest to the start.
    std::size_t face() const { return m_Face; }
    std::size_t vertex() const { return m_Vertex; }

private:
    // As seen from the start of the ray.
    template <typename Vertex>
    void takeCorners(const Vertex* vertices, std::size_t count, const Vector3d& start)
    {
        m_Corners.clear();
        m_Vertices.clear();
        for (std::size_t i = 0; i < count; ++i) {
            const auto vertex = static_cast<std::size_t>(vertices[i]);
            const NumberArray& numbers = m_Shape.points.numbers;
            m_Vertices.push_back(vertex);
            m_Corners.push_back(
                Vector3d(numbers[3 * vertex], numbers[3 * vertex + 1], numbers[3 * vertex + 2]) - start);
        }
    }

    const std::vector<Triangulator::Triangle>& triangles()
    {
        static const std::vector<Triangulator::Triangle> ONE{{0, 1, 2}};
        return m_Corners.size() == 3 ? ONE : m_Triangulator.triangulate(m_Corners);
    }

    void countTriangle(std::size_t face, const Triangulator::Triangle& triangle, const Vector3d& direction)
    {
        const Vector3d& corner = m_Corners[triangle[0]];
        const Vector3d one = m_Corners[triangle[1]] - corner;
        const Vector3d other = m_Corners[triangle[2]] - corner;
        const Vector3d across = cross(direction, other);
        const double volume = dot(one, across);
        const double u = -dot(corner, across) / volume;
        const Vector3d along = cross(one, corner);
        const double v = dot(direction, along) / volume;
        const double depth = dot(other, along) / volume;
        if (!(u >= 0 && v >= 0 && u + v <= 1 && depth > 0))
            return;
        ++m_Number;
        if (depth < m_Depth) {
            m_Depth = depth;
            m_Face = face;
            m_Vertex = nearestVertex();
        }
    }

    std::size_t nearestVertex() const
    {
        const auto isNearer = [](const Vector3d& a, const Vector3d& b) { return dot(a, a) < dot(b, b); };
        return m_Vertices[std::size_t(
            std::min_element(m_Corners.begin(), m_Corners.end(), isNearer) - m_Corners.begin())];
    }

    const ItemShape& m_Shape;
    Triangulator m_Triangulator;
    std::vector<Vector3d> m_Corners;
    std::vector<std::size_t> m_Vertices;
    std::size_t m_Number = 0;
    double m_Depth = UNBOUNDED;
    std::size_t m_Face = 0;
    std::size_t m_Vertex = 0;
};

} // namespace

std::optional<ScenePick> pickSection(
    const std::vector<SceneModel::Placed>& items, const SceneBox& box, const Ray& ray, bool startsAtEye)
{
    const std::optional<double> entry = entryOf(box, ray);
    if (!entry || (startsAtEye && *entry <= 0))
        return {};
    const Vector3d place = ray.start + *entry * ray.direction;
    for (auto placed = items.rbegin(); placed != items.rend(); ++placed) {
        if (!isWithin(place, placed->item->box().moved(placed->matrix)) || !placed->item->isClosedSurface())
            continue;
        const Inverse inverse(placed->matrix);
        SheetCount sheets(*placed->item->shape());
        sheets.count(inverse * place, inverse.turned(ray.direction));
        if (sheets.isOdd())
            return pickOfSection(*placed, sheets.vertex(), sheets.face(), inverse * place);
    }
    return {};
}

} // namespace tavo
