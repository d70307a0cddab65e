#include "vireo/show/volumes/VolumeDrawing.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <type_traits>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/show/scenes/CutOut.h"
#include "vireo/volume/opacityOfLayer.h"

namespace tavo {

namespace {

constexpr unsigned int TABLE_UNIT = 1;
constexpr unsigned int NEIGHBOUR_UNIT = 2; // and the next one

constexpr const char* BEGINNING = R"(!!ARBfp1.0
PARAM window = program.local[0];        # from a value to its place in the table: factor and summand
TEMP sample, place, colour;
TEX sample, fragment.texcoord[0], texture[0], 2D;
)";

constexpr const char* OF_NUMBERS = R"(MAD place.x, sample.x, window.x, window.y;
TEX result.color, place, texture[1], 1D;
END)";

// Between a number and none there is less and less of the number.
constexpr const char* OF_NUMBERS_WITH_GAPS = R"(MAX place.y, sample.w, 0.0001;
RCP place.y, place.y;
MUL place.x, sample.x, place.y;
MAD place.x, place.x, window.x, window.y;
TEX colour, place, texture[1], 1D;
MUL colour.w, colour.w, sample.w;
MOV result.color, colour;
END)";

// As opaque as they are bright.
constexpr const char* OF_COLOURS = R"(MAX place.x, sample.x, sample.y;
MAX place.x, place.x, sample.z;
MUL place.x, place.x, sample.w;
MAD place.x, place.x, window.x, window.y;
TEX colour, place, texture[1], 1D;
MOV sample.w, colour.w;
MOV result.color, sample;
END)";

constexpr const char* OF_COLOURS_WITH_OPACITY = R"(MAD place.x, sample.w, window.x, window.y;
TEX colour, place, texture[1], 1D;
MOV sample.w, colour.w;
MOV result.color, sample;
END)";

// Their places in the range, as opacities. Where there is no number, there is none.
constexpr const char* PLACES = R"(MAX place.y, sample.w, 0.0001;
RCP place.y, place.y;
MUL place.x, sample.x, place.y;
MAD_SAT place.x, place.x, window.x, window.y;
MUL place.x, place.x, sample.w;
MOV result.color, place.x;
END)";

// Darkens `colour`, which another program leaves, by how its place is inclined: by the differences of its six
// neighbours, where there are any. The light is at the eye, and as bright as that on surfaces.
constexpr const char* LIGHT = R"(PARAM texel = program.local[1];         # its size, and the last place across
PARAM part = program.local[2];          # of a sample: what is light or dark of it
PARAM toEyeX = program.local[3];        # from differences to the normal
PARAM toEyeY = program.local[4];
PARAM toEyeZ = program.local[5];
PARAM light = { 0.25, 0.75, 0.0000001, 2500.0 };
TEMP first, last, slope, normal;
MOV first, fragment.texcoord[0];
SUB first.x, first.x, texel.x;
TEX first, first, texture[0], 2D;
MOV last, fragment.texcoord[0];
ADD last.x, last.x, texel.x;
MIN last.x, last.x, texel.z;
TEX last, last, texture[0], 2D;
SUB last, last, first;
DP4 slope.x, last, part;
MOV first, fragment.texcoord[0];
SUB first.y, first.y, texel.y;
TEX first, first, texture[0], 2D;
MOV last, fragment.texcoord[0];
ADD last.y, last.y, texel.y;
MIN last.y, last.y, texel.w;
TEX last, last, texture[0], 2D;
SUB last, last, first;
DP4 slope.y, last, part;
TEX first, fragment.texcoord[0], texture[2], 2D;
TEX last, fragment.texcoord[0], texture[3], 2D;
SUB last, last, first;
DP4 slope.z, last, part;
DP3 normal.x, slope, toEyeX;
DP3 normal.y, slope, toEyeY;
DP3 normal.z, slope, toEyeZ;
DP3 normal.w, normal, normal;
MAX slope.w, normal.w, light.z;
RSQ slope.w, slope.w;
MUL slope.w, slope.w, normal.z;
ABS slope.w, slope.w;
MAD slope.w, slope.w, light.y, light.x;
MUL_SAT normal.w, normal.w, light.w;    # where values hardly differ, there is nothing that is inclined
SUB slope.w, slope.w, 1.0;
MAD slope.w, normal.w, slope.w, 1.0;
MUL colour.xyz, colour, slope.w;
MOV result.color, colour;
END)";

