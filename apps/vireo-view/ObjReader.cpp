#include "apps/vireo-view/ObjReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <exception>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "apps/vireo-view/FaceCollector.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/MaterialColours.h"
#include "apps/vireo-view/TextLines.h"
#include "apps/vireo-view/pointFields.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

constexpr std::uint32_t NONE = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t FIRST_COPY = 1u << 31; // what the copies of points are numbered from while the file is read

// Gives each corner of a face the point that has its normal: that of the file, or a copy of it.
class Corners
{
public:
    // The number of the point with that normal.
    std::uint32_t find(std::uint32_t point, std::uint32_t normal)
    {
        if (m_First.size() <= point)
            m_First.resize(std::size_t(point) + 1);
        if (m_First[point].normal == NONE)
            m_First[point].normal = normal;
        if (m_First[point].normal == normal)
            return point;
        // Of a point with normals without number some are copied again, so that no file takes for ever.
        constexpr int MOST_STEPS = 32;
        int steps = 0;
        for (std::uint32_t i = m_First[point].newest; i != NONE && steps < MOST_STEPS; i = m_Copies[i].older, ++steps)
            if (m_Copies[i].normal == normal)
                return FIRST_COPY + i;
        const auto copy = static_cast<std::uint32_t>(m_Copies.size());
        m_Copies.push_back({normal, std::exchange(m_First[point].newest, copy), point});
        return FIRST_COPY + copy;
    }

    bool areEmpty() const { return m_First.empty(); }
    std::size_t getNumCopies() const { return m_Copies.size(); }
    std::uint32_t pointOf(std::size_t copy) const { return m_Copies[copy].point; }

    // The normals of the file's points, which are so many, and behind them those of their copies.
    std::vector<double> arrange(const std::vector<double>& normals, std::size_t numPoints) const
    {
        std::vector<double> arranged;
        arranged.reserve(3 * (numPoints + m_Copies.size()));
        const auto add = [&](std::uint32_t normal) {
            for (std::size_t i = 0; i < 3; ++i)
                arranged.push_back(normal == NONE ? 0.0 : normals[3 * std::size_t(normal) + i]);
        };
        for (std::size_t i = 0; i < numPoints; ++i)
            add(i < m_First.size() ? m_First[i].normal : NONE);
        for (const Copy& copy : m_Copies)
            add(copy.normal);
        return arranged;
    }

private:
    struct Use
    {
        std::uint32_t normal = NONE;
        std::uint32_t newest = NONE; // of its copies
    };

    struct Copy
    {
        std::uint32_t normal;
        std::uint32_t older; // copy of the same point
        std::uint32_t point;
    };

    std::vector<Use> m_First; // of each point of the file
    std::vector<Copy> m_Copies;
};

// Adds copies of tuples behind them.
void addCopies(std::vector<double>& numbers, std::size_t width, const Corners& corners)
{
    for (std::size_t copy = 0; copy < corners.getNumCopies(); ++copy)
        for (std::size_t i = 0; i < width; ++i)
            numbers.push_back(numbers[width * corners.pointOf(copy) + i]);
}

class Reader
{
public:
    explicit Reader(InputBuffer& input)
        : m_Input(input)
        , m_Lines(input)
    {}

    GeometryFile read()
    {
        while (m_Lines.nextJoined())
            readLine();
        if (m_Positions.empty())
            throw InputError(m_Input.getFile(), "has no points");
        finish();
        return std::move(m_File);
    }

private:
    std::size_t numPoints() const { return m_Positions.size() / 3; }
    std::size_t numNormals() const { return m_Normals.size() / 3; }

