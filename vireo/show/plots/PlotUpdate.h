#pragma once

#include <QRgb>
#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "vireo/show/delivery/NumberArray.h"
#include "vireo/show/delivery/ViewUpdate.h"

namespace tavo {

enum class CurveKind : unsigned char
{
    Line,
    Points,
    Steps,
    Bars,
    Histogram, // whose samples are the values that are counted, until the curve has them
    Band
};

const char* nameOf(CurveKind kind);

// Samples of a curve. Without x they stand at 0, 1, 2 ...
struct CurveSamples
{
    NumberArray x;
    NumberArray y;
    NumberArray low; // of a band
    CurveKind kind = CurveKind::Line;
};

// Samples that were appended in one piece, as many xs as ys: a range as it was sent, or small ones put together.
class AppendedSamples
{
public:
    AppendedSamples(NumberArray x, NumberArray y)
        : m_SentX(std::move(x))
        , m_SentY(std::move(y))
    {}
    AppendedSamples(double x, double y)
        : m_X{x}
        , m_Y{y}
    {}

    std::size_t size() const { return m_X.empty() ? m_SentX.size() : m_X.size(); }

    NumberArray x() const { return m_X.empty() ? m_SentX : viewOf(m_X); }
    NumberArray y() const { return m_X.empty() ? m_SentY : viewOf(m_Y); }

    // Whether what comes behind these is to be put together with them.
    bool takesIn(const AppendedSamples& newer) const;

    // Copies what comes behind these. All are doubles from then on.
    void append(const AppendedSamples& newer);

private:
    // Lives no longer than the numbers.
    static NumberArray viewOf(const std::vector<double>& numbers)
    {
        return {nullptr, numbers.data(), numbers.size(), NumberType::Float64};
    }

    NumberArray m_SentX;
    NumberArray m_SentY;
    std::vector<double> m_X; // in place of what was sent
    std::vector<double> m_Y;
};

// What was sent to one curve.
struct CurveUpdate
{
    static constexpr std::size_t DEFAULT_KEPT = 1'000'000;

    std::string name;
    bool isRemoved = false; // what the plot has of it goes first
    std::optional<CurveSamples> samples;
    std::list<AppendedSamples> appended; // behind the samples
    std::optional<std::size_t> kept;     // of appended samples, the newest
    std::optional<QRgb> colour;
    std::optional<std::string> style; // words, see Plot::style()

    void merge(CurveUpdate& newer);
    void send(CurveSamples newest);
    void append(AppendedSamples piece);
    void remove();

    // Whether what the plot has of it goes.
    bool isReplacing() const { return isRemoved || samples; }

    bool hasSamples() const { return samples || !appended.empty(); }

    // Whether it only goes.
    bool isGoing() const { return isRemoved && !hasSamples(); }

private:
    void dropAppended();
    void dropOldSamples();

    std::size_t m_NumAppended = 0; // samples of all pieces
};

struct AxisUpdate
{
    struct Name
    {
        std::string label;
        std::string unit;
    };
    struct Range
    {
        double from;
        double to;
    };

    std::optional<Name> name;
    std::optional<Range> range;
    std::optional<bool> isLog;
    std::optional<bool> isTime; // seconds since 1970

    void merge(AxisUpdate& newer);
};

// A line across the plot. A later one with the same label takes its place.
struct LineAcross
{
    // Of more in one plot the newest are kept: nobody could tell them apart, or wait for so many labels.
    static constexpr std::size_t MOST = 1000;

    bool isVertical;
    double place;
    std::string label;
};

// What was sent to one plot.
class PlotUpdate : public ViewUpdate
{
public:
    void merge(ViewUpdate& newer) override;
    std::unique_ptr<ViewUpdate> forTheNext() const override;
    Replaced replaced() const override;
    std::unique_ptr<ViewUpdate> copy() const override;
    std::string saveData(const QString& file) override;

    // Of that name, made by the first call. In the order of the first calls.
    CurveUpdate& curve(const std::string& name);

    // As if what was sent so far had never been: the plot's curves go.
    void clear();

    // The curve of that name goes, and the lines with that label.
    void remove(const std::string& name);

    // In the place of one of the same direction and label.
    void addLine(LineAcross line);
    void addLink(const std::string& plot);

    bool isCleared = false; // the curves of the plot go first
    std::vector<CurveUpdate> curves;
    std::optional<std::string> title;
    AxisUpdate x;
    AxisUpdate y;
    AxisUpdate y2;
    std::vector<LineAcross> lines;
    std::optional<double> window;          // how much of x is in view, of the newest
    std::vector<std::string> removedLines; // before lines are added
    std::vector<std::string> links;        // the plots that share its x

private:
    void removeLines(const std::string& label);
};

} // namespace tavo