constexpr double GREATEST_ONLY = -1; // as a thickness: there are no layers

// From a place in the range to the middle of its entry in the table.
constexpr double TO_ENTRY = (ColourTable::SIZE - 1.0) / ColourTable::SIZE;
constexpr double FIRST_ENTRY = 0.5 / ColourTable::SIZE;

const char* programOf(const VolumeSlices& slices)
{
    switch (slices.getSamples().width) {
    case 3: return OF_COLOURS;
    case 4: return OF_COLOURS_WITH_OPACITY;
    default: return slices.haveGaps() ? OF_NUMBERS_WITH_GAPS : OF_NUMBERS;
    }
}

// Of categories the differences are those of their opacities: what stands in the table at what was read.
std::string lightOn(const VolumeSlices& slices)
{
    if (!slices.categories())
        return LIGHT;
    std::istringstream light(LIGHT);
    std::string program;
    for (std::string line; std::getline(light, line);) {
        program += line + '\n';
        if (!line.starts_with("TEX "))
            continue;
        const std::string name = line.substr(4, line.find(',') - 4);
        program += "MAD " + name + ".x, " + name + ".x, window.x, window.y;\n";
        program += "TEX " + name + ", " + name + ", texture[1], 1D;\n";
    }
    return program;
}

// The same with light on it.
std::string litProgramOf(const VolumeSlices& slices)
{
    std::string program = std::string(BEGINNING) + programOf(slices);
    const std::string result = "result.color";
    program.resize(program.rfind("END"));
    if (const std::size_t move = program.rfind("MOV result.color, "); move != std::string::npos)
        program.replace(move + 4, result.size(), "colour");
    else
        program.replace(program.rfind(result), result.size(), "colour");
    return program + lightOn(slices);
}

bool haveUnits(unsigned int number)
{
    GLint available = 0;
    glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS_ARB, &available);
    return number <= static_cast<unsigned int>(available);
}

// Of three columns, what takes a direction back.
std::optional<Vector3d> takenBack(const Matrix4& matrix, const Vector3d& direction)
{
    const Vector3d x = matrix.turned({1, 0, 0});
    const Vector3d y = matrix.turned({0, 1, 0});
    const Vector3d z = matrix.turned({0, 0, 1});
    const double volume = dot(cross(x, y), z);
    if (!(std::abs(volume) > 0))
        return {};
    return (1 / volume) *
           Vector3d(dot(cross(y, z), direction), dot(cross(z, x), direction), dot(cross(x, y), direction));
}

// Where the eye looks, in its own coordinates, if it looks at a point.
Vector3d viewTowards(const Vector3d& point)
{
    double projection[16];
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    const bool isOrthographic = projection[15] != 0;
    const Vector3d ahead(0, 0, -1);
    return isOrthographic || !(length(point) > 0) ? ahead : (1 / length(point)) * point;
}

void setEntry(ColourTable::Entries& entries, std::size_t i, const RGBA8& colour, double opacity)
{
    const auto component = [](double part) {
        return static_cast<std::uint16_t>(std::lround(std::numeric_limits<std::uint16_t>::max() * part));
    };
    for (std::size_t channel = 0; channel < 3; ++channel)
        entries[4 * i + channel] = component(colour[channel] / 255.0);
    entries[4 * i + 3] = component(opacity);
}

} // namespace

VolumeDrawing::Stacks::Stacks(GLContext& context, const VolumeGrid& grid, const NumberTuples& samples,
    const VolumeSlices::Survey& survey, bool areCoarse)
    : slices(context, grid, samples, survey, areCoarse)
    , program(&context, GL_FRAGMENT_PROGRAM_ARB)
    , litProgram(&context, GL_FRAGMENT_PROGRAM_ARB)
    , placeProgram(&context, GL_FRAGMENT_PROGRAM_ARB)
{
    isValid = program.compile(std::string(BEGINNING) + programOf(slices));
    canBeLit = isValid && haveUnits(NEIGHBOUR_UNIT + 2) && litProgram.compile(litProgramOf(slices));
    if (isValid && samples.width == 1 && placeProgram.compile(std::string(BEGINNING) + PLACES))
        greatest = GreatestValues::make(context);
}

