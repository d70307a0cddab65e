#include "tests/support/driverVariable.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace tavo {

namespace {

// Wine's drivers find those variables only that Wine itself was started with.
void askWineToStartAgainWith(const std::string& assignment, const char* file)
{
    std::ofstream(file) << assignment;
    std::_Exit(EXIT_SUCCESS);
}

} // namespace

void setDriverVariable(const char* name, const char* value)
{
    const char* const present = std::getenv(name);
    if (present && std::string(present) == value)
        return;
    const std::string assignment = std::string(name) + '=' + value;
    const char* const request = std::getenv("VIREO_START_AGAIN");
    if (request && testing::UnitTest::GetInstance()->test_to_run_count() == 1)
        askWineToStartAgainWith(assignment, request);
    _putenv(assignment.c_str());
}

} // namespace tavo
