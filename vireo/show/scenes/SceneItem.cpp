#include "vireo/show/scenes/SceneItem.h"

#include <QColor>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <set>
#include <tuple>
#include <type_traits>
#include <utility>

#include "tavo/base/objects/PException.h"
#include "tavo/base/text/printable.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/show/colours/colourOfLabel.h"
#include "vireo/show/plots/colours.h"

namespace tavo {

namespace {

constexpr double POINT_SIZE = 2;
constexpr double LINE_WIDTH = 1.5;
constexpr double EDGE_WIDTH = 1;
constexpr double LARGEST_SIZE = 10000;   // more than drivers can
constexpr double EDGE_BRIGHTNESS = 0.45; // of that of the faces
constexpr const char* COLOURS = "colours";
constexpr double LARGEST_LABEL = 9e15; // beyond it, doubles are no numbers to count by
constexpr std::size_t SWATCH_SIZE = 8;

std::size_t newRevision()
{
    static std::atomic<std::size_t> revision = 0;
    return ++revision;
}

template <typename T>
unsigned char byteOf(T component)
{
    double byte = static_cast<double>(component);
    if constexpr (std::is_floating_point_v<T>)
        byte *= 255;
    return byte > 0 ? static_cast<unsigned char>(std::min(byte + 0.5, 255.0)) : 0; // NaN is 0
}

std::unique_ptr<GLVertexBuffer> makeBuffer(
    GLContext& context, const char* name, unsigned int width, unsigned int type, void* data, std::size_t count)
{
    VertexDescriptor layout;
    layout.pushAttrib(VertexAttribDescriptor(name, width, type));
    auto buffer = std::make_unique<GLVertexBuffer>(&context, layout, GLVertexBuffer::TYPE_DEFAULT);
    buffer->setMappingFlag(true);
    const auto numVertices = static_cast<unsigned int>(count);
    if (!buffer->init(numVertices, GL_STATIC_DRAW_ARB))
        throw PException("there is no memory for a buffer of " + std::to_string(count) + " vertices");
    buffer->writeToBuffer(data, 0, numVertices);
    return buffer;
}

std::unique_ptr<GLVertexBuffer> makeBuffer(
    GLContext& context, const char* name, std::vector<float>& tuples, unsigned int width = 3)
{
    if (tuples.empty())
        return nullptr;
    return makeBuffer(context, name, width, VertexAttribDescriptor::TYPE_FLOAT, tuples.data(), tuples.size() / width);
}

std::unique_ptr<GLTemplatedIndexBuffer<unsigned int>> makeBuffer(
    GLContext& context, const std::vector<unsigned int>& indices)
{
    if (indices.empty())
        return nullptr;
    auto buffer = std::make_unique<GLTemplatedIndexBuffer<unsigned int>>(&context);
    const auto size = static_cast<unsigned int>(indices.size());
    if (!buffer->init(size, GL_STATIC_DRAW_ARB))
        throw PException("there is no memory for a buffer of " + std::to_string(size) + " indices");
    buffer->writeToBuffer(indices.data(), 0, size);
    return buffer;
}

void drawPoints(const PointRanges& ranges)
{
    const auto number = static_cast<GLsizei>(ranges.firsts.size());
    if (glMultiDrawArrays && number > 1) {
        glMultiDrawArrays(GL_POINTS, ranges.firsts.data(), ranges.counts.data(), number);
        return;
    }
    for (std::size_t i = 0; i < ranges.firsts.size(); ++i)
        glDrawArrays(GL_POINTS, ranges.firsts[i], ranges.counts[i]);
}

GLenum modeOf(PrimitiveKind primitive)
{
    constexpr GLenum MODES[] = {GL_POINTS, GL_LINES, GL_TRIANGLES};
    return MODES[static_cast<std::size_t>(primitive)];
}

template <typename T>
void replace(std::optional<T>& value, std::optional<T>& newer)
{
    if (newer)
        value.swap(newer);
}

// Whether what goes around clockwise goes around counter-clockwise afterwards.
bool isMirrored(const Matrix4& matrix)
{
    const auto side = [&matrix](const Vector3d& axis) { return matrix.turned(axis); };
    return dot(cross(side({1, 0, 0}), side({0, 1, 0})), side({0, 0, 1})) < 0;
}

// The least and the greatest number that is finite.
std::pair<double, double> finiteRangeOf(const NumberArray& numbers)
{
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    numbers.visit([&](const auto* values, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            const auto value = static_cast<double>(values[i]);
            if (!std::isfinite(value))
                continue;
            least = std::min(least, value);
            greatest = std::max(greatest, value);
        }
    });
    return least <= greatest ? std::pair(least, greatest) : std::pair(0.0, 0.0);
}

// What waits and fits takes its place; what was there and fits no more goes.
template <typename Fits>
bool settle(std::optional<NumberTuples>& shown, std::optional<NumberTuples>& waiting, Fits fits)
{
    const bool takes = waiting && fits(*waiting);
    if (takes)
        shown = std::exchange(waiting, {});
    const bool goes = shown && !fits(*shown);
    if (goes && !waiting)
        waiting = shown;
    if (goes)
        shown.reset();
    return takes || goes;
}

} // namespace

