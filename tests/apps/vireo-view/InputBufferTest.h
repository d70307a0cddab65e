#pragma once

#include <istream>
#include <iterator>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {

class InputBufferTest : public FilesTest
{
protected:
    using LineEnds = InputBuffer::LineEnds;

    std::string read(const std::filesystem::path& file, LineEnds lineEnds)
    {
        InputBuffer buffer(file, lineEnds, nullptr);
        std::istream stream(&buffer);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    std::string errorOpening(const std::filesystem::path& file)
    {
        return messageOf<InputError>([&] { InputBuffer(file, LineEnds::AS_THEY_ARE, nullptr); });
    }
};

} // namespace vireo_view
