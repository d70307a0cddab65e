#include <vireo/context/Library.h> // where start-up was once: sources that include it there go on building

int main()
{
    tavo::initVireo();
    tavo::shutdownVireo();
}