void SceneItem::dropShape()
{
    m_Shape.reset();
    m_Drawn = {};
}

void SceneItem::apply(ItemUpdate& update)
{
    m_Revision = m_DataRevision = newRevision();
    bool isShapeNew = update.shape.has_value();
    replace(m_Shape, update.shape);
    applyFields(update);
    replace(m_WaitingColours, update.colours);
    replace(m_WaitingNormals, update.normals);
    replace(m_Colour, update.colour);
    isShapeNew = applySize(update) || isShapeNew;
    applyStyle(update);
    if (m_Shape && settleColours())
        m_AreColoursUploaded = false;
    if (m_Shape && settle(m_Normals, m_WaitingNormals, [this](const NumberTuples& normals) { return fits(normals); }))
        isShapeNew = true;
    if (m_Shape &&
        settle(m_Radii, m_WaitingRadii, [this](const NumberTuples& radii) { return radii.size() == 1 || fits(radii); }))
        isShapeNew = true;
    isShapeNew |= settleStyle();
    settleDrawn(isShapeNew);
}

void SceneItem::choose(const ItemChoice& choice)
{
    if (choice == m_Chosen)
        return;
    m_Revision = newRevision();
    const bool areRadiiNew = m_Radii && choice.size.has_value() != m_Chosen.size.has_value();
    m_Chosen = choice;
    settleDrawn(settleStyle() || areRadiiNew);
}

void SceneItem::settleDrawn(bool isNew)
{
    const bool haveParts = m_Shape && arePartsColoured();
    if (!m_Shape || (!isNew && haveParts == !m_Drawn.parts.empty()))
        return;
    m_Drawn = drawnItem(*m_Shape, m_Normals ? &*m_Normals : nullptr, m_IsSmooth, haveParts);
    addRadii();
    m_IsUploaded = m_AreColoursUploaded = m_AreEdgesUploaded = false;
}

// Of pixels and of units of the scene the later ones hold. Whether radii go.
bool SceneItem::applySize(ItemUpdate& update)
{
    bool doRadiiGo = false;
    if (update.size) {
        m_WaitingRadii.reset();
        doRadiiGo = std::exchange(m_Radii, {}).has_value();
    }
    replace(m_WaitingRadii, update.radii);
    return doRadiiGo;
}

// What is drawn reaches beyond the middles of its points.
void SceneItem::addRadii()
{
    constexpr double LARGEST = 1e30; // as of coordinates
    const bool areSeen = m_Radii && !m_Chosen.size && kind() == ItemKind::Cloud;
    m_LargestRadius = areSeen ? std::min(finiteRangeOf(m_Radii->numbers).second, LARGEST) : 0;
    if (!(m_LargestRadius > 0) || m_Drawn.box.isEmpty())
        return;
    const Vector3d radius(m_LargestRadius, m_LargestRadius, m_LargestRadius);
    const auto widen = [&radius](SceneBox& box) {
        box.extend(box.getMin() - radius);
        box.extend(box.getMax() + radius);
    };
    widen(m_Drawn.box);
    std::for_each(m_Drawn.chunks.begin(), m_Drawn.chunks.end(), widen);
}

