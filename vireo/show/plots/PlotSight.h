#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "vireo/show/plots/PlotUpdate.h"

namespace tavo {

// Which part of a plot is seen, without any widget.
//
// Along each axis that is what a person has chosen, or else what the program has asked for, or else what fits the data.
// While a plot is live, and nobody has chosen a part of x, the newest data are followed: zooming x then changes how
// much of them is seen, and they are followed still. What a person has chosen, no data move.
class PlotSight
{
public:
    using Range = AxisUpdate::Range;

    // No axis goes beyond, so that lengths and steps of it are numbers still.
    static constexpr double LARGEST = 4e307;

    // Of the numbers on an axis: the shortest length of it, which doubles tell apart.
    static constexpr double SMALLEST_PART = 1e-13;

    // Of the ends of a logarithmic axis.
    static constexpr double LARGEST_RATIO = 1e299;

    enum Axis : std::size_t
    {
        X,
        Y,
        Y2,
        NUM_AXES
    };

    Range range(Axis axis) const;

    void setFitted(Axis axis, const Range& range) { m_Fitted[axis] = range; }
    const Range& fitted(Axis axis) const { return m_Fitted[axis]; }
    void setWanted(Axis axis, const std::optional<Range>& range) { m_Wanted[axis] = range; }
    void setLog(Axis axis, bool isLog) { m_IsLog[axis] = isLog; }
    bool isLog(Axis axis) const { return m_IsLog[axis]; }

    // Whether data are appended.
    void setLive(bool isLive) { m_IsLive = isLive; }
    bool isLive() const { return m_IsLive; }
    bool isFollowing() const { return m_IsLive && !m_Chosen.ranges[X]; }

    // Whether newer data could be followed, but are not.
    bool isBehind() const { return m_IsLive && m_Chosen.ranges[X]; }

    // How much of x is followed, if a person has chosen that.
    const std::optional<double>& followedLength() const { return m_Chosen.followedLength; }

    bool isChosen(Axis axis) const { return m_Chosen.ranges[axis].has_value(); }

    // Whether a person has chosen a part of x, or how much of it is followed.
    bool isXChosen() const { return isChosen(X) || m_Chosen.followedLength; }

    // What is seen along an axis becomes so many times as long; `fixed` stays where it is.
    void zoom(Axis axis, double factor, double fixed);

    // What is seen along an axis moves on, by a part of its length.
    void move(Axis axis, double part);

    void choose(Axis axis, const Range& range);

    // What fits, again; where there is something to follow, it is followed.
    void fit();
    void fit(Axis axis);

    // Stays where it is, or follows again.
    void setFrozen(bool isFrozen);

    // Before a gesture: what is seen now can be gone back to.
    void remember();
    void back();
    void forward();
    bool canGoBack() const { return !m_Before.empty(); }
    bool canGoForward() const { return !m_After.empty(); }

    // What is chosen of x, as in another plot.
    void takeX(const PlotSight& other);

private:
    struct Choice
    {
        std::array<std::optional<Range>, NUM_AXES> ranges;
        std::optional<double> followedLength;

        bool operator==(const Choice& other) const;
    };

    // A logarithmic axis is zoomed and moved by its decades.
    double placeOf(Axis axis, double value) const;
    double valueOf(Axis axis, double place) const;
    Range fromPlaces(Axis axis, double from, double to) const;

    std::array<Range, NUM_AXES> m_Fitted{{{0, 1}, {0, 1}, {0, 1}}};
    std::array<std::optional<Range>, NUM_AXES> m_Wanted;
    std::array<bool, NUM_AXES> m_IsLog{};
    bool m_IsLive = false;
    Choice m_Chosen;
    std::vector<Choice> m_Before;
    std::vector<Choice> m_After;
};

} // namespace tavo
