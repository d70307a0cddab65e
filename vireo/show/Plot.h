#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "tavo/base/math/vectors.h"
#include "vireo/show/Export.h"
#include "vireo/show/Numbers.h"
#include "vireo/show/delivery/Statement.h"

namespace tavo {

struct ViewSlot;

/// A handle of a plot: curves over two axes with numbers, in a view of the window. It is made by `plot(name)`, is
/// small, and can be kept, copied and be a member; it may outlive the plot and the window. All handles of one name are
/// the same plot, in every thread.
///
///     const tavo::Plot plot = tavo::plot("pressure");
///     plot.curve("inlet", times, pressures).curve("limit", {0.0, 60.0}, {101.3, 101.3}).yAxis("pressure", "Pa");
///
/// Every operation may be called by any thread at any time, waits for nobody, throws nothing, and returns the handle.
/// What one statement sends is shown together; its last argument (see Statement) is left out. Sending again under a
/// name replaces what is shown under it, and leaves alone the range the user has zoomed to. A mistake, such as x and y
/// of different length, is a line in the log; what was shown stays. It is a mistake, too, to send no samples, or none
/// that is finite: `remove` takes a curve away. To append none is not.
///
/// Numbers are what Numbers takes, of any arithmetic type. NaN is a gap in a curve. x may be time points: those of the
/// system's clock show dates and times, as `timeX` does. Names and labels are UTF-8.
///
/// A curve is kept as one copy of its numbers, and as none if a vector is moved in. Drawing one whose x ascends costs
/// by the pixels of the plot, not by its samples; any other is read in full each time.
class VIREO_SHOW_EXPORT Plot
{
public:
    /// A handle of no plot: nothing that is sent to it is shown.
    Plot() = default;

    /// A curve through the samples `y`, which stand at x = 0, 1, 2 ...
    Plot curve(std::string_view name, const Numbers& y, const Statement& statement = Statement()) const;

    /// A curve through the points of `x` and `y`, in their order.
    Plot curve(
        std::string_view name, const Numbers& x, const Numbers& y, const Statement& statement = Statement()) const;

    template <Number T>
    Plot curve(std::string_view name, const T* y, std::size_t count, const Statement& statement = Statement()) const
    {
        return curve(name, Numbers(y, count), statement);
    }
    template <Number X, Number Y>
    Plot curve(std::string_view name, const X* x, const Y* y, std::size_t count,
        const Statement& statement = Statement()) const
    {
        return curve(name, Numbers(x, count), Numbers(y, count), statement);
    }

    /// Marks at the points of `x` and `y`, with no line between them.
    Plot points(std::string_view name, const Numbers& y, const Statement& statement = Statement()) const;
    Plot points(
        std::string_view name, const Numbers& x, const Numbers& y, const Statement& statement = Statement()) const;

    template <Number T>
    Plot points(std::string_view name, const T* y, std::size_t count, const Statement& statement = Statement()) const
    {
        return points(name, Numbers(y, count), statement);
    }
    template <Number X, Number Y>
    Plot points(std::string_view name, const X* x, const Y* y, std::size_t count,
        const Statement& statement = Statement()) const
    {
        return points(name, Numbers(x, count), Numbers(y, count), statement);
    }

    /// Each sample holds until the next one.
    Plot steps(std::string_view name, const Numbers& y, const Statement& statement = Statement()) const;
    Plot steps(
        std::string_view name, const Numbers& x, const Numbers& y, const Statement& statement = Statement()) const;

    /// Bars from zero to the samples.
    Plot bars(std::string_view name, const Numbers& y, const Statement& statement = Statement()) const;
    Plot bars(
        std::string_view name, const Numbers& x, const Numbers& y, const Statement& statement = Statement()) const;

    /// How many of the values lie where, in intervals of equal length.
    Plot histogram(std::string_view name, const Numbers& values, const Statement& statement = Statement()) const;

    /// The area between `low` and `high`.
    Plot band(std::string_view name, const Numbers& x, const Numbers& low, const Numbers& high,
        const Statement& statement = Statement()) const;

    /// A line across the plot, with a label. Another one with the same label takes its place, and of more than 1,000
    /// the oldest goes. y goes as far as the horizontal ones, wherever the samples are.
    Plot vertical(double x, std::string_view label = {}, const Statement& statement = Statement()) const;
    template <Moment T>
    Plot vertical(const T& x, std::string_view label = {}, const Statement& statement = Statement()) const
    {
        return vertical(secondsOf(x), label, statement);
    }
    Plot horizontal(double y, std::string_view label = {}, const Statement& statement = Statement()) const;

