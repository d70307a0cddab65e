#include "vireo/show/scenes/ScenePick.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

#include "tavo/base/text/printable.h"
#include "vireo/show/scenes/Triangulator.h"

namespace tavo {

namespace {

constexpr std::size_t LONGEST_NAME = 200;
constexpr double UNBOUNDED = std::numeric_limits<double>::infinity();

Vector3d vectorAt(const NumberTuples& tuples, std::size_t i)
{
    return {tuples.numbers[3 * i], tuples.numbers[3 * i + 1], tuples.numbers[3 * i + 2]};
}

// As few digits as tell it from all other numbers of its type.
template <typename T>
std::string written(T number)
{
    std::array<char, 64> text{};
    std::to_chars_result end{};
    if constexpr (std::is_floating_point_v<T>) {
        const T size = std::abs(number);
        const bool isShort = size == 0 || (size >= T(1e-5) && size < T(1e16));
        end = isShort ? std::to_chars(text.begin(), text.end(), number, std::chars_format::fixed)
                      : std::to_chars(text.begin(), text.end(), number);
    } else {
        end = std::to_chars(text.begin(), text.end(), number);
    }
    return {text.begin(), end.ptr};
}

// Of a number that was computed: so many digits that rounding is not seen.
std::string rounded(double number)
{
    constexpr int DIGITS = 12;
    std::array<char, 64> text{};
    return {text.begin(), std::to_chars(text.begin(), text.end(), number, std::chars_format::general, DIGITS).ptr};
}

std::string written(const NumberArray& numbers, std::size_t i)
{
    return numbers.visit([i](const auto* values, std::size_t) { return written(values[i]); });
}

std::string written(const NumberTuples& tuples, std::size_t i)
{
    return written(tuples.numbers, 3 * i) + ", " + written(tuples.numbers, 3 * i + 1) + ", " +
           written(tuples.numbers, 3 * i + 2);
}

Vector3i placeOfSample(const VolumeGrid& grid, std::size_t sample)
{
    const auto nx = static_cast<std::size_t>(grid.size[0]);
    const auto ny = static_cast<std::size_t>(grid.size[1]);
    return {static_cast<int>(sample % nx), static_cast<int>(sample / nx % ny), static_cast<int>(sample / nx / ny)};
}

// Where the ray meets what was hit.
struct Hit
{
    std::size_t index = 0;
    std::size_t element = 0;
    Vector3d local;
};

// Finds the triangle that a ray goes through; or else, since what was drawn is rounded, the one that it misses least.
class TriangleSearch
{
public:
    explicit TriangleSearch(const Ray& ray)
        : m_Ray(ray)
    {}

    // Returns whether this is the best one so far. The corners are in the scene.
    bool tries(const std::array<Vector3d, 3>& corners)
    {
        const Vector3d one = corners[1] - corners[0];
        const Vector3d other = corners[2] - corners[0];
        const Vector3d across = cross(m_Ray.direction, other);
        const Vector3d toStart = m_Ray.start - corners[0];
        const Vector3d along = cross(toStart, one);
        const double volume = dot(one, across);
        if (volume == 0)
            return false;
        const double u = dot(toStart, across) / volume;
        const double v = dot(m_Ray.direction, along) / volume;
        const double inside = std::min({u, v, 1 - u - v, 0.0}); // negative if it is missed
        const double depth = dot(other, along) / volume;
        if (depth < 0 && m_Ray.isCut)
            return false;
        if (!(inside > m_Inside || (inside == m_Inside && depth < m_Depth)))
            return false;
        m_Inside = inside;
        m_Depth = depth;
        m_Weights = weightsOf(u, v);
        return true;
    }

    // How much each corner counts at the place that was hit.
    const Vector3d& weights() const { return m_Weights; }

private:
    static Vector3d weightsOf(double u, double v)
    {
        const Vector3d weights(std::max(1 - u - v, 0.0), std::max(u, 0.0), std::max(v, 0.0));
        return (1 / (weights[0] + weights[1] + weights[2])) * weights;
    }

    Ray m_Ray;
    double m_Inside = -UNBOUNDED;
    double m_Depth = UNBOUNDED;
    Vector3d m_Weights{1, 0, 0};
};

class SurfaceHit
{
public:
    SurfaceHit(const ItemShape& shape, const Matrix4& matrix, const Ray& ray)
        : m_Shape(shape)
        , m_Matrix(matrix)
        , m_Search(ray)
    {}

