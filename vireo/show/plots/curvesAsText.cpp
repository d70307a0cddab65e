#include "vireo/show/plots/curvesAsText.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

#include "vireo/show/plots/PlotCurve.h"

namespace tavo {

namespace {

constexpr int PIECE = 1 << 20;

void append(QByteArray& text, double number)
{
    char digits[32];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    text.append(digits, static_cast<int>(result.ptr - digits));
}

QByteArray quoted(const std::string& name)
{
    QByteArray text = QByteArray::fromStdString(name);
    return '"' + text.replace('"', "\"\"") + '"';
}

using Curves = std::vector<const PlotCurve*>;

QByteArray headOf(const Curves& curves)
{
    QByteArray text;
    for (const PlotCurve* curve : curves)
        text += (curve == curves.front() ? "" : ",") + quoted(curve->getName() + " x") + ',' + quoted(curve->getName());
    return text + '\n';
}

void appendRow(QByteArray& text, const Curves& curves, std::size_t row)
{
    for (const PlotCurve* curve : curves) {
        if (curve != curves.front())
            text += ',';
        const bool hasSample = row < curve->getSamples().size();
        if (hasSample)
            append(text, curve->getSamples().x(row));
        text += ',';
        if (hasSample)
            append(text, curve->getSamples().y(row));
    }
    text += '\n';
}

} // namespace

std::function<QByteArray()> curvesAsText(const Curves& curves)
{
    std::size_t numRows = 0;
    for (const PlotCurve* curve : curves)
        numRows = std::max(numRows, curve->getSamples().size());
    return [curves, numRows, row = std::size_t(0), text = headOf(curves)]() mutable {
        for (; row < numRows && text.size() < PIECE; ++row)
            appendRow(text, curves, row);
        return std::exchange(text, {});
    };
}

} // namespace tavo
