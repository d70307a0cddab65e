#pragma once

#include <array>
#include <cstdint>

#include "vireo/context/GLObject.h"

namespace tavo {

// Colours for a program to look up, in a texture of one dimension, which is clamped at its ends.
class ColourTable : public GLObject
{
public:
    static constexpr std::size_t SIZE = 1024;

    // Red, green, blue and opacity of each.
    using Entries = std::array<std::uint16_t, 4 * SIZE>;

    // Needs the context to be current, as write() and bind() do.
    explicit ColourTable(GLContext& context);
    ~ColourTable() override;
    ColourTable(const ColourTable&) = delete;
    ColourTable& operator=(const ColourTable&) = delete;

    // Leaves it bound on the active unit.
    void write(const Entries& entries);

    void bind(unsigned int unit) const;
    static void unbind(unsigned int unit);

protected:
    void onDeleteContext() override;

private:
    unsigned int m_Name = 0;
};

} // namespace tavo