    // Of the faces of a vertex, one of which was hit. Reading all faces for it is faster than drawing them, and takes
    // no memory.
    Hit of(std::size_t vertex)
    {
        m_Hit = {vertex, 0, vectorAt(m_Shape.points, vertex)};
        m_Shape.faces.numbers.visit([&](const auto* vertices, std::size_t) {
            Face face;
            for (; face.number < m_Shape.numParts(); face.first += face.numCorners, ++face.number) {
                face.numCorners = m_Shape.numCornersOf(face.number);
                for (std::size_t corner = 0; corner < face.numCorners; ++corner)
                    if (static_cast<std::size_t>(vertices[face.first + corner]) == vertex)
                        tryFace(face);
            }
        });
        return m_Hit;
    }

private:
    struct Face
    {
        std::size_t number = 0;
        std::size_t first = 0; // of its corners among those of all
        std::size_t numCorners = 0;
    };

    std::size_t vertexOf(const Face& face, std::size_t corner) const
    {
        return static_cast<std::size_t>(m_Shape.faces.numbers[face.first + corner]);
    }

    // As it is drawn: polygons may be concave.
    void tryFace(const Face& face)
    {
        std::vector<Vector3d> corners;
        std::vector<Vector3d> shifted; // to small numbers, of which areas are computed
        for (std::size_t corner = 0; corner < face.numCorners; ++corner) {
            corners.push_back(vectorAt(m_Shape.points, vertexOf(face, corner)));
            shifted.push_back(corners.back() - corners.front());
        }
        for (const auto& [a, b, c] : m_Triangulator.triangulate(shifted))
            if (m_Search.tries({m_Matrix * corners[a], m_Matrix * corners[b], m_Matrix * corners[c]})) {
                const Vector3d& weights = m_Search.weights();
                take(face, weights[0] * corners[a] + weights[1] * corners[b] + weights[2] * corners[c]);
            }
    }

    void take(const Face& face, const Vector3d& local)
    {
        m_Hit = {0, face.number, local};
        double nearest = UNBOUNDED;
        for (std::size_t corner = 0; corner < face.numCorners; ++corner) {
            const std::size_t vertex = vertexOf(face, corner);
            const double distance = length(m_Matrix.turned(vectorAt(m_Shape.points, vertex) - local));
            if (distance < nearest)
                m_Hit.index = vertex;
            nearest = std::min(nearest, distance);
        }
    }

    const ItemShape& m_Shape;
    const Matrix4& m_Matrix;
    TriangleSearch m_Search;
    Triangulator m_Triangulator;
    Hit m_Hit;
};

// Finds the place on several strokes that a ray comes nearest to.
class StrokeSearch
{
public:
    StrokeSearch(const Matrix4& matrix, const Ray& ray)
        : m_Matrix(matrix)
        , m_Ray(ray)
    {}

    void tries(const Vector3d& from, const Vector3d& to)
    {
        const Vector3d away = m_Matrix * from - m_Ray.start;
        const Vector3d stroke = m_Matrix.turned(to - from);
        // Seen along the ray.
        const auto flat = [this](const Vector3d& v) {
            return v - (dot(m_Ray.direction, v) / dot(m_Ray.direction, m_Ray.direction)) * m_Ray.direction;
        };
        const double size = dot(flat(stroke), flat(stroke));
        const double part = size > 0 ? std::clamp(-dot(flat(away), flat(stroke)) / size, 0.0, 1.0) : 0;
        const double distance = length(flat(away + part * stroke));
        if (distance >= m_Distance)
            return;
        m_Distance = distance;
        m_Part = part;
        m_Local = from + part * (to - from);
    }

    const Vector3d& local() const { return m_Local; }

