#include "vireo/show/volumes/isosurface.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace tavo {

namespace {

// Corners of a cell have a bit for each axis along which they are at its end. An edge begins at a corner and goes along
// an axis.
constexpr unsigned int NUM_CORNERS = 8;
constexpr unsigned int NUM_EDGES = 3 * NUM_CORNERS; // by their numbers, of which a half are used

constexpr unsigned int edgeBetween(unsigned int corner, unsigned int other)
{
    const unsigned int axis = (corner ^ other) >> 1;
    return 3 * std::min(corner, other) + axis;
}

using Triangle = std::array<std::uint8_t, 3>; // the edges on which its corners lie
using Triangles = std::vector<Triangle>;

// The corners of a face, counter-clockwise as seen from outside.
std::array<unsigned int, 4> cornersOf(unsigned int axis, bool isAtEnd)
{
    const unsigned int u = 1U << (axis + 1) % 3;
    const unsigned int v = 1U << (axis + 2) % 3;
    const unsigned int first = isAtEnd ? 1U << axis : 0;
    if (isAtEnd)
        return {first, first + u, first + u + v, first + v};
    return {first, first + v, first + u + v, first + u};
}

// On each face the surface goes around what is inside, corner by corner where it has to choose: the cells on both sides
// of a face choose the same, so nothing gapes. What goes around on one face goes on on the next, until it is back.
Triangles trianglesOf(unsigned int inside)
{
    constexpr std::uint8_t NONE = NUM_EDGES;
    std::array<std::uint8_t, NUM_EDGES> next;
    next.fill(NONE);
    const auto isInside = [inside](unsigned int corner) { return (inside >> corner & 1) != 0; };
    for (unsigned int face = 0; face < 6; ++face) {
        const std::array<unsigned int, 4> corners = cornersOf(face / 2, face % 2 != 0);
        for (unsigned int i = 0; i < 4; ++i) {
            if (isInside(corners[i]) || !isInside(corners[(i + 1) % 4]))
                continue;
            unsigned int last = i + 1;
            while (isInside(corners[(last + 1) % 4]))
                ++last;
            next[edgeBetween(corners[i], corners[(i + 1) % 4])] =
                static_cast<std::uint8_t>(edgeBetween(corners[last % 4], corners[(last + 1) % 4]));
        }
    }
    Triangles triangles;
    for (std::uint8_t first = 0; first < NUM_EDGES; ++first) {
        if (next[first] == NONE)
            continue;
        std::uint8_t second = std::exchange(next[first], NONE);
        for (std::uint8_t third = std::exchange(next[second], NONE); third != first;
             second = third, third = std::exchange(next[third], NONE))
            triangles.push_back({first, second, third});
    }
    return triangles;
}

using Table = std::array<Triangles, 1U << NUM_CORNERS>;

const Table& table()
{
    // Never deleted: a surface may be computed while the process ends.
    static const Table* const TABLE = [] {
        auto* const all = new Table;
        Table& made = *all;
        for (unsigned int inside = 0; inside < made.size(); ++inside)
            made[inside] = trianglesOf(inside);
        return all;
    }();
    return *TABLE;
}

// The length of it does not matter.
Vector3d normalised(const Vector3d& vector)
{
    const double largest = std::max({std::abs(vector[0]), std::abs(vector[1]), std::abs(vector[2])});
    const Vector3d scaled(vector[0] / largest, vector[1] / largest, vector[2] / largest);
    return (1 / length(scaled)) * scaled;
}

bool isFinite(const Vector3d& vector)
{
    return std::isfinite(vector[0]) && std::isfinite(vector[1]) && std::isfinite(vector[2]);
}

// Goes through the cells layer by layer, and keeps the vertices on the edges of one layer.
template <typename T>
class Extraction
{
public:
    Extraction(const VolumeGrid& grid, const T* samples, double value)
        : m_Grid(grid)
        , m_Samples(samples)
        , m_Value(value)
        , m_RowSize(static_cast<std::size_t>(grid.size[0]))
        , m_LayerSize(m_RowSize * static_cast<std::size_t>(grid.size[1]))
    {
        const auto& [x, y, z] = grid.axes;
        const double volume = dot(cross(x, y), z);
        m_AreMirrored = volume < 0;
        m_Gradients = {(1 / volume) * cross(y, z), (1 / volume) * cross(z, x), (1 / volume) * cross(x, y)};
        for (std::vector<Side>& sides : m_Sides)
            sides.resize(m_LayerSize);
        for (std::vector<unsigned int>& vertices : m_Vertices)
            vertices.assign(m_LayerSize, NONE);
    }