void SceneItem::applyFields(ItemUpdate& update)
{
    for (SceneField& field : update.fields) {
        auto found = std::find_if(
            m_Fields.begin(), m_Fields.end(), [&field](const Field& older) { return older.name == field.name; });
        if (found == m_Fields.end())
            found = m_Fields.insert(m_Fields.end(), {field.name, field.areLabels, {}, {}, {}});
        found->areLabels = field.areLabels;
        found->waiting = field.values;
    }
    if (!update.onFaces.empty())
        m_AreColoursUploaded = false;
    m_OnFaces.merge(update.onFaces);
}

void SceneItem::applyStyle(ItemUpdate& update)
{
    replace(m_Sent.shown, update.shown);
    replace(m_Sent.range, update.range);
    replace(m_Sent.colourMap, update.colourMap);
    replace(m_Sent.size, update.size);
    replace(m_Sent.opacity, update.opacity);
    replace(m_Sent.isVisible, update.isVisible);
    replace(m_Sent.isSmooth, update.isSmooth);
    replace(m_Sent.areEdgesSeen, update.areEdgesSeen);
    replace(m_Sent.areBackFacesSeen, update.areBackFacesSeen);
}

// What is chosen wins over what was sent. Returns whether the shape has to be drawn anew.
bool SceneItem::settleStyle()
{
    const auto coloured = [this] { return std::tuple(m_Shown, m_Range, m_ColourMap, m_Opacity); };
    const auto before = coloured();
    const bool wasSmooth = m_IsSmooth;
    m_Shown = m_Chosen.shown && has(*m_Chosen.shown) ? m_Chosen.shown : m_Sent.shown;
    settleRange();
    m_Size = m_Chosen.size ? m_Chosen.size : m_Sent.size;
    const double opacity = m_Chosen.opacity.value_or(m_Sent.opacity.value_or(1));
    m_Opacity = std::isfinite(opacity) ? std::clamp(opacity, 0.0, 1.0) : 1;
    m_IsVisible = m_Chosen.isVisible.value_or(m_Sent.isVisible.value_or(true));
    m_IsSmooth = m_Chosen.isSmooth.value_or(m_Sent.isSmooth.value_or(false));
    m_AreEdgesSeen = m_Chosen.areEdgesSeen.value_or(m_Sent.areEdgesSeen.value_or(false));
    m_AreBackFacesSeen = m_Chosen.areBackFacesSeen.value_or(m_Sent.areBackFacesSeen.value_or(true));
    if (coloured() != before)
        m_AreColoursUploaded = false;
    return m_IsSmooth != wasSmooth;
}

void SceneItem::settleRange()
{
    m_Range = m_Sent.range;
    m_ColourMap = m_Sent.colourMap.value_or(std::string(namesOfColourMaps().front()));
    const Field* const field = shownField();
    const auto chosen = field ? m_Chosen.fields.find(field->name) : m_Chosen.fields.end();
    if (chosen == m_Chosen.fields.end())
        return;
    m_ColourMap = chosen->second.colourMap.value_or(m_ColourMap);
    if (chosen->second.range || chosen->second.isWhole)
        m_Range = chosen->second.range;
}

bool SceneItem::has(const std::string& shown) const
{
    const auto isShown = [&shown](const Field& field) { return field.name == shown; };
    return shown.empty() || (shown == "colours" && (m_Colours || m_WaitingColours)) ||
           std::any_of(m_Fields.begin(), m_Fields.end(), isShown);
}

bool SceneItem::settleColours()
{
    const auto fitsAs = [this](const std::string& name) {
        return [this, name](const NumberTuples& tuples) { return fitOf(tuples, name).has_value(); };
    };
    bool isNew = settle(m_Colours, m_WaitingColours, fitsAs(COLOURS));
    for (Field& field : m_Fields) {
        if (!settle(field.values, field.waiting, fitsAs(field.name)))
            continue;
        field.range.reset();
        isNew = true;
    }
    return isNew;
}