    // Of the stroke, from its start.
    double part() const { return m_Part; }

private:
    const Matrix4& m_Matrix;
    Ray m_Ray;
    double m_Distance = UNBOUNDED;
    double m_Part = 0;
    Vector3d m_Local;
};

// `end` is the number of its second point.
Hit lineHit(const ItemShape& shape, std::size_t end, StrokeSearch search)
{
    search.tries(vectorAt(shape.points, end - 1), vectorAt(shape.points, end));
    const std::size_t line = shape.kind == ItemKind::Segments ? end / 2 : end - 1;
    return {search.part() < 0.5 ? end - 1 : end, line, search.local()};
}

Hit arrowHit(const ItemShape& shape, std::size_t index, StrokeSearch search)
{
    const Vector3d from = vectorAt(shape.points, index);
    search.tries(from, from + vectorAt(shape.ends, index));
    return {index, index, search.local()};
}

Hit boxHit(const ItemShape& shape, std::size_t index, StrokeSearch search)
{
    SceneBox box;
    box.extend(vectorAt(shape.points, index));
    box.extend(vectorAt(shape.ends, index));
    const std::array<Vector3d, 8> corners = box.corners();
    for (std::size_t corner = 0; corner < corners.size(); ++corner)
        for (const std::size_t bit : {1U, 2U, 4U})
            if (!(corner & bit))
                search.tries(corners[corner], corners[corner + bit]);
    return {index, index, search.local()};
}

Hit axisHit(const ItemShape& shape, std::size_t axis, StrokeSearch search)
{
    Vector3d end;
    end[axis] = 1;
    search.tries(shape.frame * Vector3d(), shape.frame * end);
    return {axis, axis, search.local()};
}

Hit hitOf(const ItemShape& shape, std::size_t source, const Matrix4& matrix, const Ray& ray)
{
    switch (shape.kind) {
    case ItemKind::Mesh: return SurfaceHit(shape, matrix, ray).of(source);
    case ItemKind::Lines:
    case ItemKind::Segments: return lineHit(shape, source, {matrix, ray});
    case ItemKind::Vectors: return arrowHit(shape, source, {matrix, ray});
    case ItemKind::Boxes: return boxHit(shape, source, {matrix, ray});
    case ItemKind::Frame: return axisHit(shape, source, {matrix, ray});
    case ItemKind::Volume: {
        const Vector3i sample = placeOfSample(*shape.grid, source);
        return {source, source, shape.grid->at({double(sample[0]), double(sample[1]), double(sample[2])})};
    }
    case ItemKind::Cloud:
    case ItemKind::Text: break;
    }
    return {source, source, vectorAt(shape.points, source)};
}

Vector3d positionOf(const ItemShape& shape, const Hit& hit)
{
    switch (shape.kind) {
    case ItemKind::Frame: return shape.frame * Vector3d();
    case ItemKind::Volume: return hit.local;
    default: return vectorAt(shape.points, hit.index);
    }
}

std::string nameOf(const ItemShape& shape, const Picked& picked)
{
    const std::string index = std::to_string(picked.index);
    switch (shape.kind) {
    case ItemKind::Mesh: return "vertex " + index + ", face " + std::to_string(picked.element);
    case ItemKind::Lines:
    case ItemKind::Segments: return "point " + index + ", line " + std::to_string(picked.element);
    case ItemKind::Vectors: return "arrow " + index;
    case ItemKind::Boxes: return "box " + index;
    case ItemKind::Frame: return std::string(1, "xyz"[picked.index]) + " axis";
    case ItemKind::Text: return "text";
    case ItemKind::Volume: {
        const Vector3i sample = placeOfSample(*shape.grid, picked.index);
        return "sample " + std::to_string(sample[0]) + ", " + std::to_string(sample[1]) + ", " +
               std::to_string(sample[2]);
    }
    case ItemKind::Cloud: break;
    }
    return "point " + index;
}

std::vector<std::string> coordinatesOf(const ItemShape& shape, const Picked& picked)
{
    std::vector<std::string> lines;
    const auto coordinate = [&](std::size_t i) {
        switch (shape.kind) {
        case ItemKind::Frame: return written(picked.position[i]);
        case ItemKind::Volume: return rounded(picked.position[i]);
        default: return written(shape.points.numbers, 3 * picked.index + i);
        }
    };
    for (std::size_t i = 0; i < 3; ++i)
        lines.push_back(std::string(1, "xyz"[i]) + ' ' + coordinate(i));
    if (shape.kind == ItemKind::Vectors)
        lines.push_back("direction " + written(shape.ends, picked.index));
    if (shape.kind == ItemKind::Boxes)
        lines.push_back("to " + written(shape.ends, picked.index));
    if (!(picked.place == picked.position))
        lines.push_back("in the scene " + rounded(picked.place[0]) + ", " + rounded(picked.place[1]) + ", " +
                        rounded(picked.place[2]));
    return lines;
}

// What of all that was sent for each point, or each face, belongs to this one.
void takeValues(ScenePick& pick, const SceneItem& item)
{
    const std::size_t index = pick.picked.index;
    if (index >= item.shape()->numPoints())
        return;
    for (const SceneField& field : item.fields()) {
        const std::size_t i = field.areOfParts ? pick.picked.element : index;
        pick.picked.fields.push_back({field.name, field.values.numbers[i]});
        std::string line = printable(field.name, LONGEST_NAME) + ' ' + written(field.values.numbers, i);
        const std::string name = field.areLabels ? item.nameOfLabel(field.values.numbers[i]) : std::string();
        if (!name.empty())
            line += " (" + printable(name, LONGEST_NAME) + ')';
        pick.lines.push_back(line);
    }
    pick.picked.colour = item.colourSent(index, pick.picked.element);
    if (const std::optional<RGBA8>& colour = pick.picked.colour) {
        std::string line = "colour";
        for (std::size_t i = 0; i < 4; ++i)
            line += ' ' + std::to_string((*colour)[i]);
        pick.lines.push_back(line);
    }
    if (const NumberTuples* const normals = item.normals()) {
        pick.picked.normal = vectorAt(*normals, index);
        pick.lines.push_back("normal " + written(*normals, index));
    }
}

// Integers are what they are, and doubles as good as computed ones.
double roundingOf(const NumberArray& numbers)
{
    return numbers.visit([](const auto* values, std::size_t) {
        using T = std::remove_cvref_t<decltype(*values)>;
        if constexpr (std::is_same_v<T, float>)
            return double(std::numeric_limits<float>::epsilon()) / 2;
        else
            return std::numeric_limits<double>::epsilon();
    });
}

double uncertaintyOf(const SceneModel::Placed& placed, const Vector3d& local)
{
    double largest = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        Vector3d along;
        along[axis] = local[axis];
        const Vector3d turned = placed.matrix.turned(along);
        largest = std::max({largest, std::abs(turned[0]), std::abs(turned[1]), std::abs(turned[2])});
    }
    return largest * roundingOf(placed.item->shape()->points.numbers);
}

} // namespace