    /// One more sample of a curve, or as many as the ranges have; the curve is made by the first. Of what is appended
    /// the last 1,000,000 samples are kept.
    Plot append(std::string_view name, double x, double y, const Statement& statement = Statement()) const;
    Plot append(
        std::string_view name, const Numbers& x, const Numbers& y, const Statement& statement = Statement()) const;

    template <Number X, Number Y>
    Plot append(std::string_view name, const X* x, const Y* y, std::size_t count,
        const Statement& statement = Statement()) const
    {
        return append(name, Numbers(x, count), Numbers(y, count), statement);
    }

    /// One more sample at a moment.
    template <Moment T>
    Plot append(std::string_view name, const T& moment, double y, const Statement& statement = Statement()) const
    {
        if constexpr (IS_DATE<T>)
            timeX(true, statement);
        return append(name, secondsOf(moment), y, statement);
    }

    /// How many samples of an appended curve are kept, the newest ones.
    Plot keep(std::string_view name, std::size_t count, const Statement& statement = Statement()) const;

    /// The colour of a curve, instead of one of the palette: red, green, blue, opacity, each 0 to 255.
    Plot colour(std::string_view name, const RGBA8& colour, const Statement& statement = Statement()) const;
    /// The same of red, green and blue: opaque.
    Plot colour(std::string_view name, const StaticVector<unsigned char, 3>& colour,
        const Statement& statement = Statement()) const
    {
        return this->colour(name, RGBA8(colour[0], colour[1], colour[2], 255), statement);
    }

    /// How a curve looks, in words: "dashed" or "dotted", "thick", "marks"; "y2" has it counted by the second y axis,
    /// at the right. Looks may be sent before their curve.
    Plot style(std::string_view name, std::string_view words, const Statement& statement = Statement()) const;

    /// Sets the title; by default the plot's name.
    Plot title(std::string_view text, const Statement& statement = Statement()) const;

    /// Sets the label and unit of an axis, shown as "pressure [Pa]".
    Plot xAxis(std::string_view label, std::string_view unit = {}, const Statement& statement = Statement()) const;
    Plot yAxis(std::string_view label, std::string_view unit = {}, const Statement& statement = Statement()) const;
    Plot y2Axis(std::string_view label, std::string_view unit = {}, const Statement& statement = Statement()) const;

    /// Makes an axis logarithmic. Values of zero or less are not drawn.
    Plot logX(bool isLog = true, const Statement& statement = Statement()) const;
    Plot logY(bool isLog = true, const Statement& statement = Statement()) const;

    /// Takes x for seconds since 1970 and shows dates and times of the local time zone, which is named. Numbers so
    /// large that they can only be milliseconds, microseconds or nanoseconds are taken for these.
    Plot timeX(bool isTime = true, const Statement& statement = Statement()) const;

    /// The part of an axis that is seen, until the user chooses another. Without it all samples are seen. The smaller
    /// number is at the left, or below, whichever comes first.
    Plot xRange(double from, double to, const Statement& statement = Statement()) const;
    template <Moment From, Moment To>
    Plot xRange(const From& from, const To& to, const Statement& statement = Statement()) const
    {
        return xRange(secondsOf(from), secondsOf(to), statement);
    }
    Plot yRange(double from, double to, const Statement& statement = Statement()) const;

    /// Shows no more of x than that, the newest of it, until the user chooses another length. It is above 0.
    Plot window(double seconds, const Statement& statement = Statement()) const;

    /// Shows the same part of x as the other plot, whichever of them is moved, or sent `xRange`, `window` or `logX`
    /// last.
    Plot link(const Plot& other, const Statement& statement = Statement()) const;

    /// Takes one curve away, and lines with that label, or all of them.
    Plot remove(std::string_view name, const Statement& statement = Statement()) const;
    Plot clear(const Statement& statement = Statement()) const;

private:
    friend VIREO_SHOW_EXPORT Plot plot(std::string_view name);

    std::shared_ptr<ViewSlot> m_Slot;
};

/// The plot of that name. It is in the window as soon as anything is sent to it.
VIREO_SHOW_EXPORT Plot plot(std::string_view name);

} // namespace tavo