bool SceneItem::areColoursShown() const
{
    return m_Colours && m_Shown.value_or(COLOURS) == COLOURS;
}

bool SceneItem::arePartsColoured() const
{
    if (areColoursShown())
        return fitOf(*m_Colours, COLOURS)->areOfParts;
    const Field* const field = shownField();
    return field && fitOf(*field->values, field->name)->areOfParts;
}

const SceneItem::Field* SceneItem::shownField() const
{
    for (const Field& field : m_Fields)
        if (field.values && m_Shown.value_or(field.name) == field.name)
            return &field;
    return nullptr;
}

std::optional<SceneItem::ShownScalars> SceneItem::shownScalars() const
{
    if (!m_Shape || areColoursShown())
        return {};
    const Field* const field = shownField();
    if (!field || field->areLabels)
        return {};
    return ShownScalars{field->name, m_ColourMap, rangeOf(*field)};
}

bool SceneItem::isUnlitCloud() const
{
    return m_Shape && kind() == ItemKind::Cloud && !m_Normals;
}

bool SceneItem::fits(const NumberTuples& tuples) const
{
    return tuples.size() == m_Shape->points.size();
}

// Points come first.
std::optional<SceneItem::Fit> SceneItem::fitOf(const NumberTuples& tuples, const std::string& name) const
{
    const bool isKnown = tuples.width != 0;
    for (const bool areOfParts : {false, true}) {
        if (!areOfParts && m_OnFaces.contains(name))
            continue;
        const std::size_t count = areOfParts ? m_Shape->numParts() : m_Shape->points.size();
        if (areOfParts && count == 0)
            return {}; // what has no parts has no numbers of them
        for (const std::size_t width : {isKnown ? tuples.width : 3, isKnown ? tuples.width : 4})
            if (tuples.numbers.size() == width * count)
                return Fit{areOfParts, width};
    }
    return {};
}

template <typename Use>
void SceneItem::forEachSource(bool areOfParts, Use use) const
{
    if (!areOfParts)
        return m_Drawn.forEachSource(m_NumVertices, use);
    const std::size_t width = m_Drawn.primitive == PrimitiveKind::Triangles ? 3 : 2;
    for (std::size_t vertex = 0; vertex < m_NumVertices; ++vertex)
        use(m_Drawn.parts[vertex / width]);
}

std::pair<double, double> SceneItem::rangeOf(const Field& field) const
{
    if (m_Range)
        return *m_Range;
    if (!field.range)
        field.range = finiteRangeOf(field.values->numbers);
    return *field.range;
}

std::string SceneItem::nameOfShown() const
{
    if (areColoursShown())
        return "colours";
    const Field* const field = shownField();
    return field ? field->name : std::string();
}

ItemState SceneItem::state() const
{
    ItemState state{kind(), m_Colours.has_value(), m_Normals.has_value(), {}, nameOfShown(), {}, m_ColourMap, {},
        size(), m_Opacity, m_IsSmooth, m_AreEdgesSeen, m_AreBackFacesSeen};
    for (const Field& field : m_Fields)
        if (field.values)
            state.fields.push_back({field.name, field.areLabels});
    const Field* const field = areColoursShown() ? nullptr : shownField();
    if (!field || field->areLabels)
        return state;
    state.numbers = field->values->numbers;
    state.range = rangeOf(*field);
    return state;
}

bool SceneItem::areLabelsShown() const
{
    const Field* const field = areColoursShown() ? nullptr : shownField();
    return field && field->areLabels;
}

std::vector<RGBA8> SceneItem::swatch(bool isGroundDark) const
{
    const Field* const field = shownField();
    std::vector<RGBA8> colours;
    if (areColoursShown())
        colours = swatchAsSent();
    else if (field)
        colours = swatchOf(*field);
    else if (m_Shape && kind() == ItemKind::Frame)
        colours = {AXIS_COLOURS.begin(), AXIS_COLOURS.end()};
    else if (m_Colour || !m_Shape || kind() != ItemKind::Text)
        colours = {colour(colourOfCurve(m_PaletteNumber, isGroundDark))};
    for (RGBA8& colour : colours)
        colour[3] = 255;
    return colours;
}