Ray rayThrough(const SceneCamera& camera, const SceneCamera::Size& size, const Vector2d& place)
{
    const Vector3d start = camera.unproject({place[0], place[1], 0}, size);
    const Vector3d there = camera.unproject({place[0], place[1], camera.getDistance()}, size);
    return {start, (1 / camera.getDistance()) * (there - start)};
}

Ray cutTo(const SceneBox& box, const Ray& ray)
{
    constexpr double MARGIN = 1e-5; // of the diagonal: what is drawn is rounded
    double entry = -UNBOUNDED;
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (ray.direction[axis] != 0) {
            const double first = (box.getMin()[axis] - ray.start[axis]) / ray.direction[axis];
            const double second = (box.getMax()[axis] - ray.start[axis]) / ray.direction[axis];
            entry = std::max(entry, std::min(first, second));
        }
    entry -= MARGIN * box.diagonal() / length(ray.direction);
    return {ray.start + entry * ray.direction, ray.direction, true};
}

ScenePick pickOf(const SceneModel::Placed& placed, std::size_t vertex, const Ray& ray)
{
    const ItemShape& shape = *placed.item->shape();
    const Hit hit = hitOf(shape, placed.item->sourceOf(vertex), placed.matrix, ray);
    ScenePick pick;
    pick.local = hit.local;
    pick.uncertainty = uncertaintyOf(placed, hit.local);
    pick.picked.path = *placed.path;
    pick.picked.index = hit.index;
    pick.picked.element = hit.element;
    pick.picked.position = positionOf(shape, hit);
    pick.picked.place = placed.matrix * hit.local;
    pick.lines = {printable(pick.picked.path, LONGEST_NAME), nameOf(shape, pick.picked)};
    for (const std::string& line : coordinatesOf(shape, pick.picked))
        pick.lines.push_back(line);
    takeValues(pick, *placed.item);
    return pick;
}

ScenePick pickOfSection(const SceneModel::Placed& placed, std::size_t vertex, std::size_t face, const Vector3d& local)
{
    ScenePick pick;
    pick.local = local;
    pick.uncertainty = uncertaintyOf(placed, local);
    pick.picked.path = *placed.path;
    pick.picked.index = vertex;
    pick.picked.element = face;
    pick.picked.position = vectorAt(placed.item->shape()->points, vertex);
    const Vector3d place = pick.picked.place = placed.matrix * local;
    pick.lines = {printable(pick.picked.path, LONGEST_NAME), "section",
        "in the scene " + rounded(place[0]) + ", " + rounded(place[1]) + ", " + rounded(place[2])};
    return pick;
}

} // namespace tavo
