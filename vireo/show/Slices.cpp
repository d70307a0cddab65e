#include "vireo/show/Slices.h"

#include <QString>
#include <cmath>
#include <optional>

#include "tavo/base/text/printable.h"
#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/delivery/changeUpdate.h"
#include "vireo/show/delivery/nothingToSee.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/slices/SlicesUpdate.h"
#include "vireo/show/volumes/whyNoVolume.h"

namespace tavo {

namespace {

constexpr std::size_t LONGEST_NAME = 80;
constexpr const char* NO_MEMORY = "there is no memory for so many samples";

template <typename Change>
void change(const ViewSlotPointer& slot, Change&& changeIt) noexcept
{
    changeUpdate<SlicesUpdate>(slot, changeIt);
}

std::string textOf(double number)
{
    return QString::number(number, 'g', 10).toStdString();
}

// What is wrong with a call, which is said.
void refuse(const ViewSlotPointer& slot, const std::string& operation, const std::string& why) noexcept
{
    runGuarded([&] {
        sayOnce("slices(\"" + printable(slot->name, LONGEST_NAME) + "\")" + (operation.empty() ? "" : "." + operation) +
                ": " + why + "; what was shown stays");
    });
}

// Nothing where there is a mistake, which has been said.
std::optional<SliceLayer> layerOf(
    const ViewSlotPointer& slot, const std::string& operation, const Samples& samples, const SentGrid& grid)
{
    std::string why = samples.areTooMany() ? NO_MEMORY : whyNoVolume(grid, samples.size());
    if (why.empty())
        why = whyNothingIsSeen({{&samples, "samples"}});
    if (why.empty())
        return SliceLayer{gridOf(grid), {samples, numChannelsOf(grid, samples.size())}, false};
    refuse(slot, operation, why);
    return {};
}

void sendVolume(const ViewSlotPointer& slot, const Samples& samples, const SentGrid& grid, bool isOriented)
{
    if (!isSent(slot))
        return;
    std::optional<SliceLayer> layer = layerOf(slot, "", samples, grid);
    if (!layer)
        return;
    layer->isOriented = isOriented;
    change(slot, [&](SlicesUpdate& update) { update.volume = std::move(layer); });
}

// Without a grid, they are of the samples of the volume.
void sendLabels(
    const ViewSlotPointer& slot, const NumberTuples& samples, const VolumeGrid* grid, const LabelNames& names)
{
    change(slot, [&](SlicesUpdate& update) {
        addLabels(update.labels, {samples, grid ? std::optional(*grid) : std::nullopt, names.getNames()});
    });
}

void sendLabelsOf(const ViewSlotPointer& slot, const Samples& samples, const SentGrid& grid, const LabelNames& names)
{
    if (!isSent(slot))
        return;
    const std::optional<SliceLayer> layer = layerOf(slot, "labels", samples, grid);
    if (layer && layer->areColours())
        refuse(slot, "labels", "labels are one number for each sample, and not colours");
    else if (layer)
        sendLabels(slot, layer->samples, &layer->grid, names);
}

bool isWindow(const ViewSlotPointer& slot, const std::string& of, double from, double to)
{
    if (std::isfinite(from) && std::isfinite(to) && from != to)
        return true;
    refuse(slot, of + "window(" + textOf(from) + ", " + textOf(to) + ")", "a window goes from one number to another");
    return false;
}

bool isColourMap(const ViewSlotPointer& slot, const std::string& of, std::string_view name)
{
    if (name.empty() || findColourMap(name))
        return true;
    refuse(slot, of + "colourMap(\"" + printable(name, LONGEST_NAME) + "\")", whyNoColourMap(name));
    return false;
}

} // namespace

Slices slices(std::string_view name)
{
    Slices handle;
    if (!isShowOff())
        runGuarded([&] { handle.m_Slot = inbox::findSlot(ViewKind::Slices, std::string(name)); });
    return handle;
}

Slices slices(std::string_view name, const Samples& samples, const GridSize& size, const Spacing& spacing,
    const Vector3d& origin, const Statement&)
{
    Slices handle = slices(name);
    sendVolume(handle.m_Slot, samples, {size, spacing, origin, {}}, false);
    return handle;
}

Slices slices(std::string_view name, const Samples& samples, const GridSize& size, const Spacing& spacing,
    const Vector3d& origin, const Orientation& orientation, const Statement&)
{
    Slices handle = slices(name);
    sendVolume(handle.m_Slot, samples, {size, spacing, origin, orientation}, true);
    return handle;
}

SliceOverlay Slices::overlay(const Samples& samples, const GridSize& size, const Spacing& spacing,
    const Vector3d& origin, const Orientation& orientation, const Statement&) const
{
    if (isSent(m_Slot))
        if (std::optional<SliceLayer> layer = layerOf(m_Slot, "overlay", samples, {size, spacing, origin, orientation}))
            change(m_Slot, [&](SlicesUpdate& update) { update.overlay = std::move(layer); });
    return {*this, false};
}

SliceOverlay Slices::labels(const Samples& samples, const LabelNames& names, const Statement&) const
{
    if (!isSent(m_Slot))
        return {*this, true};
    const std::string why = samples.areTooMany() ? NO_MEMORY : whyNothingIsSeen({{&samples, "labels"}});
    if (why.empty())
        sendLabels(m_Slot, {samples, 1}, nullptr, names);
    else
        refuse(m_Slot, "labels", why);
    return {*this, true};
}

SliceOverlay Slices::labels(const Samples& samples, const GridSize& size, const Spacing& spacing,
    const Vector3d& origin, const LabelNames& names, const Statement&) const
{
    sendLabelsOf(m_Slot, samples, {size, spacing, origin, {}}, names);
    return {*this, true};
}

SliceOverlay Slices::labels(const Samples& samples, const GridSize& size, const Spacing& spacing,
    const Vector3d& origin, const Orientation& orientation, const LabelNames& names, const Statement&) const
{
    sendLabelsOf(m_Slot, samples, {size, spacing, origin, orientation}, names);
    return {*this, true};
}

// A layer without samples takes the one before away.
Slices Slices::removeOverlay(const Statement&) const
{
    if (isSent(m_Slot))
        change(m_Slot, [](SlicesUpdate& update) { update.overlay.emplace(); });
    return *this;
}

Slices Slices::removeLabels(const Statement&) const
{
    if (isSent(m_Slot))
        change(m_Slot, [](SlicesUpdate& update) { addLabels(update.labels, {}); });
    return *this;
}

Slices Slices::window(double from, double to, const Statement&) const
{
    if (isSent(m_Slot) && isWindow(m_Slot, "", from, to))
        change(m_Slot, [=](SlicesUpdate& update) { update.settings.window = std::pair(from, to); });
    return *this;
}

Slices Slices::colourMap(std::string_view name, const Statement&) const
{
    if (isSent(m_Slot) && isColourMap(m_Slot, "", name))
        change(m_Slot, [&](SlicesUpdate& update) { update.settings.colourMap = std::string(name); });
    return *this;
}

Slices Slices::crosshair(double x, double y, double z, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (std::isfinite(x) && std::isfinite(y) && std::isfinite(z))
        change(m_Slot, [=](SlicesUpdate& update) { update.crosshair = Vector3d(x, y, z); });
    else
        refuse(m_Slot, "crosshair(" + textOf(x) + ", " + textOf(y) + ", " + textOf(z) + ")", "that is no place");
    return *this;
}

SliceOverlay SliceOverlay::window(double from, double to, const Statement&) const
{
    if (isSent(m_Slot) && hasColours("window") && isWindow(m_Slot, "overlay.", from, to))
        change(m_Slot, [=](SlicesUpdate& update) { update.overlaySettings.window = std::pair(from, to); });
    return *this;
}

SliceOverlay SliceOverlay::colourMap(std::string_view name, const Statement&) const
{
    if (isSent(m_Slot) && hasColours("colourMap") && isColourMap(m_Slot, "overlay.", name))
        change(m_Slot, [&](SlicesUpdate& update) { update.overlaySettings.colourMap = std::string(name); });
    return *this;
}

SliceOverlay SliceOverlay::opacity(double opacity, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (opacity >= 0 && opacity <= 1)
        change(m_Slot, [&](SlicesUpdate& update) {
            (m_AreLabels ? update.labelSettings : update.overlaySettings).opacity = opacity;
        });
    else
        refuse(m_Slot, std::string(m_AreLabels ? "labels" : "overlay") + ".opacity(" + textOf(opacity) + ")",
            "an opacity is from 0 to 1");
    return *this;
}

SliceOverlay SliceOverlay::colours(const std::map<std::int64_t, RGBA8>& colours, const Statement&) const
{
    if (isSent(m_Slot) && areCategories("colours"))
        change(m_Slot, [&](SlicesUpdate& update) { update.labelColours = colours; });
    return *this;
}

SliceOverlay SliceOverlay::outlines(bool areShown, const Statement&) const
{
    if (isSent(m_Slot) && areCategories("outlines"))
        change(m_Slot, [=](SlicesUpdate& update) { update.areLabelsOutlined = areShown; });
    return *this;
}

bool SliceOverlay::areCategories(const char* operation) const
{
    if (!m_AreLabels)
        refuse(m_Slot, std::string("overlay.") + operation, "only labels have that");
    return m_AreLabels;
}

bool SliceOverlay::hasColours(const char* operation) const
{
    if (m_AreLabels)
        refuse(m_Slot, std::string("labels.") + operation, "labels have the colours of categories");
    return !m_AreLabels;
}

} // namespace tavo
