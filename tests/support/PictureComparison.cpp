#include "tests/support/PictureComparison.h"

#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace tavo {

namespace {

QImage toImage(const Picture& picture)
{
    QImage image(static_cast<int>(picture.width), static_cast<int>(picture.height), QImage::Format_RGBA8888);
    for (unsigned int y = 0; y < picture.height; ++y) {
        Pixel* row = reinterpret_cast<Pixel*>(image.scanLine(static_cast<int>(picture.height - 1 - y)));
        std::copy_n(&picture.pixels[std::size_t{y} * picture.width], picture.width, row);
    }
    return image;
}

Picture toPicture(const QImage& source)
{
    const QImage image = source.convertToFormat(QImage::Format_RGBA8888);
    Picture picture(static_cast<unsigned int>(image.width()), static_cast<unsigned int>(image.height()));
    for (unsigned int y = 0; y < picture.height; ++y) {
        const auto* row = reinterpret_cast<const Pixel*>(image.constScanLine(static_cast<int>(picture.height - 1 - y)));
        std::copy_n(row, picture.width, &picture.pixels[std::size_t{y} * picture.width]);
    }
    return picture;
}

void save(const Picture& picture, const std::filesystem::path& file)
{
    std::filesystem::create_directories(file.parent_path());
    if (!toImage(picture).save(QString::fromStdString(file.string())))
        throw std::runtime_error("PictureComparison::save() - cannot write " + file.string());
}

Picture load(const std::filesystem::path& file)
{
    return toPicture(QImage(QString::fromStdString(file.string())));
}

int largestDifference(const Pixel& a, const Pixel& b)
{
    int largest = 0;
    for (std::size_t channel = 0; channel < a.size(); ++channel)
        largest = std::max(largest, std::abs(a[channel] - b[channel]));
    return largest;
}

std::size_t countDifferingPixels(const Picture& a, const Picture& b, int perChannel)
{
    std::size_t differing = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        differing += largestDifference(a.pixels[i], b.pixels[i]) > perChannel;
    return differing;
}

// White is the largest difference there is; what differs in nothing is black.
Picture differenceOf(const Picture& a, const Picture& b)
{
    Picture difference(a.width, a.height, {0, 0, 0, 255});
    int largest = 1;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        largest = std::max(largest, largestDifference(a.pixels[i], b.pixels[i]));
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        const int alphaDifference = std::abs(a.pixels[i][3] - b.pixels[i][3]);
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const int value = std::max(alphaDifference, std::abs(a.pixels[i][channel] - b.pixels[i][channel]));
            difference.pixels[i][channel] = static_cast<unsigned char>(255 * value / largest);
        }
    }
    return difference;
}

bool approving()
{
    const char* variable = std::getenv("VIREO_APPROVE_PICTURES");
    return variable && std::string_view(variable) == "1";
}

std::string sizeText(const Picture& picture)
{
    return std::to_string(picture.width) + 'x' + std::to_string(picture.height);
}

} // namespace

PictureComparison::PictureComparison(std::filesystem::path references, std::filesystem::path failures)
    : m_References(std::move(references))
    , m_Failures(std::move(failures))
{}

testing::AssertionResult PictureComparison::matches(
    const Picture& picture, const std::string& name, const PictureTolerance& tolerance) const
{
    const std::filesystem::path referenceFile = m_References / (name + ".png");
    if (approving()) {
        save(picture, referenceFile);
        return testing::AssertionSuccess() << "approved as " << referenceFile;
    }
    const Picture reference = load(referenceFile);
    if (reference.pixels.empty())
        return fail(picture, name, "there is no reference " + referenceFile.string());
    if (reference.width != picture.width || reference.height != picture.height) {
        save(reference, m_Failures / (name + ".reference.png"));
        return fail(picture, name, "it is " + sizeText(picture) + ", the reference " + sizeText(reference));
    }

    const std::size_t differing = countDifferingPixels(picture, reference, tolerance.perChannel);
    const double allowed = tolerance.differingPixels * static_cast<double>(picture.pixels.size());
    if (static_cast<double>(differing) <= allowed)
        return testing::AssertionSuccess() << differing << " pixels differ";

    save(reference, m_Failures / (name + ".reference.png"));
    save(differenceOf(picture, reference), m_Failures / (name + ".difference.png"));
    return fail(picture, name,
        std::to_string(differing) + " of " + std::to_string(picture.pixels.size()) + " pixels differ by more than " +
            std::to_string(tolerance.perChannel));
}

testing::AssertionResult PictureComparison::fail(
    const Picture& picture, const std::string& name, const std::string& reason) const
{
    const std::filesystem::path file = m_Failures / (name + ".png");
    save(picture, file);
    return testing::AssertionFailure() << "picture " << name << ": " << reason << "; see " << file.string()
                                       << " and what lies beside it (VIREO_APPROVE_PICTURES=1 makes it the reference)";
}

testing::AssertionResult matchesReference(
    const Picture& picture, const std::string& name, const PictureTolerance& tolerance)
{
    static const PictureComparison comparison(VIREO_TEST_PICTURES, VIREO_TEST_PICTURE_FAILURES);
    return comparison.matches(picture, name, tolerance);
}

} // namespace tavo