std::vector<RGBA8> SceneItem::swatchAsSent() const
{
    const std::size_t size = m_Colours->numbers.size();
    const std::size_t width = m_Colours->width != 0 ? m_Colours->width : size == 4 * m_Shape->points.size() ? 4 : 3;
    std::vector<RGBA8> colours;
    m_Colours->numbers.visit([&](const auto* numbers, std::size_t) {
        for (std::size_t i = 0; i < SWATCH_SIZE && size >= width; ++i) {
            const auto* const colour = numbers + width * (i * (size / width) / SWATCH_SIZE);
            colours.emplace_back(byteOf(colour[0]), byteOf(colour[1]), byteOf(colour[2]), 255);
        }
    });
    return colours;
}

std::vector<RGBA8> SceneItem::swatchOf(const Field& field) const
{
    if (field.areLabels)
        return swatchOfLabels(field.values->numbers);
    const ColourMap map = findColourMap(m_ColourMap).value();
    std::vector<RGBA8> colours;
    for (std::size_t i = 0; i < SWATCH_SIZE; ++i)
        colours.push_back(map.sample(double(i) / (SWATCH_SIZE - 1)));
    return colours;
}

// Of the least ones among some of them.
std::vector<RGBA8> SceneItem::swatchOfLabels(const NumberArray& labels)
{
    std::set<std::int64_t> some;
    const std::size_t step = labels.size() / 256 + 1;
    for (std::size_t i = 0; i < labels.size(); i += step)
        if (std::abs(labels[i]) < LARGEST_LABEL)
            some.insert(static_cast<std::int64_t>(labels[i]));
    std::vector<RGBA8> colours;
    for (const std::int64_t label : some)
        if (colours.size() < SWATCH_SIZE / 2)
            colours.push_back(colourOfLabel(label));
    return colours;
}

std::string SceneItem::waiting() const
{
    if (!m_Shape)
        return {};
    std::string points = " for " + std::to_string(m_Shape->points.size()) + " points";
    if (m_Shape->kind == ItemKind::Mesh)
        points += " and " + std::to_string(m_Shape->numParts()) + " faces";
    if (m_WaitingColours && m_WaitingColours->width != 0)
        return std::to_string(m_WaitingColours->size()) + " colours" + points;
    if (m_WaitingColours)
        return std::to_string(m_WaitingColours->numbers.size()) + " numbers of colours" + points;
    if (m_WaitingNormals)
        return std::to_string(m_WaitingNormals->size()) + " normals" + points;
    if (m_WaitingRadii)
        return std::to_string(m_WaitingRadii->size()) + " radii" + points;
    for (const Field& field : m_Fields)
        if (field.waiting)
            return std::to_string(field.waiting->size()) + " numbers of \"" + printable(field.name, 80) + "\"" + points;
    return {};
}

RGBA8 SceneItem::colour(const QColor& unlessGiven) const
{
    RGBA8 colour(unlessGiven.red(), unlessGiven.green(), unlessGiven.blue(), unlessGiven.alpha());
    if (m_Colour)
        colour = *m_Colour;
    colour[3] = byteOf(m_Opacity * colour[3] / 255);
    return colour;
}

std::optional<ItemData> SceneItem::data() const
{
    if (!m_Shape)
        return {};
    ItemData data{*m_Shape, {}};
    if (m_Normals)
        data.numbers.push_back({{"normal x", "normal y", "normal z"}, *m_Normals, false});
    if (m_Colours) {
        const auto [areOfParts, width] = fitOf(*m_Colours, COLOURS).value();
        std::vector<std::string> names{"red", "green", "blue", "opacity"};
        names.resize(width);
        data.numbers.push_back({std::move(names), {m_Colours->numbers, width}, areOfParts});
    }
    if (m_Radii && fits(*m_Radii))
        data.numbers.push_back({{"radius"}, *m_Radii, false});
    for (const Field& field : m_Fields)
        if (field.values)
            data.numbers.push_back({{field.name}, *field.values, fitOf(*field.values, field.name)->areOfParts});
    return data;
}

