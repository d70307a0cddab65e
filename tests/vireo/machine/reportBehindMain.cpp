// Makes a report in main(), and another one behind it.
#include <cstdio>

#include "vireo/machine/MachineReport.h"

struct AtEndOfProcess
{
    ~AtEndOfProcess() { std::puts(tavo::MachineReport::ofMachine().getText().c_str()); }
};
const AtEndOfProcess atEndOfProcess;

int main()
{
    tavo::MachineReport::ofMachine();
}
