#include "vireo/show/delivery/dataFormats.h"

namespace tavo {

namespace {

constexpr DataFormat TABLE{".csv", "Comma-separated values"};
constexpr DataFormat VOLUME{".nii", "Volume, NIfTI-1"};
constexpr DataFormat LOOK{".json", "Look of a volume"};
constexpr DataFormat PICTURE{".png", "Pixels, PNG"};

} // namespace

const DataFormats& dataFormatsOf(ViewKind kind)
{
    static const auto* const ofScenes = new DataFormats{TABLE, VOLUME, LOOK};
    static const auto* const ofImages = new DataFormats{TABLE, PICTURE};
    static const auto* const ofSlices = new DataFormats{TABLE, VOLUME};
    switch (kind) {
    case ViewKind::Plot: break;
    case ViewKind::Scene: return *ofScenes;
    case ViewKind::Image: return *ofImages;
    case ViewKind::Slices: return *ofSlices;
    }
    return tableFormats();
}

const DataFormats& tableFormats()
{
    static const auto* const formats = new DataFormats{TABLE};
    return *formats;
}

QStringList filtersOf(const DataFormats& formats)
{
    QStringList filters;
    for (const DataFormat& format : formats)
        filters += QString(format.contents) + " (*" + format.ending + ")";
    return filters;
}

std::string whyNoneIs(const DataFormats& formats)
{
    std::string endings;
    for (std::size_t i = 0; i < formats.size(); ++i)
        endings += (i == 0 ? "" : i + 1 < formats.size() ? ", " : " or ") + std::string(formats[i].ending);
    return "the file's name must end with " + endings;
}

} // namespace tavo