const std::string* SceneItem::text() const
{
    return m_Shape && kind() == ItemKind::Text && !m_Drawn.box.isEmpty() ? &m_Shape->text : nullptr;
}

void SceneItem::upload(GLContext& context)
{
    m_IsUploaded = true; // whether it works or not: it is tried once
    m_NumVertices = m_Drawn.numVertices();
    m_PositionBuffer.reset();
    m_PositionBuffer = makeBuffer(context, "position", m_Drawn.positions);
    m_NormalBuffer = makeBuffer(context, "normal", m_Drawn.normals);
    m_IndexBuffer = makeBuffer(context, m_Drawn.indices);
    uploadRadii(context);
    m_Drawn.positions = {};
    m_Drawn.normals = {};
    m_Drawn.indices = {};
}

void SceneItem::uploadRadii(GLContext& context)
{
    m_RadiusBuffer.reset();
    m_PointScale.reset();
    if (!(m_LargestRadius > 0))
        return;
    m_PointScale = PointScale::make(context, m_NormalBuffer ? PointScale::Colour::Lit : PointScale::Colour::Own);
    std::vector<float> radii;
    if (m_Radii->size() > 1)
        m_Drawn.forEachSource(m_NumVertices, [&](std::size_t source) {
            const double radius = m_Radii->numbers[source];
            radii.push_back(radius > 0 ? static_cast<float>(std::min(radius, m_LargestRadius)) : 0);
        });
    m_RadiusBuffer = makeBuffer(context, "texcoord", radii, 1);
}

void SceneItem::uploadEdges(GLContext& context)
{
    m_AreEdgesUploaded = true;
    DrawnItem edges = drawnEdges(*m_Shape);
    m_EdgePositionBuffer.reset();
    m_EdgePositionBuffer = makeBuffer(context, "position", edges.positions);
    m_EdgeIndexBuffer = makeBuffer(context, edges.indices);
}

void SceneItem::uploadColours(GLContext& context)
{
    m_AreColoursUploaded = true;
    m_ColourBuffer.reset();
    std::vector<unsigned char> colours = coloursOfVertices();
    if (colours.empty())
        return;
    m_ColourBuffer =
        makeBuffer(context, "color", 4, VertexAttribDescriptor::TYPE_UNSIGNED_BYTE, colours.data(), m_NumVertices);
}

std::vector<unsigned char> SceneItem::coloursOfVertices() const
{
    if (areColoursShown())
        return coloursAsSent();
    const Field* const field = shownField();
    return field ? coloursOf(*field) : m_Drawn.colours;
}

std::vector<unsigned char> SceneItem::coloursOf(const Field& field) const
{
    const ColourMap map = findColourMap(m_ColourMap).value();
    const auto [from, to] = rangeOf(field);
    const double half = to / 2 - from / 2; // the whole may be too large
    const bool areOfParts = fitOf(*field.values, field.name)->areOfParts;
    std::vector<unsigned char> colours;
    colours.reserve(4 * m_NumVertices);
    field.values->numbers.visit([&, from = from](const auto* numbers, std::size_t) {
        forEachSource(areOfParts, [&](std::size_t source) {
            const auto value = static_cast<double>(numbers[source]);
            RGBA8 colour = ColourMap::colourOfNaN();
            if (field.areLabels && std::abs(value) < LARGEST_LABEL)
                colour = colourOfLabel(static_cast<std::int64_t>(value));
            else if (!field.areLabels && !std::isnan(value))
                colour =
                    map.sample(half != 0 ? (value / 2 - from / 2) / half : 0.5 * ((value >= from) + (value > from)));
            colours.insert(colours.end(), {colour[0], colour[1], colour[2], byteOf(m_Opacity)});
        });
    });
    return colours;
}

