#include "vireo/show/volumes/TransferFunction.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <optional>
#include <vector>

#include "tavo/base/files/saveFile.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/volumes/whyNoVolume.h"

namespace tavo {

namespace {

constexpr int VERSION = 1;
constexpr qint64 LARGEST_FILE = 1 << 20; // in bytes
constexpr int MOST_POINTS = 1000;

std::optional<double> numberIn(const QJsonObject& object, const char* name)
{
    const QJsonValue value = object.value(QLatin1String(name));
    return value.isDouble() && std::isfinite(value.toDouble()) ? std::optional(value.toDouble()) : std::nullopt;
}

std::string readRange(const QJsonObject& object, std::pair<double, double>& range)
{
    const std::optional<double> window = numberIn(object, "window");
    const std::optional<double> level = numberIn(object, "level");
    if (!window || !level)
        return std::string("it has no number \"") + (window ? "level" : "window") + '"';
    range = {*level - *window / 2, *level + *window / 2};
    if (!std::isfinite(range.first) || !std::isfinite(range.second))
        return "its window and level are too large";
    return {};
}

std::string readPoints(const QJsonObject& object, OpacityCurve& opacities)
{
    if (!object.value("points").isArray())
        return "it has no \"points\"";
    const QJsonArray array = object.value("points").toArray();
    if (array.size() > MOST_POINTS)
        return std::to_string(array.size()) + " points are more than " + std::to_string(MOST_POINTS);
    std::vector<TransferPoint> points;
    for (int i = 0; i < array.size(); ++i) {
        const QJsonObject point = array[i].toObject();
        const std::optional<double> place = numberIn(point, "place");
        const std::optional<double> opacity = numberIn(point, "opacity");
        if (!place || !opacity || *place < 0 || *place > 1)
            return "point " + std::to_string(i) + " has no \"place\" from 0 to 1 with an \"opacity\"";
        points.push_back({*place, *opacity});
        opacities.push_back({*place, *opacity});
    }
    return whyNoTransferFunction(points);
}

std::string readMap(const QJsonObject& object, std::string& colourMap)
{
    if (!object.value("colourMap").isString())
        return "it has no \"colourMap\"";
    colourMap = object.value("colourMap").toString().toStdString();
    return findColourMap(colourMap) ? std::string() : whyNoColourMap(colourMap);
}

} // namespace

bool isTransferFunctionFile(const QString& file)
{
    return QFileInfo(file).suffix().toLower() == "json";
}

std::string saveTransferFunction(const QString& file, const TransferFunction& function)
{
    const auto [from, to] = function.range;
    if (!std::isfinite(to - from))
        return "its range is too wide";
    QJsonArray points;
    for (const OpacityPoint& point : function.opacities)
        points.append(QJsonObject{{"place", point.place}, {"opacity", point.opacity}});
    QJsonObject object{{"transferFunction", VERSION}, {"colourMap", QString::fromStdString(function.colourMap)},
        {"window", to - from}, {"level", from + (to - from) / 2}, {"points", points}};
    if (function.areCategories)
        object.insert("categories", true);
    return saveFile(file, QJsonDocument(object).toJson());
}

std::string readTransferFunction(const QByteArray& json, TransferFunction& function)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        return "it is no JSON: " + error.errorString().toStdString() + " at byte " + std::to_string(error.offset);
    const QJsonObject object = document.object();
    const std::optional<double> version = numberIn(object, "transferFunction");
    if (!version)
        return "it is no transfer function";
    if (*version > VERSION && *version == std::floor(*version))
        return "it is of a later version";
    if (*version != VERSION)
        return "there is no version " + QString::number(*version).toStdString() + " of transfer functions";
    TransferFunction read;
    std::string why = readMap(object, read.colourMap);
    if (why.empty())
        why = readRange(object, read.range);
    if (why.empty())
        why = readPoints(object, read.opacities);
    read.areCategories = object.value("categories").toBool();
    if (why.empty())
        function = std::move(read);
    return why;
}

// Not more is read than makes sense, of whatever there is.
std::string loadTransferFunction(const QString& file, TransferFunction& function)
{
    if (file.isEmpty())
        return "the file has no name"; // which Qt would say itself
    QFile source(file);
    if (QFileInfo(file).exists() && !QFileInfo(file).isFile())
        return "it is no file";
    if (!source.open(QIODevice::ReadOnly))
        return source.errorString().toStdString();
    if (source.size() > LARGEST_FILE)
        return std::to_string(source.size()) + " bytes are too many for a transfer function";
    return readTransferFunction(source.read(LARGEST_FILE), function);
}

} // namespace tavo