std::unique_ptr<VolumeDrawing> VolumeDrawing::make(
    GLContext& context, const VolumeGrid& grid, NumberTuples samples, Categories categories)
{
    if (!isExtensionSupported("GL_ARB_vertex_program") || !isExtensionSupported("GL_ARB_fragment_program"))
        return nullptr;
    std::unique_ptr<VolumeDrawing> drawing(new VolumeDrawing(context, grid, std::move(samples), std::move(categories)));
    if (!drawing->isLarge())
        drawing->makeWhole();
    return drawing->isLarge() || drawing->m_Whole->isValid ? std::move(drawing) : nullptr;
}

// All samples are looked at in a thread if they are many.
VolumeDrawing::VolumeDrawing(GLContext& context, const VolumeGrid& grid, NumberTuples samples, Categories categories)
    : m_Context(context)
    , m_Grid(grid)
    , m_Samples(std::move(samples))
    , m_Categories(std::move(categories))
    , m_Table(context)
{
    m_Survey = std::async(isLarge() ? std::launch::async : std::launch::deferred, [this] { return survey(1); });
}

// Of every so many samples. Of categories all is known.
VolumeSlices::Survey VolumeDrawing::survey(std::size_t step) const
{
    VolumeSlices::Survey survey;
    if (!m_Categories)
        survey = VolumeSlices::surveyOf(m_Samples, step, m_IsUnwanted);
    survey.categories = m_Categories;
    return survey;
}

VolumeDrawing::~VolumeDrawing()
{
    m_IsUnwanted = true;
    if (m_Survey.valid())
        m_Survey.wait();
}

void VolumeDrawing::makeWhole()
{
    m_Whole = std::make_unique<Stacks>(m_Context, m_Grid, m_Samples, m_Survey.get(), false);
}

// Of few samples nobody knows whether others are no numbers.
VolumeDrawing::Stacks* VolumeDrawing::stacksFor(const Vector3f& viewDir, bool mayBeCoarse)
{
    m_ViewDir = viewDir;
    if (m_Whole)
        m_Whole->slices.show(m_Look.range);
    m_IsCoarse = mayBeCoarse && isLarge() && !(m_Whole && m_Whole->slices.isPrepared(viewDir));
    if (m_IsCoarse && !m_Coarse) {
        const auto step = static_cast<std::size_t>(double(m_Grid.numSamples()) / VolumeSlices::COARSE) + 1;
        VolumeSlices::Survey found = survey(step);
        found.haveGaps = !m_Categories && m_Samples.numbers.visit([]<typename T>(const T*, std::size_t) {
            return std::is_floating_point_v<T>;
        });
        m_Coarse = std::make_unique<Stacks>(m_Context, m_Grid, m_Samples, found, true);
    }
    if (m_IsCoarse)
        m_Coarse->slices.show(m_Look.range);
    else if (!m_Whole)
        makeWhole();
    return m_IsCoarse ? m_Coarse.get() : m_Whole.get();
}

bool VolumeDrawing::refine(double seconds)
{
    if (!m_IsCoarse)
        return true;
    if (!m_Whole && m_Survey.wait_for(std::chrono::seconds(0)) == std::future_status::timeout)
        return false;
    if (!m_Whole) {
        makeWhole();
        m_Whole->slices.show(m_Look.range);
    }
    const SavedAttributes attributes(GL_TEXTURE_BIT);
    return m_Whole->slices.prepare(m_ViewDir, seconds);
}

void VolumeDrawing::setLook(Look look)
{
    if (look == m_Look)
        return;
    m_Look = std::move(look);
    m_TableThickness = 0;
}

