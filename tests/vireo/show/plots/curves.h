#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "vireo/show/plots/PlotUpdate.h"

namespace tavo {

// What tests of plots send.

inline NumberArray numbers(std::vector<double> values)
{
    const auto kept = std::make_shared<const std::vector<double>>(std::move(values));
    return {kept, kept->data(), kept->size(), NumberType::Float64};
}

inline CurveUpdate samples(std::vector<double> x, std::vector<double> y, CurveKind kind = CurveKind::Line)
{
    CurveUpdate update;
    update.samples = CurveSamples{numbers(std::move(x)), numbers(std::move(y)), {}, kind};
    return update;
}

} // namespace tavo
