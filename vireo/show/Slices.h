#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vireo/show/Export.h"
#include "vireo/show/Grid.h"
#include "vireo/show/delivery/Statement.h"

namespace tavo {

class SliceOverlay;
struct ViewSlot;

/// What labels of a volume stand for: name i is that of label i, or each label has its name.
///
///     const tavo::LabelNames rising{"nothing", "bone", "brain"};
///     const tavo::LabelNames sparse{{17, "hippocampus"}, {10, "thalamus"}};
class LabelNames
{
public:
    LabelNames() = default;
    LabelNames(std::initializer_list<std::string> names)
        : LabelNames(std::vector<std::string>(names))
    {}
    LabelNames(std::initializer_list<std::pair<const std::int64_t, std::string>> names)
        : m_Names(names)
    {}
    LabelNames(const std::vector<std::string>& names)
    {
        for (const std::string& name : names)
            m_Names.emplace(static_cast<std::int64_t>(m_Names.size()), name);
    }
    LabelNames(std::map<std::int64_t, std::string> names)
        : m_Names(std::move(names))
    {}
    template <std::integral T>
    LabelNames(const std::map<T, std::string>& names)
        : m_Names(names.begin(), names.end())
    {}

    const std::map<std::int64_t, std::string>& getNames() const { return m_Names; }

private:
    std::map<std::int64_t, std::string> m_Names;
};

/// A handle of a volume that is seen in slices: three planes through a crosshair, in a view of the window. It is made
/// by `slices(name)`, is small, and can be kept, copied and be a member; it may outlive the view and the window. All
/// handles of one name are the same view, in every thread.
///
///     #include <vireo/show/Slices.h>
///
///     const std::vector<std::int16_t> density(64 * 64 * 32);
///     tavo::slices("head", density, {64, 64, 32}, {0.9, 0.9, 1.2}).window(-100, 300).crosshair(28, 30, 12);
///
/// Every operation may be called by any thread at any time, waits for nobody, throws nothing, and returns a handle.
/// What one statement sends is shown together; its last argument (see Statement) is left out. Sending again under a
/// name replaces the samples; what was said of the slices stays, and so do the crosshair and where the user looks. A
/// mistake, such as fewer samples than the size calls for, or none that is finite, is a line in the log; what was shown
/// stays. `tavo::remove(name)` takes slices away.
class VIREO_SHOW_EXPORT Slices
{
public:
    /// A handle of no view: nothing that is sent to it is shown.
    Slices() = default;

    /// A second volume, in colours of its own, on the first. It may have another size and spacing, and lie elsewhere:
    /// it is seen where it is. What is not above the beginning of its window, or no number, lets the first one be seen.
    ///
    ///     const std::vector<float> warmth(32 * 32 * 16);
    ///     tavo::slices("head").overlay(warmth, {32, 32, 16}, {1.8, 1.8, 2.4}, {0, 0, 0}).window(0.5, 2).opacity(0.7);
    SliceOverlay overlay(const Samples& samples, const GridSize& size, const Spacing& spacing = 1,
        const Vector3d& origin = {}, const Orientation& orientation = {},
        const Statement& statement = Statement()) const;

    /// Which category each sample of the volume is of, in colours of categories, with the names that the pointer shows.
    /// Samples of 0 are of none.
    SliceOverlay labels(
        const Samples& samples, const LabelNames& names = {}, const Statement& statement = Statement()) const;

    /// The same of samples that lie elsewhere than those of the volume.
    SliceOverlay labels(const Samples& samples, const GridSize& size, const Spacing& spacing = 1,
        const Vector3d& origin = {}, const LabelNames& names = {}, const Statement& statement = Statement()) const;

    /// The same where their axes point elsewhere, too.
    SliceOverlay labels(const Samples& samples, const GridSize& size, const Spacing& spacing, const Vector3d& origin,
        const Orientation& orientation, const LabelNames& names, const Statement& statement = Statement()) const;

