#include "vireo/show/scenes/pointSetItem.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

#include "vireo/show/Numbers.h"
#include "vireo/show/scenes/lookLikeCategories.h"

namespace tavo {

namespace {

// The first `width` numbers of an attribute of every point.
template <typename T>
NumberTuples columnsOf(const PointSet& points, unsigned int attribute, std::size_t width)
{
    const std::size_t numPoints = points.getNumPoints();
    auto numbers = std::make_shared<std::vector<T>>(width * numPoints);
    const unsigned char* from = points.getData() + points.getDescr().getAttributeOffset(attribute);
    T* to = numbers->data();
    for (std::size_t i = 0; i < numPoints; ++i, from += points.getDescr().getSize(), to += width)
        std::memcpy(to, from, width * sizeof(T));
    return {NumberArray(numbers, numbers->data(), numbers->size(), numberTypeOf<T>()), width};
}

} // namespace

NumberTuples tuplesOf(const PointSet& points, unsigned int attribute, std::size_t width)
{
    switch (points.getDescr().getAttribute(attribute).getType()) {
    case VertexAttribDescriptor::TYPE_UNSIGNED_BYTE: return columnsOf<std::uint8_t>(points, attribute, width);
    case VertexAttribDescriptor::TYPE_INT: return columnsOf<std::int32_t>(points, attribute, width);
    default: return columnsOf<float>(points, attribute, width);
    }
}

namespace {

void take(ItemUpdate& item, const PointSet& points, unsigned int i)
{
    const VertexAttribDescriptor& attribute = points.getDescr().getAttribute(i);
    const std::size_t width = attribute.getNumComponents();
    if (attribute.getName() == "normal" && attribute.isFloat() && width >= 3) {
        item.normals = tuplesOf(points, i, 3);
    } else if (attribute.getName() == "color" && width >= 3) {
        item.colours = tuplesOf(points, i, std::min<std::size_t>(width, 4));
    } else if (width == 1) {
        SceneField field{attribute.getName(), tuplesOf(points, i, 1)};
        field.areLabels = lookLikeCategories(field.name, field.values.numbers);
        item.addField(field);
    }
}

} // namespace

std::optional<ItemUpdate> pointSetItem(const PointSet& points)
{
    const VertexDescriptor& layout = points.getDescr();
    if (!layout.providesAttribute("position"))
        return {};
    const unsigned int position = layout.getIndex("position");
    if (!layout.getAttribute(position).isFloat() || layout.getAttribute(position).getNumComponents() < 3)
        return {};
    ItemUpdate item;
    item.shape.emplace();
    item.shape->points = tuplesOf(points, position, 3);
    for (unsigned int i = 0; i < layout.getNumAttribs(); ++i)
        if (layout.getIndex(layout.getAttribute(i).getName()) == i) // of two of one name the first one counts
            take(item, points, i);
    return item;
}

} // namespace tavo
