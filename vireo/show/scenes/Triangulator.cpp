#include "vireo/show/scenes/Triangulator.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "tavo/platform/wgl.h"

#include <GL/glu.h>

namespace tavo {

namespace {

// Its length is twice the area.
Vector3d normalOf(std::span<const Vector3d> corners)
{
    Vector3d normal;
    for (std::size_t i = 2; i < corners.size(); ++i)
        normal += cross(corners[i - 1] - corners[0], corners[i] - corners[0]);
    return normal;
}

// Whether all turns are the polygon's own, and it goes around once: its sides go to and fro once.
bool isConvex(std::span<const Vector3d> corners, const Vector3d& normal)
{
    const std::size_t size = corners.size();
    const auto side = [&](std::size_t i) { return corners[(i + 1) % size] - corners[i % size]; };
    const auto isAcross = [&normal](std::size_t a, std::size_t b) { return std::abs(normal[a]) < std::abs(normal[b]); };
    const std::size_t axis = isAcross(0, 1) || isAcross(0, 2) ? 0 : 1;
    double direction = 0;
    int numReversals = 0;
    for (std::size_t i = 0; i <= size; ++i) {
        if (dot(cross(side(i), side(i + 1)), normal) < 0)
            return false;
        const double along = side(i)[axis];
        numReversals += along * direction < 0;
        direction = along != 0 ? std::copysign(1.0, along) : direction;
    }
    return numReversals <= 2;
}

void* pointerOf(std::size_t corner)
{
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(corner));
}

} // namespace

// What the tessellator calls.
struct Triangulator::Calls
{
    static void APIENTRY takeCorner(void* corner, void* corners)
    {
        static_cast<std::vector<unsigned int>*>(corners)->push_back(
            static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(corner)));
    }

    static void APIENTRY combine(double*, void* corners[4], float weights[4], void** combined)
    {
        *combined = corners[std::max_element(weights, weights + 4) - weights];
    }

    // That somebody asks for edges makes the tessellator give triangles only, instead of strips and fans.
    static void APIENTRY noteEdge(GLboolean) {}

    using Any = void(APIENTRY*)();

    static GLUtesselator* makeTessellator()
    {
        GLUtesselator* const tessellator = gluNewTess();
        if (!tessellator)
            throw std::bad_alloc();
        gluTessCallback(tessellator, GLU_TESS_VERTEX_DATA, reinterpret_cast<Any>(&takeCorner));
        gluTessCallback(tessellator, GLU_TESS_COMBINE, reinterpret_cast<Any>(&combine));
        gluTessCallback(tessellator, GLU_TESS_EDGE_FLAG, reinterpret_cast<Any>(&noteEdge));
        return tessellator;
    }
};

Triangulator::Triangulator() = default;

Triangulator::~Triangulator()
{
    if (m_Tessellator)
        gluDeleteTess(m_Tessellator);
}

const std::vector<Triangulator::Triangle>& Triangulator::triangulate(std::span<const Vector3d> corners)
{
    m_Triangles.clear();
    const Vector3d normal = normalOf(corners);
    if (!(length(normal) > 0))
        return m_Triangles;
    if (corners.size() == 3 || isConvex(corners, normal))
        fan(corners.size());
    else
        tessellate(corners, normal);
    return m_Triangles;
}

void Triangulator::fan(std::size_t numCorners)
{
    for (unsigned int i = 2; i < numCorners; ++i)
        m_Triangles.push_back({0, i - 1, i});
}

void Triangulator::tessellate(std::span<const Vector3d> corners, const Vector3d& normal)
{
    if (!m_Tessellator)
        m_Tessellator = Calls::makeTessellator();
    m_Corners.clear();
    gluTessNormal(m_Tessellator, normal[0], normal[1], normal[2]);
    gluTessBeginPolygon(m_Tessellator, &m_Corners);
    gluTessBeginContour(m_Tessellator);
    for (std::size_t i = 0; i < corners.size(); ++i)
        gluTessVertex(m_Tessellator, const_cast<double*>(corners[i].data()), pointerOf(i));
    gluTessEndContour(m_Tessellator);
    gluTessEndPolygon(m_Tessellator);
    for (std::size_t i = 0; i + 2 < m_Corners.size(); i += 3)
        m_Triangles.push_back({m_Corners[i], m_Corners[i + 1], m_Corners[i + 2]});
}

} // namespace tavo
