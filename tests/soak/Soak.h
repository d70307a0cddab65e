#pragma once

#include <QElapsedTimer>

namespace vireo_soak {

// How long a test does random steps, as the program's command line says:
//
//   --seed N      which steps; the same number makes the same steps
//   --steps N     how many
//   --seconds N   for how long, in place of that
//
// Without options there are few steps, always the same. A QCoreApplication must live, since it has the command line.
// The random seed is printed at the start, and the number of steps and the time in the end; where the test failed, also
// how to have the same steps again.
//
//     Soak soak;
//     std::mt19937 random(soak.getSeed());
//     while (soak.hasNext())
//         ... a step ...
class Soak
{
public:
    // Throws std::invalid_argument for other options.
    Soak();
    ~Soak();
    Soak(const Soak&) = delete;
    Soak& operator=(const Soak&) = delete;

    unsigned int getSeed() const { return m_Seed; }

    // Whether there is another step: there is none once the running test has failed.
    bool hasNext();

private:
    void readOptions();

    unsigned int m_Seed = 1;
    unsigned int m_MostSteps = 300;
    qint64 m_MostMilliseconds = 0; // 0 where the steps are limited
    unsigned int m_NumSteps = 0;
    QElapsedTimer m_SinceStart;
};

} // namespace vireo_soak
