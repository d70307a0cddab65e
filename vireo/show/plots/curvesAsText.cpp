#include "vireo/show/plots/curvesAsText.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "vireo/show/plots/PlotCurve.h"

namespace tavo {

namespace {

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

} // namespace

QByteArray curvesAsText(const std::vector<const PlotCurve*>& curves)
{
    QByteArray text;
    std::size_t numRows = 0;
    for (const PlotCurve* curve : curves) {
        text += (curve == curves.front() ? "" : ",") + quoted(curve->getName() + " x") + ',' + quoted(curve->getName());
        numRows = std::max(numRows, curve->getSamples().size());
    }
    text += '\n';
    for (std::size_t i = 0; i < numRows; ++i) {
        for (const PlotCurve* curve : curves) {
            if (curve != curves.front())
                text += ',';
            const bool hasSample = i < curve->getSamples().size();
            if (hasSample)
                append(text, curve->getSamples().x(i));
            text += ',';
            if (hasSample)
                append(text, curve->getSamples().y(i));
        }
        text += '\n';
    }
    return text;
}

} // namespace tavo
