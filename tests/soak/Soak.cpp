#include "tests/soak/Soak.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>
#include <cstdio>
#include <gtest/gtest.h>
#include <stdexcept>

namespace vireo_soak {

namespace {

unsigned int numberOf(const QString& option, const QString& text)
{
    bool isNumber = false;
    const unsigned int number = text.toUInt(&isNumber);
    if (!isNumber)
        throw std::invalid_argument(option.toStdString() + " needs a number, not '" + text.toStdString() + "'");
    return number;
}

} // namespace

Soak::Soak()
{
    readOptions();
    std::printf("seed %u\n", m_Seed);
    std::fflush(stdout);
    m_SinceStart.start();
}

Soak::~Soak()
{
    std::printf("%u steps in %.1f s\n", m_NumSteps, static_cast<double>(m_SinceStart.elapsed()) / 1000);
    if (testing::Test::HasFailure())
        std::printf("the last one failed; the same again: %s --seed %u --steps %u\n",
            qPrintable(QFileInfo(QCoreApplication::applicationFilePath()).fileName()), m_Seed, m_NumSteps);
    std::fflush(stdout);
}

void Soak::readOptions()
{
    const QStringList arguments = QCoreApplication::arguments();
    for (int i = 1; i < arguments.size(); i += 2) {
        const QString& option = arguments[i];
        const unsigned int number = numberOf(option, arguments.value(i + 1));
        if (option == "--seed")
            m_Seed = number;
        else if (option == "--steps")
            m_MostSteps = number;
        else if (option == "--seconds")
            m_MostMilliseconds = qint64{1000} * number;
        else
            throw std::invalid_argument("unknown option '" + option.toStdString() + "'");
    }
}

bool Soak::hasNext()
{
    const bool isOver =
        m_MostMilliseconds > 0 ? m_SinceStart.elapsed() >= m_MostMilliseconds : m_NumSteps >= m_MostSteps;
    if (isOver || testing::Test::HasFailure())
        return false;
    ++m_NumSteps;
    return true;
}

} // namespace vireo_soak