std::vector<unsigned char> SceneItem::coloursAsSent() const
{
    const auto [areOfParts, width] = fitOf(*m_Colours, COLOURS).value();
    std::vector<unsigned char> colours;
    colours.reserve(4 * m_NumVertices);
    m_Colours->numbers.visit([&, areOfParts = areOfParts, width = width]<typename T>(const T* numbers, std::size_t) {
        forEachSource(areOfParts, [&](std::size_t source) {
            const T* const colour = numbers + width * source;
            for (std::size_t component = 0; component < 3; ++component)
                colours.push_back(byteOf(colour[component]));
            const unsigned char alpha = width == 4 ? byteOf(colour[3]) : 255;
            colours.push_back(byteOf(m_Opacity * alpha / 255));
        });
    });
    return colours;
}

// Without those that wait.
std::vector<SceneField> SceneItem::fields() const
{
    std::vector<SceneField> fields;
    for (const Field& field : m_Fields)
        if (field.values)
            fields.push_back(
                {field.name, *field.values, field.areLabels, fitOf(*field.values, field.name)->areOfParts});
    return fields;
}

std::optional<RGBA8> SceneItem::colourSent(std::size_t source, std::size_t part) const
{
    if (!m_Colours)
        return {};
    const Fit fit = *fitOf(*m_Colours, COLOURS);
    RGBA8 colour(0, 0, 0, 255);
    m_Colours->numbers.visit([&](const auto* numbers, std::size_t) {
        for (std::size_t i = 0; i < fit.width; ++i)
            colour[i] = byteOf(numbers[fit.width * (fit.areOfParts ? part : source) + i]);
    });
    return colour;
}

bool SceneItem::prepare(GLContext& context)
{
    const bool hasChanged = !m_IsUploaded || !m_AreColoursUploaded;
    if (!m_IsUploaded)
        upload(context);
    if (!m_AreColoursUploaded)
        uploadColours(context);
    if (m_Shape && kind() == ItemKind::Mesh && m_AreEdgesSeen && !m_AreEdgesUploaded)
        uploadEdges(context);
    return hasChanged;
}

std::size_t SceneItem::draw(const Matrix4& modelView, bool isGroundDark, double scale, const PointShare& share)
{
    if (!m_PositionBuffer || (m_Drawn.isIndexed && !m_IndexBuffer))
        return 0;
    glLoadMatrixd(modelView.numbers.data());
    const RGBA8 one = colour(colourOfCurve(m_PaletteNumber, isGroundDark));
    glColor4ubv(one.data());
    setSizes(scale * share.enlargement);
    glLineWidth(static_cast<float>(scale * size()));
    m_NormalBuffer ? glEnable(GL_LIGHTING) : glDisable(GL_LIGHTING);
    if (m_PointScale) {
        glTexCoord1d(m_LargestRadius);
        m_PointScale->begin(length(modelView.turned({1, 0, 0})));
    }
    const double edgeWidth = scale * size();
    const double pointSize = scale * share.enlargement * size();
    const PointRanges ranges = m_Drawn.order ? rangesInView(modelView, share, pointSize) : PointRanges();
    m_Drawn.primitive == PrimitiveKind::Triangles ? drawFaces(modelView, edgeWidth) : drawVertices(ranges);
    if (m_PointScale)
        m_PointScale->end();
    if (kind() == ItemKind::Mesh && m_AreEdgesSeen)
        drawEdges(one, edgeWidth);
    return ranges.numPoints();
}

// With edges, a little behind them. Of what is mirrored, the front stays the front, and is lit as such.
void SceneItem::drawFaces(const Matrix4& modelView, double edgeWidth)
{
    int front;
    glGetIntegerv(GL_FRONT_FACE, &front);
    if (isMirrored(modelView))
        glFrontFace(front == GL_CW ? GL_CCW : GL_CW);
    glCullFace(GL_BACK);
    m_AreBackFacesSeen ? glDisable(GL_CULL_FACE) : glEnable(GL_CULL_FACE);
    m_AreEdgesSeen ? glEnable(GL_POLYGON_OFFSET_FILL) : glDisable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(static_cast<float>(1 + edgeWidth / 2), 1); // pixels of the slope that edges reach across
    drawVertices();
    glDisable(GL_CULL_FACE);
    glDisable(GL_POLYGON_OFFSET_FILL);
    glFrontFace(static_cast<GLenum>(front));
}

