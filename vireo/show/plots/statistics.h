#pragma once

#include <cstddef>

#include "vireo/show/plots/CurveStore.h"

namespace tavo {

// Of the finite samples in a stretch of x. Without any, all numbers are NaN.
struct Statistics
{
    std::size_t count = 0;
    double difference; // of the last and the first
    double mean;
    double minimum;
    double maximum;
    double rms;
};

// Of the samples from one x to another, both included.
Statistics statisticsBetween(const CurveStore& curve, double from, double to);

} // namespace tavo
