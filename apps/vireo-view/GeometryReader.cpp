#include "apps/vireo-view/GeometryReader.h"

#include <new>

#include "apps/vireo-view/GltfReader.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/ObjReader.h"
#include "apps/vireo-view/OffReader.h"
#include "apps/vireo-view/PlyReader.h"
#include "apps/vireo-view/PointTableReader.h"
#include "apps/vireo-view/StlReader.h"

namespace vireo_view {

namespace {

GeometryFile read(InputBuffer& input, FileFormat format)
{
    switch (format) {
    case FileFormat::PLY: return readPly(input);
    case FileFormat::OFF: return readOff(input);
    case FileFormat::OBJ: return readObj(input);
    case FileFormat::STL: return readStl(input);
    case FileFormat::GLTF: return readGltf(input);
    default: return readPointTable(input);
    }
}

} // namespace

GeometryFile readGeometry(const std::filesystem::path& file, FileFormat format, const Progress& progress)
{
    const bool isText = format == FileFormat::XYZ || format == FileFormat::PTS || format == FileFormat::OBJ;
    const auto lineEnds = isText ? InputBuffer::LineEnds::UNIVERSAL : InputBuffer::LineEnds::AS_THEY_ARE;
    InputBuffer input(file, lineEnds, progress);
    try {
        GeometryFile geometry = read(input, format);
        input.checkEnd();
        return geometry;
    } catch (const std::bad_alloc&) {
        throw InputError(file, "does not fit into memory");
    } catch (const InputError&) {
        input.checkEnd(); // a line that was cut off is not the file's fault
        throw;
    }
}

} // namespace vireo_view
