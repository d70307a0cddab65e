#pragma once

#include <cmath>

namespace tavo {

// From the numbers along one axis to pixels, and back.
struct PixelMap
{
    double firstValue = 0;
    double lastValue = 1;
    double firstPixel = 0;
    double lastPixel = 1;
    bool isLog = false;

    bool operator==(const PixelMap& other) const
    {
        return firstValue == other.firstValue && lastValue == other.lastValue && firstPixel == other.firstPixel &&
               lastPixel == other.lastPixel && isLog == other.isLog;
    }

    // Only numbers above zero have one on a logarithmic axis.
    bool hasPlace(double value) const { return std::isfinite(value) && (!isLog || value > 0); }

    // Not finite for what has no place on a logarithmic axis.
    double toPixel(double value) const
    {
        // By halves: the difference of two numbers may be too large for one.
        const double from = placeOf(firstValue) / 2;
        const double part = (placeOf(value) / 2 - from) / (placeOf(lastValue) / 2 - from);
        return firstPixel + part * (lastPixel - firstPixel);
    }

    double toValue(double pixel) const
    {
        const double part = (pixel - firstPixel) / (lastPixel - firstPixel);
        const double place = placeOf(firstValue) + part * (placeOf(lastValue) - placeOf(firstValue));
        return isLog ? std::exp(place) : place;
    }

private:
    double placeOf(double value) const { return isLog ? std::log(value) : value; }
};

} // namespace tavo
