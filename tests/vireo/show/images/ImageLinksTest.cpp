#include "vireo/show/images/ImageLinks.h"

#include <gmock/gmock.h>

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

bool isAlways(const std::string&)
{
    return true;
}

TEST(ImageLinksTest, HoldInBothDirectionsAndByWayOfOthers)
{
    ImageLinks links;
    links.add("a", "b");
    links.add("c", "b");
    links.add("d", "e");
    EXPECT_THAT(links.linkedTo("a", isAlways), UnorderedElementsAre("a", "b", "c"));
    EXPECT_THAT(links.linkedTo("b", isAlways), UnorderedElementsAre("a", "b", "c"));
    EXPECT_THAT(links.linkedTo("f", isAlways), ElementsAre("f"));
    EXPECT_THAT(links.linkedTo("a", [](const std::string& name) { return name != "b"; }), ElementsAre("a"))
        << "what is not there links nothing";
    links.removeFrom("c");
    EXPECT_THAT(links.linkedTo("b", isAlways), UnorderedElementsAre("a", "b"));
}

// What grows with the square of their number would take minutes here.
TEST(ImageLinksTest, OfManyImagesAreFollowedOneByOne)
{
    constexpr int COUNT = 200'000;
    ImageLinks links;
    for (int i = 1; i < COUNT; ++i)
        links.add(std::to_string(i - 1), std::to_string(i));
    EXPECT_EQ(links.linkedTo("0", isAlways).size(), std::size_t(COUNT));
}

} // namespace
} // namespace tavo