void VolumeDrawing::draw(const Matrix4& modelView, const Way& way)
{
    const Vector3d extent = m_Grid.extent();
    const double unit = std::max({extent[0], extent[1], extent[2]});
    Matrix4 turn;
    for (std::size_t column = 0; column < 3; ++column)
        for (std::size_t row = 0; row < 3; ++row)
            turn.at(row, column) = unit * m_Grid.axes[column][row];
    const Matrix4 toEye = modelView * turn;
    const std::optional<Vector3d> view = takenBack(toEye, viewTowards(toEye * Vector3d()));
    if (!view)
        return;
    const double size = length(*view);
    const Vector3f viewDir(float((*view)[0] / size), float((*view)[1] / size), float((*view)[2] / size));
    glLoadMatrixd(toEye.numbers.data());
    m_Shown = stacksFor(viewDir, way.mayBeCoarse);
    if (!m_Shown->isValid)
        return;
    m_Shown->slices.setStep(way.sliceStep);
    m_Table.bind(TABLE_UNIT);
    if (way.isMaximum && m_Shown->greatest && !m_Categories)
        drawGreatest(viewDir, way.cutOut);
    else
        drawSmoke(viewDir, way.isLit && m_Shown->canBeLit ? &toEye : nullptr, way.cutOut);
    ColourTable::unbind(TABLE_UNIT);
}

void VolumeDrawing::drawSlices(const Vector3f& viewDir, const CutOut* cutOut)
{
    const auto drawThem = [&] { m_Shown->slices.draw(viewDir); };
    cutOut ? cutOut->draw(drawThem) : drawThem();
}

void VolumeDrawing::drawSmoke(const Vector3f& viewDir, const Matrix4* litToEye, const CutOut* cutOut)
{
    unsigned int axis = 0;
    int direction = 0;
    m_Shown->slices.computeOrder(viewDir, axis, direction);
    const auto numSlices = static_cast<unsigned int>(m_Shown->slices.getDrawnSize()[axis]);
    writeTable(
        std::min(m_Shown->slices.getStep(), numSlices) * m_Shown->slices.distanceOf(axis) / std::abs(viewDir[axis]));
    const Window window = this->window();
    GLShaderARB& program = litToEye ? m_Shown->litProgram : m_Shown->program;
    program.bind();
    program.setLocalParameter4f(0, static_cast<float>(window.factor * TO_ENTRY),
        static_cast<float>(window.summand * TO_ENTRY + FIRST_ENTRY), 0, 0);
    if (litToEye)
        setLight(axis, *litToEye);
    m_Shown->slices.setNeighbourUnit(litToEye ? NEIGHBOUR_UNIT : 0);
    drawSlices(viewDir, cutOut);
    program.unbind();
}

// Normals are as long as places in the range rise over the smallest distance of samples.
void VolumeDrawing::setLight(unsigned int axis, const Matrix4& toEye)
{
    const auto [width, height] = m_Shown->slices.textureSizeOf(axis);
    const unsigned int u = axis == 0 ? 1 : 0;
    const unsigned int v = axis == 2 ? 1 : 2;
    const auto numTexels = [this](unsigned int i) { return static_cast<float>(m_Shown->slices.getDrawnSize()[i]); };
    m_Shown->litProgram.setLocalParameter4f(
        1, 1 / width, 1 / height, (numTexels(u) - 0.5F) / width, (numTexels(v) - 0.5F) / height);
    switch (m_Categories ? 4 : getSamples().width) {
    case 3: m_Shown->litProgram.setLocalParameter4f(2, 1 / 3.0F, 1 / 3.0F, 1 / 3.0F, 0); break;
    case 4: m_Shown->litProgram.setLocalParameter4f(2, 0, 0, 0, 1); break;
    default: m_Shown->litProgram.setLocalParameter4f(2, 1, 0, 0, 0);
    }
    const Vector3d columns[] = {toEye.turned({1, 0, 0}), toEye.turned({0, 1, 0}), toEye.turned({0, 0, 1})};
    const double volume = dot(cross(columns[0], columns[1]), columns[2]);
    const double scale = std::cbrt(std::abs(volume)) / volume * (m_Categories ? 1 : window().factor);
    const unsigned int axes[] = {u, v, axis};
    Vector3d normals[3];
    for (std::size_t i = 0; i < 3; ++i) {
        const unsigned int along = axes[i];
        const double distance = 2 * m_Shown->slices.distanceOf(along); // in smallest distances
        normals[i] = (scale / distance) * cross(columns[(along + 1) % 3], columns[(along + 2) % 3]);
    }
    for (unsigned int row = 0; row < 3; ++row)
        m_Shown->litProgram.setLocalParameter4f(3 + row, static_cast<float>(normals[0][row]),
            static_cast<float>(normals[1][row]), static_cast<float>(normals[2][row]), 0);
}

