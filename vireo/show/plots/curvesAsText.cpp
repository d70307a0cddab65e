#include "vireo/show/plots/curvesAsText.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "vireo/show/delivery/csvFile.h"
#include "vireo/show/plots/PlotCurve.h"

namespace tavo {

namespace {

// Which samples of a curve are written, row by row.
class Rows
{
public:
    Rows(const CurveStore& curve, const std::optional<AxisUpdate::Range>& x)
        : m_Last(curve.size())
    {
        if (x && curve.isSorted()) {
            m_First = curve.lowerBound(x->from);
            m_Last = curve.lowerBound(std::nextafter(x->to, INFINITY), m_First);
        } else if (x) {
            for (std::size_t i = 0; i < curve.size(); ++i)
                if (curve.x(i) >= x->from && curve.x(i) <= x->to)
                    m_Chosen.push_back(i);
            m_Last = m_Chosen.size();
        }
    }

    std::size_t size() const { return m_Last - m_First; }
    std::size_t operator[](std::size_t row) const { return m_Chosen.empty() ? m_First + row : m_Chosen[row]; }

private:
    std::size_t m_First = 0;
    std::size_t m_Last;
    std::vector<std::size_t> m_Chosen; // where x goes to and fro
};

void appendNames(QByteArray& text, const PlotCurve& curve)
{
    text += quotedCell(curve.getName() + " x");
    for (const PlotCurve::Edge& edge : curve.edges())
        text += ',' + quotedCell(edge.name);
}

void appendSample(QByteArray& text, const PlotCurve& curve, const std::optional<std::size_t>& i)
{
    if (i)
        appendNumber(text, curve.getSamples().x(*i));
    for (const PlotCurve::Edge& edge : curve.edges()) {
        text += ',';
        if (i && *i < edge.samples->size())
            appendNumber(text, edge.samples->y(*i));
    }
}

// Writes a table of curves, piece by piece.
class CurveRows
{
public:
    CurveRows(const std::vector<const PlotCurve*>& curves, const std::optional<AxisUpdate::Range>& x)
        : m_Curves(curves)
    {
        for (const PlotCurve* curve : m_Curves) {
            m_Text += curve == m_Curves.front() ? "" : ",";
            appendNames(m_Text, *curve);
            m_Rows.emplace_back(curve->getSamples(), x);
            m_Count = std::max(m_Count, m_Rows.back().size());
        }
        m_Text += '\n';
    }

    QByteArray operator()()
    {
        for (; m_Next < m_Count && m_Text.size() < CSV_PIECE; ++m_Next)
            appendRow();
        return std::exchange(m_Text, {});
    }

private:
    void appendRow()
    {
        for (std::size_t i = 0; i < m_Curves.size(); ++i) {
            m_Text += i == 0 ? "" : ",";
            const Rows& rows = m_Rows[i];
            appendSample(m_Text, *m_Curves[i], m_Next < rows.size() ? std::optional(rows[m_Next]) : std::nullopt);
        }
        m_Text += '\n';
    }

    std::vector<const PlotCurve*> m_Curves;
    std::vector<Rows> m_Rows;
    QByteArray m_Text;
    std::size_t m_Next = 0;
    std::size_t m_Count = 0;
};

} // namespace

std::function<QByteArray()> curvesAsText(
    const std::vector<const PlotCurve*>& curves, const std::optional<AxisUpdate::Range>& x)
{
    return CurveRows(curves, x);
}

std::string saveCurves(
    const QString& file, const std::vector<const PlotCurve*>& curves, const std::optional<AxisUpdate::Range>& x)
{
    return saveCsv(file, dataFormatsOf(ViewKind::Plot), curvesAsText(curves, x));
}

} // namespace tavo
