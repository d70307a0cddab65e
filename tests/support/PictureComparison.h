#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "tests/support/Picture.h"

namespace tavo {

// How far a picture may be from its reference; drivers round differently.
struct PictureTolerance
{
    // A channel differs if it is off by more than this.
    int perChannel = 0;
    // The part of all pixels, 0 to 1, that may have a channel that differs.
    double differingPixels = 0;
};

// Compares pictures with references in PNG files, <folder>/<name>.png.
//
// Where one does not match, the picture, the reference and their difference (its channels stretched to the full range,
// opaque) are written beside each other as <name>.png, <name>.reference.png and <name>.difference.png, and the message
// names them. With VIREO_APPROVE_PICTURES=1 in the environment, pictures become the new references instead.
class PictureComparison
{
public:
    PictureComparison(std::filesystem::path references, std::filesystem::path failures);

    testing::AssertionResult matches(
        const Picture& picture, const std::string& name, const PictureTolerance& tolerance) const;

private:
    testing::AssertionResult fail(const Picture& picture, const std::string& name, const std::string& reason) const;

    std::filesystem::path m_References;
    std::filesystem::path m_Failures;
};

// The comparison with the references of the source tree, tests/pictures; failures go to the build tree.
//
//     EXPECT_TRUE(matchesReference(readPixels(), "GLHelper/coords", {.perChannel = 2}));
testing::AssertionResult matchesReference(
    const Picture& picture, const std::string& name, const PictureTolerance& tolerance = {});

} // namespace tavo
