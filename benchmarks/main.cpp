#include "benchmarks/support/Program.h"
#include "benchmarks/works.h"

int main(int argc, char** argv)
{
    using namespace vireo_bench;
    Program program(argc, argv);
    addVolumeWorks();
    addPointWorks();
    addCurveWorks();
    addTextureWorks();
    addRenderTextureWorks();
    addLightingWorks();
    addGeometryWorks();
    addObjectWorks();
    addVertexWorks();
    return program.run();
}
