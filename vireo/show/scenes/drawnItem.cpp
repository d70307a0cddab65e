#include "vireo/show/scenes/drawnItem.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>

#include "vireo/show/scenes/SceneBox.h"
#include "vireo/show/scenes/Triangulator.h"

namespace tavo {

namespace {

// Calls `use(i, point)` for each.
template <typename Use>
void forEachPoint(const NumberTuples& points, Use use)
{
    points.numbers.visit([&use](const auto* numbers, std::size_t size) {
        for (std::size_t i = 0; i < size / 3; ++i)
            use(i, Vector3d(numbers[3 * i], numbers[3 * i + 1], numbers[3 * i + 2]));
    });
}

Vector3d pointAt(const NumberTuples& points, std::size_t i)
{
    return points.numbers.visit([i](const auto* numbers, std::size_t) {
        return Vector3d(numbers[3 * i], numbers[3 * i + 1], numbers[3 * i + 2]);
    });
}

bool isUsable(const Vector3d& point)
{
    return std::abs(point[0]) <= LARGEST_COORDINATE && std::abs(point[1]) <= LARGEST_COORDINATE &&
           std::abs(point[2]) <= LARGEST_COORDINATE;
}

void append(std::vector<float>& numbers, const Vector3d& vector)
{
    for (std::size_t i = 0; i < 3; ++i)
        numbers.push_back(static_cast<float>(vector[i]));
}

// The points as they were sent. Those that are not finite are at the origin, for nobody to draw.
std::vector<bool> takePoints(DrawnItem& item, const NumberTuples& points)
{
    std::vector<bool> unusable; // none if all are usable
    forEachPoint(points, [&](std::size_t i, const Vector3d& point) {
        if (isUsable(point))
            return item.box.extend(point);
        unusable.resize(points.size());
        unusable[i] = true;
    });
    item.origin = item.box.centre();
    item.positions.reserve(3 * points.size());
    forEachPoint(points, [&](std::size_t, const Vector3d& point) {
        append(item.positions, isUsable(point) ? point - item.origin : Vector3d());
    });
    return unusable;
}

bool isLeftOut(const std::vector<bool>& unusable, std::size_t i)
{
    return !unusable.empty() && unusable[i];
}

void takeNormals(DrawnItem& item, const NumberTuples& normals)
{
    item.normals.reserve(3 * normals.size());
    forEachPoint(normals,
        [&](std::size_t, const Vector3d& normal) { append(item.normals, isUsable(normal) ? normal : Vector3d()); });
}

// The box of the points that can be drawn, and which those are unless all are.
void takeUsable(DrawnItem& item, const NumberTuples& points)
{
    bool areAllUsable = true;
    forEachPoint(points, [&](std::size_t i, const Vector3d& point) {
        const bool isLeft = isUsable(point);
        if (isLeft)
            item.box.extend(point);
        if (!isLeft && areAllUsable)
            for (std::size_t earlier = 0; earlier < i; ++earlier)
                item.sources.push_back(static_cast<unsigned int>(earlier));
        areAllUsable = areAllUsable && isLeft;
        if (isLeft && !areAllUsable)
            item.sources.push_back(static_cast<unsigned int>(i));
    });
    item.phases.emplace(areAllUsable ? points.size() : item.sources.size());
    item.origin = item.box.centre();
}

// Writes what `coordinate(source, axis)` gives, vertex by vertex.
template <typename Coordinate>
void write(std::vector<float>& vectors, const DrawnItem& item, std::size_t numVertices, Coordinate coordinate)
{
    vectors.resize(3 * numVertices);
    float* next = vectors.data();
    item.forEachSource(numVertices, [&](std::size_t source) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            *next++ = coordinate(source, axis);
    });
}

// The positions and normals of so many vertices of a cloud, whose sources and origin are known.
void writeCloud(DrawnItem& item, std::size_t numVertices, const NumberTuples& points, const NumberTuples* normals)
{
    points.numbers.visit([&](const auto* numbers, std::size_t) {
        write(item.positions, item, numVertices, [&](std::size_t source, std::size_t axis) {
            return static_cast<float>(static_cast<double>(numbers[3 * source + axis]) - item.origin[axis]);
        });
    });
    if (!normals)
        return;
    normals->numbers.visit([&](const auto* numbers, std::size_t) {
        write(item.normals, item, numVertices, [&](std::size_t source, std::size_t axis) {
            const auto component = static_cast<double>(numbers[3 * source + axis]);
            return std::abs(component) <= LARGEST_COORDINATE ? static_cast<float>(component) : 0;
        });
    });
}

void addChunks(DrawnItem& item)
{
    for (std::size_t first = 0; first < item.numVertices(); first += PointPhases::CHUNK) {
        SceneBox& box = item.chunks.emplace_back();
        for (std::size_t i = first; i < std::min(first + PointPhases::CHUNK, item.numVertices()); ++i) {
            const float* const position = item.positions.data() + 3 * i;
            box.extend(Vector3d(position[0], position[1], position[2]));
        }
    }
}

DrawnItem cloud(const ItemShape& shape, const NumberTuples* normals)
{
    DrawnItem item;
    takeUsable(item, shape.points);
    if (item.phases->numPoints() == 0)
        item.sources.clear();
    writeCloud(item, item.phases->numPoints(), shape.points, normals);
    addChunks(item);
    return item;
}

std::vector<float> gathered(const std::vector<float>& vectors, const std::vector<unsigned int>& indices)
{
    std::vector<float> chosen;
    if (vectors.empty())
        return chosen;
    chosen.reserve(3 * indices.size());
    for (const unsigned int index : indices) {
        const float* const vector = vectors.data() + 3 * std::size_t(index);
        chosen.insert(chosen.end(), vector, vector + 3);
    }
    return chosen;
}

// Each line or triangle has vertices of its own.
void separate(DrawnItem& item)
{
    item.positions = gathered(item.positions, item.indices);
    item.normals = gathered(item.normals, item.indices);
    item.sources = std::exchange(item.indices, {});
    item.isIndexed = false;
}

// From each point to the one behind it, at every `stride`-th.
DrawnItem strokes(const ItemShape& shape, std::size_t stride, bool haveParts)
{
    DrawnItem item;
    item.primitive = PrimitiveKind::Lines;
    item.isIndexed = true;
    const std::vector<bool> unusable = takePoints(item, shape.points);
    for (std::size_t i = 0; i + 1 < shape.points.size(); i += stride) {
        if (isLeftOut(unusable, i) || isLeftOut(unusable, i + 1))
            continue;
        item.indices.insert(item.indices.end(), {static_cast<unsigned int>(i), static_cast<unsigned int>(i + 1)});
        if (haveParts)
            item.parts.push_back(static_cast<unsigned int>(i / stride));
    }
    if (haveParts)
        separate(item);
    return item;
}

// Divided by `size`, so that nothing that is computed of it overflows.
Vector3d cornerAt(const DrawnItem& item, unsigned int vertex, double size)
{
    const float* const position = item.positions.data() + 3 * std::size_t(vertex);
    return (1 / size) * Vector3d(position[0], position[1], position[2]);
}

// Its length is twice the area.
Vector3d normalOf(const DrawnItem& item, const unsigned int* triangle, double size)
{
    const Vector3d corner = cornerAt(item, triangle[0], size);
    return cross(cornerAt(item, triangle[1], size) - corner, cornerAt(item, triangle[2], size) - corner);
}

// Calls `use(i, vertices)` for each face.
template <typename Use>
void forEachFace(const ItemShape& shape, Use use)
{
    std::vector<unsigned int> face;
    shape.faces.numbers.visit([&](const auto* vertices, std::size_t) {
        for (std::size_t i = 0; i < shape.numParts(); ++i) {
            const std::size_t size = shape.numCornersOf(i);
            face.clear();
            for (std::size_t corner = 0; corner < size; ++corner)
                face.push_back(static_cast<unsigned int>(*vertices++));
            use(i, face);
        }
    });
}

// Calls `use(i, vertices, a, b, c)` for each triangle of the faces that can be drawn, a, b and c being numbers of
// corners.
template <typename Use>
void forEachTriangle(const DrawnItem& item, const ItemShape& shape, const std::vector<bool>& unusable, Use use)
{
    Triangulator triangulator;
    std::vector<Vector3d> corners;
    const double size = item.box.diagonal();
    forEachFace(shape, [&](std::size_t i, const std::vector<unsigned int>& face) {
        corners.clear();
        for (const unsigned int vertex : face) {
            if (isLeftOut(unusable, vertex))
                return;
            corners.push_back(cornerAt(item, vertex, size));
        }
        for (const auto& [a, b, c] : triangulator.triangulate(corners))
            if (length(cross(corners[b] - corners[a], corners[c] - corners[a])) > 0)
                use(i, face, a, b, c);
    });
}

void takeTriangles(DrawnItem& item, const ItemShape& shape, const std::vector<bool>& unusable, bool haveParts)
{
    item.indices.reserve(3 * shape.numParts());
    const auto take = [&](std::size_t i, const std::vector<unsigned int>& face, auto a, auto b, auto c) {
        item.indices.insert(item.indices.end(), {face[a], face[b], face[c]});
        if (haveParts)
            item.parts.push_back(static_cast<unsigned int>(i));
    };
    forEachTriangle(item, shape, unusable, take);
}

// Each vertex has the mean of the normals of its triangles, the larger ones counting more.
void curve(DrawnItem& item)
{
    std::vector<Vector3d> normals(item.numVertices());
    for (std::size_t i = 0; i < item.indices.size(); i += 3) {
        const Vector3d normal = normalOf(item, &item.indices[i], item.box.diagonal());
        for (std::size_t corner = 0; corner < 3; ++corner)
            normals[item.indices[i + corner]] += normal;
    }
    item.normals.reserve(item.positions.size());
    for (const Vector3d& normal : normals)
        append(item.normals, normal);
}

// The vertices of each triangle, which are no other's, have its normal.
void flatten(DrawnItem& item)
{
    item.normals.reserve(item.positions.size());
    for (unsigned int first = 0; first < item.numVertices(); first += 3) {
        const unsigned int triangle[] = {first, first + 1, first + 2};
        const Vector3d normal = normalOf(item, triangle, item.box.diagonal());
        for (std::size_t corner = 0; corner < 3; ++corner)
            append(item.normals, normal);
    }
}

DrawnItem mesh(const ItemShape& shape, const NumberTuples* normals, bool isSmooth, bool haveParts)
{
    DrawnItem item;
    item.primitive = PrimitiveKind::Triangles;
    item.isIndexed = true;
    const std::vector<bool> unusable = takePoints(item, shape.points);
    takeTriangles(item, shape, unusable, haveParts);
    if (normals)
        takeNormals(item, *normals);
    else if (isSmooth)
        curve(item);
    const bool isFlat = item.normals.empty();
    if (isFlat || haveParts)
        separate(item);
    if (isFlat)
        flatten(item);
    return item;
}

// A stroke and a head of four, with the number of what it belongs to.
void appendArrow(DrawnItem& item, const Vector3d& from, const Vector3d& direction, std::size_t source)
{
    const Vector3d along = direction;
    std::size_t smallest = 0;
    for (std::size_t i = 1; i < 3; ++i)
        if (std::abs(along[i]) < std::abs(along[smallest]))
            smallest = i;
    Vector3d axis;
    axis[smallest] = 1;
    const double size = length(along);
    const Vector3d side = size > 0 ? cross((1 / size) * along, axis) : Vector3d();
    const Vector3d otherSide = size > 0 ? cross((1 / size) * along, side) : Vector3d();
    const Vector3d tip = from + along;
    const auto stroke = [&](const Vector3d& start) {
        append(item.positions, start - item.origin);
        append(item.positions, tip - item.origin);
        item.sources.insert(item.sources.end(), 2, static_cast<unsigned int>(source));
    };
    stroke(from);
    for (const Vector3d& out : {side, -1.0 * side, otherSide, -1.0 * otherSide})
        stroke(from + 0.8 * along + (0.07 * size) * out);
    item.box.extend(from);
    item.box.extend(tip);
}

DrawnItem vectors(const ItemShape& shape)
{
    DrawnItem item;
    item.primitive = PrimitiveKind::Lines;
    const auto forEachArrow = [&shape](auto use) {
        forEachPoint(shape.points, [&](std::size_t i, const Vector3d& from) {
            const Vector3d direction = pointAt(shape.ends, i);
            if (isUsable(from) && isUsable(direction))
                use(i, from, direction);
        });
    };
    forEachArrow([&item](std::size_t, const Vector3d& from, const Vector3d& direction) {
        item.box.extend(from);
        item.box.extend(from + direction);
    });
    item.origin = item.box.centre();
    forEachArrow([&item](std::size_t i, const Vector3d& from, const Vector3d& direction) {
        appendArrow(item, from, direction, i);
    });
    return item;
}

DrawnItem boxes(const ItemShape& shape)
{
    DrawnItem item;
    item.primitive = PrimitiveKind::Lines;
    item.isIndexed = true;
    const auto forEachBox = [&shape](auto use) {
        forEachPoint(shape.points, [&](std::size_t i, const Vector3d& min) {
            const Vector3d max = pointAt(shape.ends, i);
            SceneBox box;
            box.extend(min);
            box.extend(max);
            if (isUsable(min) && isUsable(max))
                use(i, box);
        });
    };
    forEachBox([&item](std::size_t, const SceneBox& box) { item.box.extend(box); });
    item.origin = item.box.centre();
    forEachBox([&item](std::size_t i, const SceneBox& box) {
        const auto first = static_cast<unsigned int>(item.numVertices());
        for (const Vector3d& corner : box.corners())
            append(item.positions, corner - item.origin);
        item.sources.insert(item.sources.end(), 8, static_cast<unsigned int>(i));
        // Along an edge, one bit of a corner's number changes.
        for (unsigned int corner = 0; corner < 8; ++corner)
            for (const unsigned int bit : {1U, 2U, 4U})
                if (!(corner & bit))
                    item.indices.insert(item.indices.end(), {first + corner, first + corner + bit});
    });
    return item;
}

DrawnItem frame(const ItemShape& shape)
{
    DrawnItem item;
    item.primitive = PrimitiveKind::Lines;
    item.origin = shape.frame * Vector3d();
    if (!isUsable(item.origin))
        return item;
    for (std::size_t i = 0; i < 3; ++i) {
        Vector3d axis;
        axis[i] = 1;
        appendArrow(item, item.origin, shape.frame.turned(axis), i);
        while (item.colours.size() < 4 * item.numVertices())
            item.colours.insert(item.colours.end(), AXIS_COLOURS[i].data(), AXIS_COLOURS[i].data() + 4);
    }
    return item;
}

// Both ways along it, an edge is the same.
std::vector<std::pair<unsigned int, unsigned int>> edgesOf(
    const DrawnItem& item, const ItemShape& shape, const std::vector<bool>& unusable)
{
    std::vector<std::pair<unsigned int, unsigned int>> edges;
    std::optional<std::size_t> last;
    forEachTriangle(item, shape, unusable, [&](std::size_t i, const std::vector<unsigned int>& face, auto...) {
        for (std::size_t corner = 0; last != i && corner < face.size(); ++corner)
            edges.push_back(std::minmax({face[corner], face[(corner + 1) % face.size()]}));
        last = i;
    });
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

std::uint64_t mixed(std::uint64_t number)
{
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EB;
    return number ^ (number >> 31);
}

// The same at the same place.
std::uint64_t hashOf(const Vector3d& point)
{
    std::uint64_t hash = 0;
    for (std::size_t i = 0; i < 3; ++i)
        hash = mixed(hash + 0x9E3779B97F4A7C15 + std::bit_cast<std::uint64_t>(point[i] + 0.0)); // -0 is 0
    return hash;
}

// Calls `use(face)` for each face all of whose vertices can be drawn.
template <typename Use>
void forEachUsableFace(const ItemShape& shape, const std::vector<Vector3d>& points, Use use)
{
    forEachFace(shape, [&](std::size_t, const std::vector<unsigned int>& face) {
        if (std::all_of(face.begin(), face.end(), [&points](unsigned int vertex) { return isUsable(points[vertex]); }))
            use(face);
    });
}

// Whether at each edge an even number of faces meets: what two of the same edge leave of a sum of bits is nothing.
bool doEdgesMeet(const ItemShape& shape, const std::vector<Vector3d>& points)
{
    std::vector<std::uint64_t> hashes;
    hashes.reserve(points.size());
    std::transform(points.begin(), points.end(), std::back_inserter(hashes), hashOf);
    std::uint64_t sum = 0;
    forEachUsableFace(shape, points, [&](const std::vector<unsigned int>& face) {
        for (std::size_t corner = 0; corner < face.size(); ++corner) {
            const std::uint64_t from = hashes[face[corner]];
            const std::uint64_t to = hashes[face[(corner + 1) % face.size()]];
            sum ^= from != to ? mixed(from + to) : 0;
        }
    });
    return sum == 0;
}

// Makes numbers the same of which each is as close to the next as that. They are sorted.
void joinNumbers(std::vector<double>& numbers, double tolerance)
{
    double last = numbers.front();
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        const bool isSame = numbers[i] - last <= tolerance;
        last = numbers[i];
        numbers[i] = isSame ? numbers[i - 1] : last;
    }
}

// Gives the same place to points that lie so close to each other that only rounding can keep them apart.
void joinPoints(const ItemShape& shape, std::vector<Vector3d>& points)
{
    constexpr double OF_SURFACE = 1e-9;      // of its diagonal
    constexpr double OF_COORDINATES = 1e-15; // a few of the steps in which doubles go
    SceneBox box;
    forEachUsableFace(shape, points, [&](const std::vector<unsigned int>& face) {
        for (const unsigned int vertex : face)
            box.extend(points[vertex]);
    });
    for (std::size_t axis = 0; axis < 3 && !box.isEmpty(); ++axis) {
        const double largest = std::max(std::abs(box.getMin()[axis]), std::abs(box.getMax()[axis]));
        std::vector<double> sorted;
        for (const Vector3d& point : points)
            if (isUsable(point))
                sorted.push_back(point[axis]);
        std::sort(sorted.begin(), sorted.end());
        std::vector<double> joined = sorted;
        joinNumbers(joined, std::max(OF_SURFACE * box.diagonal(), OF_COORDINATES * largest));
        for (Vector3d& point : points)
            if (isUsable(point))
                point[axis] = joined[static_cast<std::size_t>(
                    std::lower_bound(sorted.begin(), sorted.end(), point[axis]) - sorted.begin())];
    }
}

// It is drawn from its samples.
DrawnItem volume(const ItemShape& shape)
{
    DrawnItem item;
    item.isIndexed = true; // and nothing is drawn of it here
    item.box = shape.grid->box();
    item.origin = shape.grid->centre();
    return item;
}

DrawnItem position(const ItemShape& shape)
{
    DrawnItem item;
    takePoints(item, shape.points);
    item.isIndexed = true; // and nothing is drawn of it here
    return item;
}

} // namespace