    void readLine()
    {
        std::string_view text = m_Lines.get();
        const std::string_view word = takeWord(text);
        if (word == "v")
            addPoint(text);
        else if (word == "vn")
            addNumbers(text, m_Normals, "a normal");
        else if (word == "f")
            addFace(text);
        else if (word == "vt")
            leaveOut("places in textures");
        else if (word == "usemtl")
            m_Material = m_MaterialNumbers
                             .try_emplace(std::string(withoutIndent(text)), std::uint32_t(m_MaterialNumbers.size()) + 1)
                             .first->second;
        else if (word == "mtllib")
            m_Libraries.insert(std::string(withoutIndent(text)));
        else if (word == "l")
            leaveOut("lines");
        else if (word != "p" && word != "g" && word != "o" && word != "s")
            leaveOut(quotedText(word));
    }

    void leaveOut(const std::string& what)
    {
        constexpr std::size_t MOST = 100;
        if (m_LeftOut.size() < MOST && m_LeftOut.insert(what).second)
            m_File.leftOut.push_back(what);
    }

    // Three numbers, behind which there may be more.
    void addNumbers(std::string_view& text, std::vector<double>& numbers, const char* what)
    {
        for (int i = 0; i < 3; ++i) {
            const std::optional<double> number = numberOf(takeWord(text));
            if (!number)
                m_Lines.fail(std::string("not the numbers of ") + what);
            numbers.push_back(*number);
        }
    }

    // A weight may follow, or a colour.
    void addPoint(std::string_view text)
    {
        addNumbers(text, m_Positions, "a point");
        if (numPoints() >= FIRST_COPY)
            throw InputError(m_Input.getFile(), "has too many points");
        std::array<double, 3> colour{};
        for (double& channel : colour) {
            const std::string_view word = takeWord(text);
            const std::optional<double> number = numberOf(word);
            if (!number) {
                m_LacksColours = true;
                return;
            }
            channel = *number;
        }
        if (!m_LacksColours)
            m_Colours.insert(m_Colours.end(), colour.begin(), colour.end());
        m_HasColours = true;
    }