void SceneItem::drawEdges(const RGBA8& colour, double width)
{
    if (!m_EdgeIndexBuffer)
        return;
    const auto darker = [](unsigned char component) { return static_cast<unsigned char>(EDGE_BRIGHTNESS * component); };
    glDisable(GL_LIGHTING);
    glColor4ub(darker(colour[0]), darker(colour[1]), darker(colour[2]), colour[3]);
    glLineWidth(static_cast<float>(width));
    m_EdgePositionBuffer->bind();
    m_EdgeIndexBuffer->bind();
    m_EdgeIndexBuffer->drawElements(GL_LINES, 0, 0);
    m_EdgeIndexBuffer->unbind();
    m_EdgePositionBuffer->unbind();
}

void SceneItem::drawIds(GLContext& context, PickTarget& target, std::size_t number, const Matrix4& modelView)
{
    if (!m_IsUploaded)
        upload(context);
    if (!m_PositionBuffer || (m_Drawn.isIndexed && !m_IndexBuffer))
        return;
    glLoadMatrixd(modelView.numbers.data());
    setSizes(1);
    glFrontFace(isMirrored(modelView) ? GL_CCW : GL_CW); // pictures stand on their heads
    glCullFace(GL_BACK);
    if (m_Drawn.primitive == PrimitiveKind::Triangles && !m_AreBackFacesSeen)
        glEnable(GL_CULL_FACE);
    const PointRadii radii{m_LargestRadius, m_RadiusBuffer.get(), length(modelView.turned({1, 0, 0}))};
    target.draw(number, *m_PositionBuffer, m_IndexBuffer.get(), modeOf(m_Drawn.primitive), radii);
    glDisable(GL_CULL_FACE);
}

double SceneItem::size() const
{
    constexpr double SIZES[] = {POINT_SIZE, LINE_WIDTH, EDGE_WIDTH};
    const double usual = SIZES[static_cast<std::size_t>(m_Drawn.primitive)];
    return m_Size && std::isfinite(*m_Size) && *m_Size > 0 ? std::min(*m_Size, LARGEST_SIZE) : usual;
}

double SceneItem::largestSize() const
{
    constexpr double LARGEST = 255; // that drivers usually draw
    return m_LargestRadius > 0 ? LARGEST : size();
}

void SceneItem::setSizes(double scale) const
{
    glPointSize(static_cast<float>(scale * size()));
    glLineWidth(static_cast<float>(scale * size()));
}

std::size_t SceneItem::numPointsOf(const PointShare& share, const Matrix4& modelView) const
{
    return m_Drawn.order ? rangesInView(modelView, share, size()).numPoints() : 0;
}

PointRanges SceneItem::rangesInView(const Matrix4& modelView, const PointShare& share, double pointSize) const
{
    return rangesOf(*m_Drawn.order, m_Drawn.chunks, share, share.clipSpaceOf(modelView, pointSize));
}

void SceneItem::drawVertices(const PointRanges& ranges)
{
    for (const auto* buffer : {&m_PositionBuffer, &m_NormalBuffer, &m_ColourBuffer, &m_RadiusBuffer})
        if (*buffer)
            (*buffer)->bind();
    if (m_Drawn.isIndexed) {
        m_IndexBuffer->bind();
        m_IndexBuffer->drawElements(modeOf(m_Drawn.primitive), 0, 0);
        m_IndexBuffer->unbind();
    } else if (m_Drawn.order) {
        drawPoints(ranges);
    } else {
        m_PositionBuffer->drawArrays(modeOf(m_Drawn.primitive), 0, 0);
    }
    for (const auto* buffer : {&m_PositionBuffer, &m_NormalBuffer, &m_ColourBuffer, &m_RadiusBuffer})
        if (*buffer)
            (*buffer)->unbind();
}

} // namespace tavo
