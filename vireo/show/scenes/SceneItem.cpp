#include "vireo/show/scenes/SceneItem.h"

#include <QColor>
#include <algorithm>
#include <atomic>
#include <cmath>

#include "tavo/base/text/printable.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/show/colours/colourOfLabel.h"
#include "vireo/show/plots/colours.h"
#include "vireo/show/scenes/byteOf.h"
#include "vireo/show/scenes/valueCounts.h"
#include "vireo/show/volumes/volumeItem.h"

namespace tavo {

namespace {

constexpr double POINT_SIZE = 2;
constexpr double LINE_WIDTH = 1.5;
constexpr double EDGE_WIDTH = 1;
constexpr double LARGEST_SIZE = 10000;   // more than drivers can
constexpr double EDGE_BRIGHTNESS = 0.45; // of that of the faces

std::size_t newRevision()
{
    static std::atomic<std::size_t> revision = 0;
    return ++revision;
}

template <typename T>
void replace(std::optional<T>& value, std::optional<T>& newer)
{
    if (newer)
        value.swap(newer);
}

// Each is red, green, blue and opacity.
bool areOpaque(const std::vector<unsigned char>& colours)
{
    for (std::size_t i = 3; i < colours.size(); i += 4)
        if (colours[i] < 255)
            return false;
    return true;
}

// Whether what goes around clockwise goes around counter-clockwise afterwards.
bool isMirrored(const Matrix4& matrix)
{
    const auto side = [&matrix](const Vector3d& axis) { return matrix.turned(axis); };
    return dot(cross(side({1, 0, 0}), side({0, 1, 0})), side({0, 0, 1})) < 0;
}

} // namespace

void SceneItem::dropShape()
{
    m_Shape.reset();
    m_Drawn = {};
    m_Volume.drop();
}

void SceneItem::apply(ItemUpdate& update)
{
    m_Revision = m_DataRevision = newRevision();
    bool isShapeNew = update.shape.has_value();
    if (isShapeNew)
        m_IsClosed.reset();
    if (update.isosurface || isShapeNew)
        m_Isosurface.swap(update.isosurface);
    replace(m_Shape, update.shape);
    if (isShapeNew && isVolume() && !update.colours)
        m_Colours.dropSent(); // its samples were colours
    if (isShapeNew && isVolume() && update.fields.empty())
        m_Colours.dropField(VOLUME_SAMPLES); // its samples were numbers
    if (m_Colours.apply(update))
        m_AreColoursUploaded = false;
    m_Normals.send(update.normals);
    replace(m_Sent.colour, update.colour);
    isShapeNew = applySize(update) || isShapeNew;
    applyStyle(update);
    if (m_Shape && m_Colours.settle(*m_Shape))
        m_AreColoursUploaded = false;
    if (m_Shape && m_Normals.settle([this](const NumberTuples& normals) { return fits(normals); }))
        isShapeNew = true;
    if (m_Shape && m_Radii.settle([this](const NumberTuples& radii) { return radii.size() == 1 || fits(radii); }))
        isShapeNew = true;
    isShapeNew |= settleStyle();
    settleDrawn(isShapeNew);
}

void SceneItem::choose(const ItemChoice& choice)
{
    if (choice == m_Chosen)
        return;
    m_Revision = newRevision();
    const bool areRadiiNew = m_Radii.used() && choice.size.has_value() != m_Chosen.size.has_value();
    m_Chosen = choice;
    settleDrawn(settleStyle() || areRadiiNew);
}

void SceneItem::settleDrawn(bool isNew)
{
    const bool haveParts = m_Shape && m_Colours.areOfParts();
    if (!m_Shape || (!isNew && haveParts == !m_Drawn.parts.empty()))
        return;
    m_Drawn = drawnItem(*m_Shape, m_Normals.used(), m_IsSmooth, haveParts);
    addRadii();
    m_IsUploaded = m_AreColoursUploaded = m_AreEdgesUploaded = false;
}

// Of pixels and of units of the scene the later ones hold. Whether radii go.
bool SceneItem::applySize(ItemUpdate& update)
{
    bool doRadiiGo = false;
    if (update.size)
        doRadiiGo = std::exchange(m_Radii, {}).used();
    m_Radii.send(update.radii);
    return doRadiiGo;
}

// What is drawn reaches beyond the middles of its points.
void SceneItem::addRadii()
{
    const bool areSeen = m_Radii.used() && !m_Chosen.size && kind() == ItemKind::Cloud;
    m_LargestRadius = areSeen ? std::min(finiteRangeOf(m_Radii.used()->numbers).second, LARGEST_COORDINATE) : 0;
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

void SceneItem::applyStyle(ItemUpdate& update)
{
    replace(m_Sent.size, update.size);
    replace(m_Sent.opacity, update.opacity);
    replace(m_Sent.isVisible, update.isVisible);
    replace(m_Sent.isSmooth, update.isSmooth);
    replace(m_Sent.areEdgesSeen, update.areEdgesSeen);
    replace(m_Sent.areBackFacesSeen, update.areBackFacesSeen);
    replace(m_Sent.isMaximum, update.isMaximum);
    replace(m_Sent.isLit, update.isLit);
}

// What is chosen wins over what was sent. Returns whether the shape has to be drawn anew.
bool SceneItem::settleStyle()
{
    const bool wasSmooth = m_IsSmooth;
    const double opacityBefore = m_Opacity;
    m_Colour = m_Chosen.colour ? m_Chosen.colour : m_Sent.colour;
    m_Size = m_Chosen.size ? m_Chosen.size : m_Sent.size;
    const double opacity = m_Chosen.opacity.value_or(m_Sent.opacity.value_or(1));
    m_Opacity = std::isfinite(opacity) ? std::clamp(opacity, 0.0, 1.0) : 1;
    m_IsVisible = m_Chosen.isVisible.value_or(m_Sent.isVisible.value_or(true));
    m_IsSmooth = m_Chosen.isSmooth.value_or(m_Sent.isSmooth.value_or(false));
    m_AreEdgesSeen = m_Chosen.areEdgesSeen.value_or(m_Sent.areEdgesSeen.value_or(false));
    m_AreBackFacesSeen = m_Chosen.areBackFacesSeen.value_or(m_Sent.areBackFacesSeen.value_or(true));
    m_IsMaximum = m_Chosen.isMaximum.value_or(m_Sent.isMaximum.value_or(false));
    m_IsLit = m_Chosen.isLit.value_or(m_Sent.isLit.value_or(false));
    if (m_Colours.settleStyle(m_Chosen) || m_Opacity != opacityBefore)
        m_AreColoursUploaded = false;
    return m_IsSmooth != wasSmooth;
}

std::optional<SceneItem::ShownScalars> SceneItem::shownScalars() const
{
    const ItemColours::Field* const field = m_Shape ? m_Colours.shownField() : nullptr;
    if (!field || field->areLabels || isVolumeOfNothing())
        return {};
    return ShownScalars{field->name, m_Colours.colourMap(), m_Colours.rangeOf(*field)};
}

std::optional<SceneItem::ShownLabels> SceneItem::shownLabels() const
{
    const ItemColours::Field* const field = m_Shape ? m_Colours.shownField() : nullptr;
    if (!field || !field->areLabels)
        return {};
    ShownLabels labels{field->name, {}};
    const std::map<std::int64_t, std::string>& names = m_Colours.labelNames();
    for (const std::int64_t label : m_Colours.categoriesOf(*field)) {
        if (isVolume() && label == 0)
            continue; // which is none, and not seen
        const auto name = names.find(label);
        labels.categories.emplace_back(
            colourOfLabel(label), name != names.end() ? name->second : std::to_string(label));
    }
    return labels;
}

std::string SceneItem::nameOfLabel(double value) const
{
    const std::optional<std::int64_t> label = labelOf(value);
    const auto found = label ? m_Colours.labelNames().find(*label) : m_Colours.labelNames().end();
    return found != m_Colours.labelNames().end() ? found->second : std::string();
}

bool SceneItem::isOpaque() const
{
    const bool isOneColourOpaque = !m_Colour || (*m_Colour)[3] == 255;
    return m_Opacity >= 1 && !isVolume() && m_AreColoursOpaque &&
           (isOneColourOpaque || !m_Colours.nameOfShown().empty());
}

bool SceneItem::isVolumeOfNothing() const
{
    const ItemColours::Field* const field = isVolume() ? m_Colours.shownField() : nullptr;
    return field && !ItemColours::haveNumbers(*field);
}

bool SceneItem::isWhiteVolume() const
{
    constexpr unsigned char DARKEST = 240; // of what nobody sees on white
    const std::optional<ShownScalars> shown = isVolume() ? shownScalars() : std::nullopt;
    const OpacityCurve& opacities = m_Colours.opacities();
    if (!shown || opacities.empty())
        return false;
    const auto most = std::max_element(opacities.begin(), opacities.end(),
        [](const OpacityPoint& one, const OpacityPoint& other) { return one.opacity < other.opacity; });
    const RGBA8 colour = findColourMap(shown->colourMap)->sample(most->place);
    return std::min({colour[0], colour[1], colour[2]}) >= DARKEST;
}

std::optional<std::size_t> SceneItem::sampleAlong(const VolumeRay& ray) const
{
    return isVolume() ? ItemVolume::sampleAlong(ray, m_Colours, m_Opacity, m_IsMaximum) : std::nullopt;
}

bool SceneItem::isUnlitCloud() const
{
    return m_Shape && kind() == ItemKind::Cloud && !m_Normals.used();
}

bool SceneItem::fits(const NumberTuples& tuples) const
{
    return tuples.size() == m_Shape->numPoints();
}

ItemState SceneItem::state() const
{
    ItemState state{kind(), m_Colours.sent() != nullptr, m_Normals.used() != nullptr, {}, areLabelsShown(),
        m_Colours.nameOfShown(), {}, m_Colours.colourMap(), {}, size(), radii(), m_Opacity, m_IsSmooth, m_AreEdgesSeen,
        m_AreBackFacesSeen, m_Colours.opacities(), m_IsMaximum, m_IsLit};
    for (const SceneField& field : fields())
        state.fields.push_back({field.name, field.areLabels});
    const ItemColours::Field* const field = m_Colours.shownField();
    if (!field)
        return state;
    if (isVolume() || !field->areLabels)
        state.range = m_Colours.rangeOf(*field);
    if (!field->areLabels)
        state.numbers = field->values.used()->numbers;
    return state;
}

std::optional<std::pair<double, double>> SceneItem::radii() const
{
    if (!(m_LargestRadius > 0))
        return {};
    return finiteRangeOf(m_Radii.used()->numbers);
}

bool SceneItem::areLabelsShown() const
{
    const ItemColours::Field* const field = m_Colours.shownField();
    return field && field->areLabels;
}

std::vector<RGBA8> SceneItem::swatch(bool isGroundDark) const
{
    std::vector<RGBA8> colours = m_Colours.swatch();
    if (m_Colours.nameOfShown().empty() && m_Shape && kind() == ItemKind::Frame)
        colours = {AXIS_COLOURS.begin(), AXIS_COLOURS.end()};
    else if (m_Colours.nameOfShown().empty() && (m_Colour || !m_Shape || kind() != ItemKind::Text))
        colours = {oneColour(isGroundDark)};
    for (RGBA8& colour : colours)
        colour[3] = 255;
    return colours;
}

std::vector<std::string> SceneItem::waiting() const
{
    if (!m_Shape)
        return {};
    std::string points = " for " + std::to_string(m_Shape->numPoints()) + (isVolume() ? " samples" : " points");
    if (m_Shape->kind == ItemKind::Mesh)
        points += " and " + std::to_string(m_Shape->numParts()) + " faces";
    std::vector<std::string> sentences;
    const auto count = [&](const NumberTuples* waiting, const std::string& what) {
        if (waiting)
            sentences.push_back(std::to_string(waiting->width != 0 ? waiting->size() : waiting->numbers.size()) + ' ' +
                                what + points + "; they are not shown");
    };
    const NumberTuples* const colours = m_Colours.waiting();
    count(colours, colours && colours->width == 0 ? "numbers of colours" : "colours");
    count(m_Normals.waiting(), "normals");
    count(m_Radii.waiting(), "radii");
    for (const ItemColours::Field& field : m_Colours.fields())
        count(field.values.waiting(), "numbers of \"" + printable(field.name, 80) + '"');
    if (const std::string* const missing = m_Colours.missing())
        sentences.push_back("there are no numbers \"" + printable(*missing, 80) + "\" to be shown");
    return sentences;
}

RGBA8 SceneItem::colour(const QColor& unlessGiven) const
{
    RGBA8 colour(unlessGiven.red(), unlessGiven.green(), unlessGiven.blue(), unlessGiven.alpha());
    if (m_Colour)
        colour = *m_Colour;
    colour[3] = byteOf(m_Opacity * colour[3] / 255);
    return colour;
}

RGBA8 SceneItem::oneColour(bool isGroundDark) const
{
    return colour(colourOfCurve(m_PaletteNumber, isGroundDark));
}

std::optional<ItemData> SceneItem::data() const
{
    if (!m_Shape || isVolume())
        return {};
    ItemData data{*m_Shape, {}};
    if (m_Normals.used())
        data.numbers.push_back({{"normal x", "normal y", "normal z"}, *m_Normals.used(), false});
    if (const NumberTuples* const colours = m_Colours.sent()) {
        const auto [areOfParts, width] = m_Colours.fitOf(*colours, "colours").value();
        std::vector<std::string> names{"red", "green", "blue", "opacity"};
        names.resize(width);
        data.numbers.push_back({std::move(names), {colours->numbers, width}, areOfParts});
    }
    if (m_Radii.used() && fits(*m_Radii.used()))
        data.numbers.push_back({{"radius"}, *m_Radii.used(), false});
    for (const SceneField& field : fields())
        data.numbers.push_back({{field.name}, field.values, field.areOfParts});
    return data;
}

const std::string* SceneItem::text() const
{
    return m_Shape && kind() == ItemKind::Text && !m_Drawn.box.isEmpty() ? &m_Shape->text : nullptr;
}

// Without those that wait.
std::vector<SceneField> SceneItem::fields() const
{
    std::vector<SceneField> fields;
    for (const ItemColours::Field& field : m_Colours.fields())
        if (const NumberTuples* const values = field.values.used())
            fields.push_back({field.name, *values, field.areLabels, m_Colours.fitOf(*values, field.name)->areOfParts});
    return fields;
}

void SceneItem::upload(GLContext& context)
{
    m_IsUploaded = true; // whether it works or not: it is tried once
    m_NumPhases = 0;
    m_Buffers.writeShape(context, m_Drawn);
    uploadRadii(context);
    if (m_Drawn.phases && !m_RoundPoints)
        m_RoundPoints = RoundPoints::make(context);
    m_Drawn.positions = {};
    m_Drawn.normals = {};
    m_Drawn.indices = {};
}

void SceneItem::uploadRadii(GLContext& context)
{
    m_PointScale.reset();
    if (m_LargestRadius > 0)
        m_PointScale =
            PointScale::make(context, m_Buffers.haveNormals() ? PointScale::Colour::Lit : PointScale::Colour::Own);
    std::vector<float> radii = radiiOf(m_Drawn, m_Buffers.numVertices());
    m_Buffers.writeRadii(context, radii);
}

// None if all points have one.
std::vector<float> SceneItem::radiiOf(const DrawnItem& drawn, std::size_t numVertices) const
{
    std::vector<float> radii;
    if (!(m_LargestRadius > 0) || m_Radii.used()->size() == 1)
        return radii;
    const NumberTuples& sent = *m_Radii.used();
    drawn.forEachSource(numVertices, [&](std::size_t source) {
        const double radius = sent.numbers[source];
        radii.push_back(radius > 0 ? static_cast<float>(std::min(radius, m_LargestRadius)) : 0);
    });
    return radii;
}

// In buffers of their own: from among all others, drivers would fetch each of these few from far away. They stay the
// same during a gesture, and their memory is free when all points are drawn.
bool SceneItem::preparePhases(GLContext& context, std::size_t numPhases)
{
    if (numPhases >= PointPhases::ALL) {
        m_NumPhases = 0;
        m_FewBuffers = {};
        return false;
    }
    if (m_NumPhases == numPhases)
        return false;
    m_NumPhases = numPhases;
    DrawnItem few = drawnPhases(m_Drawn, numPhases, *m_Shape, m_Normals.used());
    const std::size_t numVertices = few.numVertices();
    m_FewBuffers.writeShape(context, few);
    std::vector<unsigned char> colours = m_Colours.ofVertices(few, numVertices, m_Opacity);
    m_FewBuffers.writeColours(context, colours);
    std::vector<float> radii = radiiOf(few, numVertices);
    m_FewBuffers.writeRadii(context, radii);
    return true;
}

void SceneItem::uploadColours(GLContext& context)
{
    m_AreColoursUploaded = true;
    m_NumPhases = 0;
    std::vector<unsigned char> colours = m_Colours.ofVertices(m_Drawn, m_Buffers.numVertices(), m_Opacity);
    m_AreColoursOpaque = areOpaque(colours);
    m_Buffers.writeColours(context, colours);
}

void SceneItem::prepareVolume(GLContext& context)
{
    if (!m_IsUploaded)
        m_Volume.drop();
    m_Volume.prepare(context, *m_Shape->grid, m_Colours, colour(colourOfCurve(m_PaletteNumber, false)), m_Opacity);
}

bool SceneItem::prepare(GLContext& context, std::size_t numPhases)
{
    const bool hasChanged = !m_IsUploaded || !m_AreColoursUploaded;
    if (isVolume() && hasChanged)
        prepareVolume(context);
    if (!m_IsUploaded)
        upload(context);
    if (!m_AreColoursUploaded)
        uploadColours(context);
    if (m_Shape && kind() == ItemKind::Mesh && m_AreEdgesSeen && !m_AreEdgesUploaded) {
        m_AreEdgesUploaded = true;
        m_Buffers.writeEdges(context, drawnEdges(*m_Shape));
    }
    const bool areFewNew = m_Drawn.phases && m_Buffers.canDraw() && preparePhases(context, numPhases);
    return hasChanged || areFewNew;
}

std::size_t SceneItem::draw(const Matrix4& modelView, bool isGroundDark, double scale, const PointShare& share)
{
    if (isVolume())
        m_Volume.draw(modelView, {m_IsMaximum, m_IsLit, share.sliceStep, share.cutOut, share.mayBeCoarse});
    if (!m_Buffers.canDraw())
        return 0;
    glLoadMatrixd(modelView.numbers.data());
    const RGBA8 one = oneColour(isGroundDark);
    glColor4ubv(one.data());
    isOpaque() ? glDisable(GL_BLEND) : glEnable(GL_BLEND);
    setSizes(scale * share.enlargement);
    glLineWidth(static_cast<float>(scale * size()));
    m_Buffers.haveNormals() ? glEnable(GL_LIGHTING) : glDisable(GL_LIGHTING);
    const double edgeWidth = scale * size();
    const double pointSize = scale * share.enlargement * size();
    const PointRanges ranges = m_Drawn.phases ? rangesInView(modelView, share, pointSize) : PointRanges();
    if (m_Drawn.primitive == PrimitiveKind::Triangles)
        drawFaces(modelView, edgeWidth);
    else
        m_Drawn.phases ? drawPoints(ranges, modelView, scale, share) : m_Buffers.draw();
    if (kind() == ItemKind::Mesh && m_AreEdgesSeen)
        drawEdges(one, edgeWidth);
    return ranges.numPoints();
}

// Small squares are drawn faster than discs, and look the same.
bool SceneItem::areRound(double scale) const
{
    return m_RoundPoints && (m_LargestRadius > 0 || scale * size() >= RoundPoints::SMALLEST);
}

void SceneItem::drawPoints(const PointRanges& ranges, const Matrix4& modelView, double scale, const PointShare& share)
{
    const bool areScaled = m_PointScale != nullptr;
    const bool areDiscs = areRound(scale);
    if (areScaled) {
        glTexCoord1d(m_LargestRadius);
        m_PointScale->begin(length(modelView.turned({1, 0, 0})));
    }
    if (areDiscs)
        m_RoundPoints->begin();
    (share.hasAllPhases() ? m_Buffers : m_FewBuffers).draw(ranges);
    if (areDiscs)
        m_RoundPoints->end();
    if (areScaled)
        m_PointScale->end();
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
    const float units = isOpaque() ? 1 : 8;                        // so that layers of depth tell them apart
    glPolygonOffset(static_cast<float>(1 + edgeWidth / 2), units); // pixels of the slope that edges reach across
    // Normals that were sent may point to the other side than the faces do: both are lit by how they are inclined.
    const bool isEitherWay = m_AreBackFacesSeen && m_Normals.used();
    if (isEitherWay)
        glEnable(GL_LIGHT1);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, isEitherWay ? GL_FALSE : GL_TRUE);
    m_Buffers.draw();
    glDisable(GL_LIGHT1);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    glDisable(GL_CULL_FACE);
    glDisable(GL_POLYGON_OFFSET_FILL);
    glFrontFace(static_cast<GLenum>(front));
}

void SceneItem::drawEdges(const RGBA8& colour, double width)
{
    if (!m_Buffers.haveEdges())
        return;
    const auto darker = [](unsigned char component) { return static_cast<unsigned char>(EDGE_BRIGHTNESS * component); };
    glDisable(GL_LIGHTING);
    glColor4ub(darker(colour[0]), darker(colour[1]), darker(colour[2]), colour[3]);
    glLineWidth(static_cast<float>(width));
    m_Buffers.drawEdges();
}

bool SceneItem::isClosedSurface() const
{
    if (!m_IsClosed)
        m_IsClosed = m_Shape && tavo::isClosedSurface(*m_Shape);
    return *m_IsClosed;
}

void SceneItem::drawSheets()
{
    if (m_Buffers.canDraw())
        m_Buffers.drawPositions();
}

void SceneItem::drawIds(
    GLContext& context, PickTarget& target, std::size_t number, const Matrix4& modelView, const PointShare& share)
{
    if (!m_IsUploaded)
        upload(context);
    if (!m_Buffers.canDraw())
        return;
    glLoadMatrixd(modelView.numbers.data());
    setSizes(1);
    glFrontFace(isMirrored(modelView) ? GL_CCW : GL_CW); // pictures stand on their heads
    glCullFace(GL_BACK);
    if (m_Drawn.primitive == PrimitiveKind::Triangles && !m_AreBackFacesSeen)
        glEnable(GL_CULL_FACE);
    const PointRanges ranges = m_Drawn.phases ? rangesInView(modelView, share, size()) : PointRanges();
    m_Buffers.drawIds(target, number, {m_LargestRadius, nullptr, length(modelView.turned({1, 0, 0}))},
        m_Drawn.phases ? &ranges : nullptr, areRound(1));
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
    return m_Drawn.phases ? rangesInView(modelView, share, size()).numPoints() : 0;
}

PointRanges SceneItem::rangesInView(const Matrix4& modelView, const PointShare& share, double pointSize) const
{
    return rangesOf(*m_Drawn.phases, m_Drawn.chunks, share, share.clipSpaceOf(modelView, pointSize));
}

} // namespace tavo
