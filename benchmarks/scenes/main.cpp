#include "benchmarks/scenes/clouds.h"
#include "benchmarks/support/Program.h"

int main(int argc, char** argv)
{
    using namespace vireo_bench;
    Program program(argc, argv);
    addFrames();
    addRefinement();
    addPicks();
    addVolumes();
    return program.run();
}
