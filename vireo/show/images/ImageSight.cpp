#include "vireo/show/images/ImageSight.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tavo {

namespace {

// Of magnifications. Smaller ones follow by halves.
constexpr double STEPS[] = {0.5, 0.75, 1, 2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64, 96, 128, 192, 256};
constexpr double ROUNDING = 1e-6;

double nextStep(double scale)
{
    if (scale < STEPS[0] - ROUNDING)
        return nextStep(2 * scale) / 2;
    for (const double step : STEPS)
        if (step > scale * (1 + ROUNDING))
            return step;
    return ImageSight::GREATEST_SCALE;
}

double stepBefore(double scale)
{
    if (scale <= STEPS[1] + ROUNDING)
        return stepBefore(2 * scale) / 2;
    for (auto step = std::rbegin(STEPS); step != std::rend(STEPS); ++step)
        if (*step < scale * (1 - ROUNDING))
            return *step;
    return scale;
}

} // namespace

ImageSight ImageSight::fitting(const QSize& image, const QSize& view)
{
    ImageSight sight;
    sight.centre = {image.width() / 2.0, image.height() / 2.0};
    if (image.isEmpty() || view.isEmpty())
        return sight;
    const double fit = std::min(double(view.width()) / image.width(), double(view.height()) / image.height());
    sight.scale = std::clamp(fit >= 1 ? std::floor(fit) : fit, LEAST_SCALE, GREATEST_SCALE);
    return sight;
}

void ImageSight::zoom(int steps, const QPointF& place, const QSize& view)
{
    double newScale = scale;
    for (; steps > 0; --steps)
        newScale = nextStep(newScale);
    for (; steps < 0; ++steps)
        newScale = stepBefore(newScale);
    zoomTo(newScale, place, view);
}

void ImageSight::zoomTo(double newScale, const QPointF& place, const QSize& view)
{
    const QPointF point = toImage(place, view);
    scale = std::clamp(newScale, LEAST_SCALE, GREATEST_SCALE);
    centre = point - (place - QPointF(view.width(), view.height()) / 2) / scale;
}

void ImageSight::keepInView(const QSize& image)
{
    centre = {std::clamp(centre.x(), 0.0, double(image.width())), std::clamp(centre.y(), 0.0, double(image.height()))};
}

void ImageSight::adapt(const QSizeF& before, const QSizeF& after)
{
    scale = std::clamp(scale * before.width() / after.width(), LEAST_SCALE, GREATEST_SCALE);
    if (scale > 1)
        scale = std::round(scale);
    centre = {centre.x() * after.width() / before.width(), centre.y() * after.height() / before.height()};
}

QPointF ImageSight::origin(const QSize& view) const
{
    return {std::round(view.width() / 2.0 - centre.x() * scale), std::round(view.height() / 2.0 - centre.y() * scale)};
}

QPointF ImageSight::toImage(const QPointF& place, const QSize& view) const
{
    return (place - origin(view)) / scale;
}

QPointF ImageSight::toView(const QPointF& point, const QSize& view) const
{
    return origin(view) + point * scale;
}

} // namespace tavo