    Isosurface run(const std::atomic<bool>& isUnwanted, std::atomic<double>* part)
    {
        findSides(0);
        for (int z = 0; z + 1 < m_Grid.size[2]; ++z) {
            if (isUnwanted)
                return {};
            if (part)
                *part = double(z) / m_Grid.size[2];
            findSides(z + 1);
            for (int y = 0; y + 1 < m_Grid.size[1]; ++y)
                takeRow(y, z);
            for (unsigned int axis = 0; axis < 2; ++axis) {
                m_Vertices[axis].swap(m_Vertices[END + axis]);
                std::fill(m_Vertices[END + axis].begin(), m_Vertices[END + axis].end(), NONE);
            }
            std::fill(m_Vertices[2].begin(), m_Vertices[2].end(), NONE);
            m_Sides[0].swap(m_Sides[1]);
        }
        return std::move(m_Surface);
    }

private:
    enum Side : std::uint8_t
    {
        OUTSIDE = 0,
        INSIDE = 1,
        NOWHERE = 16 // not finite
    };

    static constexpr unsigned int NONE = ~0U;
    static constexpr std::size_t END = 3; // behind the edges that begin in a layer's first samples

    double at(std::size_t i) const { return static_cast<double>(m_Samples[i]); }

    void findSides(int z)
    {
        const T* const samples = m_Samples + static_cast<std::size_t>(z) * m_LayerSize;
        std::vector<Side>& sides = m_Sides[z == 0 ? 0 : 1];
        for (std::size_t i = 0; i < m_LayerSize; ++i) {
            const auto sample = static_cast<double>(samples[i]);
            sides[i] = !std::isfinite(sample) ? NOWHERE : sample >= m_Value ? INSIDE : OUTSIDE;
        }
    }

    // Of the four corners of a cell at one end of it along x, at their bits for a cell that begins there.
    unsigned int sidesAt(std::size_t i) const
    {
        return m_Sides[0][i] | m_Sides[0][i + m_RowSize] << 2U | m_Sides[1][i] << 4U | m_Sides[1][i + m_RowSize] << 6U;
    }

    void takeRow(int y, int z)
    {
        const std::size_t first = static_cast<std::size_t>(y) * m_RowSize;
        constexpr unsigned int ALL_INSIDE = 0x55;
        unsigned int left = sidesAt(first);
        for (int x = 0; x + 1 < m_Grid.size[0]; ++x) {
            const unsigned int right = sidesAt(first + static_cast<std::size_t>(x) + 1);
            const bool isPlain = left == right && (left == 0 || left == ALL_INSIDE);
            if (!isPlain && isWhole(first + static_cast<std::size_t>(x)))
                takeCell({x, y, z}, left | right << 1U);
            left = right;
        }
    }

    bool isWhole(std::size_t i) const
    {
        unsigned int all = 0;
        for (const std::vector<Side>& sides : m_Sides)
            all |= sides[i] | sides[i + 1] | sides[i + m_RowSize] | sides[i + m_RowSize + 1];
        return all < NOWHERE;
    }

    void takeCell(const Vector3i& cell, unsigned int inside)
    {
        for (const auto& [first, second, third] : table()[inside]) {
            const unsigned int vertex = vertexOn(cell, first);
            const unsigned int one = vertexOn(cell, second);
            const unsigned int other = vertexOn(cell, third);
            m_Surface.triangles.insert(
                m_Surface.triangles.end(), {vertex, m_AreMirrored ? other : one, m_AreMirrored ? one : other});
        }
    }

