#include "vireo/show/images/ImageStack.h"

#include <algorithm>

namespace tavo {

bool ImageStack::apply(const ImageUpdate& update)
{
    if (update.pixels)
        m_Layers.assign(1, *update.pixels);
    if (!update.layers.empty() && update.layers.rbegin()->first >= size())
        m_Layers.resize(static_cast<std::size_t>(update.layers.rbegin()->first) + 1);
    for (const auto& [layer, pixels] : update.layers)
        m_Layers[static_cast<std::size_t>(layer)] = pixels;
    if (update.layerNames)
        m_Names = *update.layerNames;
    return update.pixels || update.layers.count(shown()) > 0;
}

int ImageStack::shown() const
{
    return std::clamp(m_Wanted, 0, std::max(size() - 1, 0));
}

bool ImageStack::show(int layer)
{
    const int before = shown();
    if (isStack())
        m_Wanted = std::clamp(layer, 0, size() - 1);
    return shown() != before;
}

const ImagePixels& ImageStack::pixels() const
{
    static const ImagePixels none;
    return m_Layers.empty() ? none : m_Layers[static_cast<std::size_t>(shown())];
}

const std::string& ImageStack::name() const
{
    static const std::string none;
    const auto layer = static_cast<std::size_t>(shown());
    return layer < m_Names.size() ? m_Names[layer] : none;
}

} // namespace tavo