DrawnItem drawnEdges(const ItemShape& shape)
{
    DrawnItem item;
    item.primitive = PrimitiveKind::Lines;
    item.isIndexed = true;
    const std::vector<bool> unusable = takePoints(item, shape.points);
    for (const auto& [from, to] : edgesOf(item, shape, unusable))
        item.indices.insert(item.indices.end(), {from, to});
    return item;
}

bool isClosedSurface(const ItemShape& shape)
{
    if (shape.kind != ItemKind::Mesh || shape.numParts() == 0)
        return false;
    std::vector<Vector3d> points;
    points.reserve(shape.points.size());
    forEachPoint(shape.points, [&points](std::size_t, const Vector3d& point) { points.push_back(point); });
    if (doEdgesMeet(shape, points))
        return true;
    joinPoints(shape, points);
    return doEdgesMeet(shape, points);
}

DrawnItem drawnPhases(
    const DrawnItem& cloud, std::size_t numPhases, const ItemShape& shape, const NumberTuples* normals)
{
    DrawnItem few;
    few.origin = cloud.origin;
    const PointPhases& phases = *cloud.phases;
    few.sources.reserve(phases.numChunks() * phases.sizeOfPhases(0, numPhases));
    for (std::size_t chunk = 0; chunk < phases.numChunks(); ++chunk)
        phases.forEachPoint(chunk, numPhases,
            [&](std::size_t point) { few.sources.push_back(static_cast<unsigned int>(cloud.sourceOf(point))); });
    writeCloud(few, few.sources.size(), shape.points, normals);
    return few;
}

DrawnItem drawnItem(const ItemShape& shape, const NumberTuples* normals, bool isSmooth, bool haveParts)
{
    switch (shape.kind) {
    case ItemKind::Cloud: return cloud(shape, normals);
    case ItemKind::Mesh: return mesh(shape, normals, isSmooth, haveParts);
    case ItemKind::Lines: return strokes(shape, 1, haveParts);
    case ItemKind::Segments: return strokes(shape, 2, haveParts);
    case ItemKind::Vectors: return vectors(shape);
    case ItemKind::Boxes: return boxes(shape);
    case ItemKind::Frame: return frame(shape);
    case ItemKind::Volume: return volume(shape);
    case ItemKind::Text: break;
    }
    return position(shape);
}

} // namespace tavo