    // "7", "7/2", "7//3" or "7/2/3": a point, a place in a texture and a normal, counted from 1, or backwards from -1.
    void addFace(std::string_view text)
    {
        m_Face.clear();
        for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
            const std::size_t slash = std::min(word.find('/'), word.size());
            const std::size_t last = word.find('/', slash + 1);
            const std::uint64_t point = indexOf(word.substr(0, slash), numPoints());
            const bool hasNormal = slash < word.size() && last < word.size();
            const std::uint64_t normal = hasNormal ? indexOf(word.substr(last + 1), numNormals()) : UINT64_MAX;
            m_Face.push_back(cornerOf(point, normal));
        }
        m_Faces.add(m_Face);
        m_FaceMaterials.push_back(m_Material);
    }

    std::uint64_t indexOf(std::string_view word, std::size_t count)
    {
        std::int64_t index = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), index);
        if (error != std::errc() || end != word.data() + word.size())
            m_Lines.fail("not the corners of a face");
        if (index > 0)
            return static_cast<std::uint64_t>(index - 1);
        return index < 0 && index >= -static_cast<std::int64_t>(count) ? count - static_cast<std::uint64_t>(-index)
                                                                       : UINT64_MAX;
    }

    // A point that only comes later has no normal yet.
    std::uint64_t cornerOf(std::uint64_t point, std::uint64_t normal)
    {
        const bool hasNormal = point < numPoints() && normal < numNormals();
        m_LacksNormals = m_LacksNormals || !hasNormal;
        if (!hasNormal)
            return point < FIRST_COPY ? point : UINT64_MAX;
        return m_Corners.find(static_cast<std::uint32_t>(point), static_cast<std::uint32_t>(normal));
    }

    void finish()
    {
        const std::size_t numOfFile = numPoints();
        for (std::uint32_t& corner : m_Faces.getCorners())
            if (corner >= FIRST_COPY)
                corner = static_cast<std::uint32_t>(numOfFile + (corner - FIRST_COPY));
        addCopies(m_Positions, 3, m_Corners);
        Geometry geometry;
        geometry.positions = std::move(m_Positions);
        if (m_HasColours && m_Colours.size() == 3 * numOfFile) {
            addCopies(m_Colours, 3, m_Corners);
            setColours(geometry, std::move(m_Colours), 3);
        } else if (m_HasColours) {
            m_File.leftOut.emplace_back("colours, which not every point has");
        }
        setNormals(geometry, numOfFile);
        m_Faces.finish(m_File, geometry);
        if (!m_MaterialNumbers.empty())
            setMaterials(geometry);
        m_File.geometries.push_back(std::move(geometry));
    }

    // Of corners, or of points without faces.
    void setNormals(Geometry& geometry, std::size_t numOfFile)
    {
        const bool areOfPoints = m_Faces.isEmpty() && numNormals() == numOfFile;
        if (areOfPoints)
            geometry.normals = std::move(m_Normals);
        else if (!m_Corners.areEmpty() && !m_LacksNormals)
            geometry.normals = m_Corners.arrange(m_Normals, numOfFile);
        else if (numNormals() > 0)
            m_File.leftOut.emplace_back("normals, which not every corner has");
    }

    // The colours of points go before those of materials.
    void setMaterials(Geometry& geometry)
    {
        if (m_Libraries.empty() || sizeOf(geometry.colours) > 0)
            return leaveOut("materials");
        const MaterialColours materials = readMaterials();
        if (materials.haveTextures)
            leaveOut("textures");
        using Colour = std::array<std::uint8_t, 3>;
        constexpr Colour NO_MATERIAL = {204, 204, 204};
        std::vector<Colour> colours(m_MaterialNumbers.size() + 1, NO_MATERIAL);
        bool areAnyKnown = false;
        for (const auto& [name, number] : m_MaterialNumbers)
            if (const auto found = materials.colours.find(name); found != materials.colours.end()) {
                colours[number] = found->second;
                areAnyKnown = true;
            }
        if (!areAnyKnown)
            return;
        std::vector<std::uint8_t> ofFaces;
        for (const std::uint32_t number : m_FaceMaterials)
            ofFaces.insert(ofFaces.end(), colours[number].begin(), colours[number].end());
        geometry.ofFaces.colours = std::move(ofFaces);
        m_Faces.keepGood(geometry.ofFaces.colours, 3);
    }

    // Of the files beside this one. A line may name several, or one whose name has blanks.
    MaterialColours readMaterials()
    {
        MaterialColours materials;
        for (const std::string& library : m_Libraries) {
            if (addMaterials(materials, library))
                continue;
            std::string_view names = library;
            for (std::string_view name = takeWord(names); !name.empty(); name = takeWord(names))
                if (!addMaterials(materials, name))
                    leaveOut("the materials of " + quotedText(name) + ", which cannot be read");
        }
        return materials;
    }

    bool addMaterials(MaterialColours& materials, std::string_view name) const
    {
        try {
            std::u8string path(name.begin(), name.end());
            std::replace(path.begin(), path.end(), u8'\\', u8'/');
            addMaterialColours(materials, m_Input.getFile().parent_path() / path);
            return true;
        } catch (const std::exception&) { // no such name, or no such file
            return false;
        }
    }

    InputBuffer& m_Input;
    TextLines m_Lines;
    std::vector<double> m_Positions;
    std::vector<double> m_Colours;
    std::vector<double> m_Normals;
    std::vector<std::uint64_t> m_Face;
    FaceCollector m_Faces;
    std::set<std::string> m_Libraries;                      // of materials
    std::map<std::string, std::uint32_t> m_MaterialNumbers; // from 1
    std::uint32_t m_Material = 0;                           // 0 if there is none
    std::vector<std::uint32_t> m_FaceMaterials;
    Corners m_Corners;
    bool m_HasColours = false;
    bool m_LacksColours = false;
    bool m_LacksNormals = false;
    std::set<std::string> m_LeftOut;
    GeometryFile m_File;
};

} // namespace

GeometryFile readObj(InputBuffer& input)
{
    return Reader(input).read();
}

} // namespace vireo_view