void VolumeDrawing::drawGreatest(const Vector3f& viewDir, const CutOut* cutOut)
{
    writeTable(GREATEST_ONLY);
    const Window window = this->window();
    m_Shown->slices.setNeighbourUnit(0);
    const auto drawPlaces = [&] {
        m_Shown->placeProgram.bind();
        m_Shown->placeProgram.setLocalParameter4f(
            0, static_cast<float>(window.factor), static_cast<float>(window.summand), 0, 0);
        drawSlices(viewDir, cutOut);
        m_Shown->placeProgram.unbind();
    };
    m_Shown->greatest->draw(drawPlaces, static_cast<float>(TO_ENTRY), static_cast<float>(FIRST_ENTRY));
}

// For layers so many times as thick as those that the opacities are of. A view that is turned a little needs no other.
void VolumeDrawing::writeTable(double thickness)
{
    constexpr double NOTICED = 0.01;
    if (std::abs(thickness - m_TableThickness) < NOTICED * std::abs(m_TableThickness))
        return;
    m_TableThickness = thickness;
    m_Table.write(m_Categories ? entriesOfCategories(thickness) : entriesOfRange(thickness));
}

ColourTable::Entries VolumeDrawing::entriesOfRange(double thickness) const
{
    ColourTable::Entries entries;
    for (std::size_t i = 0; i < ColourTable::SIZE; ++i) {
        const double place = double(i) / (ColourTable::SIZE - 1);
        const auto number = static_cast<std::size_t>(std::lround(place * double(m_Look.colours.size() - 1)));
        setEntry(entries, i, m_Look.colours[number], opacityOf(place, thickness));
    }
    return entries;
}

// The first one, of what is none, is not seen.
ColourTable::Entries VolumeDrawing::entriesOfCategories(double thickness) const
{
    ColourTable::Entries entries{};
    const std::vector<std::int64_t>& categories = m_Categories->categories();
    for (std::size_t i = 0; i < std::min(categories.size(), ColourTable::SIZE - 1); ++i) {
        const RGBA8& colour = m_Look.colours[std::min(i, m_Look.colours.size() - 1)];
        setEntry(entries, i + 1, colour, opacityOf(placeInRange(double(categories[i]), m_Look.range), thickness));
    }
    return entries;
}

// Of greatest values, those are opaque that are most opaque in layers.
double VolumeDrawing::opacityOf(double place, double thickness) const
{
    const bool isSent = getSamples().width == 4;
    const double opacity = isSent ? place : opacityAt(m_Look.opacities, place);
    if (thickness != GREATEST_ONLY)
        return opacityOfLayer(m_Look.opacity * opacity, thickness);
    double most = 0;
    for (const OpacityPoint& point : m_Look.opacities)
        most = std::max(most, point.opacity);
    return most > 0 ? m_Look.opacity * opacity / most : 0;
}

// If the range is none, what is above it comes last, what is below it first, and the value itself in the middle.
VolumeDrawing::Window VolumeDrawing::window() const
{
    if (areColours())
        return {};
    if (m_Categories)
        return {m_Shown->slices.largestEntry() / (ColourTable::SIZE - 1), 0};
    const auto [least, greatest] = m_Shown->slices.getRange();
    const auto [from, to] = m_Look.range;
    const auto partOf = [](double value, double first, double last) {
        return (value / 2 - first / 2) / (last / 2 - first / 2); // halved: differences may overflow
    };
    if (from / 2 != to / 2)
        return {(greatest / 2 - least / 2) / (to / 2 - from / 2), partOf(least, from, to)};
    if (least == greatest)
        return {0, 0.5 * ((least >= from) + (least > from))};
    constexpr double STEEP = 1e6;
    return {STEEP, 0.5 - STEEP * std::clamp(partOf(from, least, greatest), -1.0, 2.0)};
}

} // namespace tavo