    unsigned int vertexOn(const Vector3i& cell, unsigned int edge)
    {
        const unsigned int axis = edge % 3;
        const unsigned int corner = edge / 3;
        const Vector3i place(cell[0] + int(corner & 1), cell[1] + int(corner >> 1 & 1), cell[2] + int(corner >> 2 & 1));
        const std::size_t inLayer = static_cast<std::size_t>(place[1]) * m_RowSize + static_cast<std::size_t>(place[0]);
        unsigned int& vertex = m_Vertices[axis + (corner >> 2 & 1) * END][inLayer];
        if (vertex == NONE) {
            vertex = static_cast<unsigned int>(m_Surface.points.size() / 3);
            append(place, axis);
        }
        return vertex;
    }

    void append(const Vector3i& from, unsigned int axis)
    {
        Vector3i to = from;
        ++to[axis];
        const double first = at(indexOf(from));
        const double last = at(indexOf(to));
        double part = (m_Value / 2 - first / 2) / (last / 2 - first / 2); // halved: differences may overflow
        part = std::isfinite(part) ? std::clamp(part, 0.0, 1.0) : 0.5;
        Vector3d place(from[0], from[1], from[2]);
        place[axis] += part;
        const Vector3d point = m_Grid.at(place);
        const Vector3d gradient = (1 - part) * gradientAt(from) + part * gradientAt(to);
        Vector3d normal = (-gradient[0]) * m_Gradients[0] - gradient[1] * m_Gradients[1] - gradient[2] * m_Gradients[2];
        if (!isFinite(normal) || normal == Vector3d())
            normal = (first < last ? -1.0 : 1.0) * m_Grid.axes[axis];
        normal = normalised(normal);
        for (std::size_t i = 0; i < 3; ++i) {
            m_Surface.points.push_back(point[i]);
            m_Surface.normals.push_back(static_cast<float>(normal[i]));
        }
    }

    std::size_t indexOf(const Vector3i& place) const
    {
        return static_cast<std::size_t>(place[2]) * m_LayerSize + static_cast<std::size_t>(place[1]) * m_RowSize +
               static_cast<std::size_t>(place[0]);
    }

    // Along the axes of the grid, from the neighbours that are finite.
    Vector3d gradientAt(const Vector3i& place) const
    {
        const std::size_t steps[] = {1, m_RowSize, m_LayerSize};
        const std::size_t middle = indexOf(place);
        Vector3d gradient;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const auto isThere = [&](std::size_t i) { return std::isfinite(at(i)); };
            const bool hasBefore = place[axis] > 0 && isThere(middle - steps[axis]);
            const bool hasAfter = place[axis] + 1 < m_Grid.size[axis] && isThere(middle + steps[axis]);
            const double rise =
                at(hasAfter ? middle + steps[axis] : middle) / 2 - at(hasBefore ? middle - steps[axis] : middle) / 2;
            gradient[axis] = rise / m_Grid.spacing[axis] * (hasBefore && hasAfter ? 1 : 2);
        }
        return gradient;
    }

    const VolumeGrid& m_Grid;
    const T* m_Samples;
    double m_Value;
    std::size_t m_RowSize;
    std::size_t m_LayerSize;
    bool m_AreMirrored = false;
    std::array<Vector3d, 3> m_Gradients;                 // in the scene, of rises along the axes
    std::array<std::vector<Side>, 2> m_Sides;            // of the samples before and behind the cells
    std::array<std::vector<unsigned int>, 5> m_Vertices; // on edges along x, y, z, and behind them along x and y
    Isosurface m_Surface;
};

} // namespace

Isosurface isosurfaceOf(const VolumeGrid& grid, const NumberArray& samples, double value,
    const std::atomic<bool>& isUnwanted, std::atomic<double>* part)
{
    return samples.visit([&]<typename T>(const T* numbers, std::size_t) {
        return Extraction<T>(grid, numbers, value).run(isUnwanted, part);
    });
}

} // namespace tavo
