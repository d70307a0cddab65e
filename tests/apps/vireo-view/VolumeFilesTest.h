#pragma once

#include <vector>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/Volume.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {

// A test of a reader of volumes.
class VolumeFilesTest : public FilesTest
{
protected:
    static std::vector<double> numbers(const NumberColumn& column)
    {
        std::vector<double> result;
        for (std::size_t i = 0; i < sizeOf(column); ++i)
            result.push_back(numberAt(column, i));
        return result;
    }

    template <typename Value>
    static bool areOf(const Volume& volume)
    {
        return std::holds_alternative<std::vector<Value>>(volume.times.front());
    }
};

} // namespace vireo_view
