#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "vireo/Export.h"
#include "vireo/volume/Tex2dVolumeRenderer.h"

namespace tavo {

// The renderer of volumes for applications: what Tex2dVolumeRenderer draws, in any context, with whatever other
// textures are alive, with several channels, and with volumes that change.
//
//     SliceVolumeRenderer renderer;
//     renderer.setTableSize(4096);
//     ...
//     renderer.drawVolume(&volume, viewDir, "density", &colourOf, &transferFunction); // with every picture
//     ...
//     renderer.invalidate(); // the transfer function was edited
//
// It is the quick one, too: a stack is made when it is first looked along, straight into the size of the texture, which
// is padded only where the driver asks for powers of two, and a changed volume of the same size is written into the
// textures that are there.
//
// What must be current, and what becomes of textures, is said at Tex2dVolumeRenderer. Textures of the application, and
// how it stores and transfers pixels, do not matter; a program, the texture matrix, culling, fog, the alpha test and
// the blend equation are taken as they are. Copies name the same textures, and a copy that draws another volume writes
// it into them. There is no class record of its own: what goes by class records counts a renderer as its base.
class VIREO_EXPORT SliceVolumeRenderer : public Tex2dVolumeRenderer
{
public:
    using Tex2dVolumeRenderer::drawVolume;

    // As Tex2dVolumeRenderer::drawVolume, and bound on the further units are the channels' own textures. The textures
    // are made anew whenever volume, channels, mapping or userData are others than before.
    //
    // Throws std::out_of_range without channels, and PException as prepareTextures does, also if the driver's textures
    // are too small for a slice, or its texture units too few for the channels. Throws PException that names what is
    // missing, before it changes anything of GL, in a context of the core profile and without GL_ARB_multitexture. The
    // renderer can go on being used.
    void drawVolume(RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels, Mapping mapping,
        void* userData) override;

    void disposeTextures() override;

    // Says that samples, or what the mapping answers, have changed, while volume and pointers are the same: the next
    // drawing makes its textures anew. Needs no context.
    void invalidate();

    // Has the mapping called for so many values spread evenly over a channel's range, in place of once for each sample,
    // which then takes the colour of the nearest; with 0, as at first, it is called for each. Of samples that are no
    // numbers the least value's colour is taken. Makes the textures anew. Needs no context.
    void setTableSize(unsigned int numEntries);
    unsigned int getTableSize() const { return m_TableSize; }

    // Has a function called while textures are made, with how many of the stacks' slices are done and how many there
    // are: before the first and after each. It must not draw with this renderer nor dispose of its textures, and must
    // leave the context current and GL's state as it was. An empty function, as at first, is not called. Copies of the
    // renderer have it too.
    using Progress = std::function<void(unsigned int numDone, unsigned int numSlices)>;
    void setProgress(Progress progress) { m_Progress = std::move(progress); }

protected:
    // Makes those textures that the view needs and that are missing or out of date.
    void prepareTextures(RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels,
        Mapping mapping, void* userData) override;

private:
    // What the textures were made of.
    struct Source
    {
        std::uint64_t volumeNumber = 0;
        Vector3i extends;
        std::vector<std::string> channels;
        Mapping mapping = nullptr;
        void* userData = nullptr;

        bool operator==(const Source&) const = default;
    };

    // The colours of a channel's values, evenly from min on; empty for calling the mapping.
    struct Table
    {
        std::vector<RGBA8> colours;
        float min = 0;
        double entriesPerValue = 0;

        RGBA8 look(float value) const;
    };

    void adopt(Source source, const RegularVolume& volume);
    Table makeTable(const RegularVolume& volume, const std::string& channel) const;
    void prepareStack(const RegularVolume& volume, unsigned int axis, unsigned int channel);
    void drawSlices(const RegularVolume& volume, unsigned int axis, int direction) const;

    Source m_Source;
    std::vector<Table> m_Tables;        // of each channel
    std::array<bool, 3> m_IsPrepared{}; // the stack of each axis
    unsigned int m_TableSize = 0;
    Progress m_Progress;
};

} // namespace tavo