    /// Takes the overlay, or the labels, away. How they look is kept for those that may come.
    Slices removeOverlay(const Statement& statement = Statement()) const;
    Slices removeLabels(const Statement& statement = Statement()) const;

    /// The numbers that are darkest and brightest, or have the first and the last colour of the map. By default nearly
    /// all numbers are between them: all but the lowest and the highest 200th.
    Slices window(double from, double to, const Statement& statement = Statement()) const;

    /// The map from numbers to colours, such as "bone"; docs/images.md names them all. Without it, or with an empty
    /// name, what is darkest is black, what is brightest is white.
    Slices colourMap(std::string_view name, const Statement& statement = Statement()) const;

    /// Moves the crosshair to a place, in the coordinates of origin, spacing and orientation: to the nearest sample.
    Slices crosshair(double x, double y, double z, const Statement& statement = Statement()) const;

protected:
    friend VIREO_SHOW_EXPORT Slices slices(std::string_view name);
    friend VIREO_SHOW_EXPORT Slices slices(std::string_view name, const Samples& samples, const GridSize& size,
        const Spacing& spacing, const Vector3d& origin, const Statement& statement);
    friend VIREO_SHOW_EXPORT Slices slices(std::string_view name, const Samples& samples, const GridSize& size,
        const Spacing& spacing, const Vector3d& origin, const Orientation& orientation, const Statement& statement);

    std::shared_ptr<ViewSlot> m_Slot;
};

/// A handle of what lies on the volume of slices: of their overlay, or of their labels.
///
///     const std::vector<unsigned char> tissues(64 * 64 * 32);
///     const tavo::SliceOverlay shown = tavo::slices("head").labels(tissues, {"nothing", "bone", "brain"});
///     shown.opacity(0.4);
class VIREO_SHOW_EXPORT SliceOverlay : public Slices
{
public:
    /// As those of Slices, for the overlay; labels have neither.
    SliceOverlay window(double from, double to, const Statement& statement = Statement()) const;
    SliceOverlay colourMap(std::string_view name, const Statement& statement = Statement()) const;

    /// How much it hides of what is below, from 0 to 1.
    SliceOverlay opacity(double opacity, const Statement& statement = Statement()) const;

    /// Which colours labels have; the others have those of categories. An overlay has neither this nor outlines.
    SliceOverlay colours(const std::map<std::int64_t, RGBA8>& colours, const Statement& statement = Statement()) const;

    /// Whether only the edges of labels are seen, and not what is within.
    SliceOverlay outlines(bool areShown = true, const Statement& statement = Statement()) const;

private:
    friend class Slices;
    SliceOverlay(const Slices& slices, bool areLabels)
        : Slices(slices)
        , m_AreLabels(areLabels)
    {}

    // False, and said, of labels.
    bool hasColours(const char* operation) const;

    // The same of an overlay.
    bool areCategories(const char* operation) const;

    bool m_AreLabels;
};

/// The slices of that name. They are in the window as soon as samples are sent to them.
VIREO_SHOW_EXPORT Slices slices(std::string_view name);

/// Sends a volume: samples on a grid, as Scene::volume() takes them. Its planes are those of its axes.
VIREO_SHOW_EXPORT Slices slices(std::string_view name, const Samples& samples, const GridSize& size,
    const Spacing& spacing = 1, const Vector3d& origin = {}, const Statement& statement = Statement());

/// The same of a patient, or whatever else has a left and a right: the orientation says where the axes of the samples
/// point, where x leads to the patient's right, y to the front and z upwards. The planes are the axial, the coronal and
/// the sagittal one, as nearly as the axes have them, with letters for left, right, front (A) and back (P), top (S) and
/// bottom (I). The patient's right is on the left, as radiologists see it; the user can change that.
VIREO_SHOW_EXPORT Slices slices(std::string_view name, const Samples& samples, const GridSize& size,
    const Spacing& spacing, const Vector3d& origin, const Orientation& orientation,
    const Statement& statement = Statement());

} // namespace tavo
