#pragma once

#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/support/WindowSystem.h"
#include "vireo/displayers/GLEventObject.h"

class QWidget;

namespace tavo {

class DebugSection;

// What an application sends to the debug window in random order, and what a person does there: graphs and clouds, also
// without points or of numbers that are none, objects that throw whenever they are asked for something, or leave GL in
// disorder; names of all kinds; clicks, drags, keys, windows and sections that are resized, closed and opened again,
// pictures. Each step fails the running test where it breaks a rule:
//
// 1. What is sent has a section of its class and name, and there is no other section.
// 2. Whatever objects do, nothing is thrown at the one who sends, and Qt has nothing to warn of.
// 3. An object lives until another one replaces it or its section goes: none is lost.
// 4. The GL context that the application has current stays current.
class RandomSends
{
public:
    explicit RandomSends(unsigned int seed);
    // Closes the window; all objects must have gone then.
    ~RandomSends();
    RandomSends(const RandomSends&) = delete;
    RandomSends& operator=(const RandomSends&) = delete;

    void step();

private:
    unsigned int pick(std::size_t count) { return static_cast<unsigned int>(m_Random() % count); }
    bool chance(unsigned int percent) { return pick(100) < percent; }
    float anyNumber();
    template <unsigned int N>
    std::vector<StaticVector<float, N>> anyPoints();
    RGBA8 anyColour();

    // Null if there is no section, or it has no such widget.
    DebugSection* anySection();
    template <typename Widget>
    Widget* anyWidget(const char* name);
    QWidget* anyView();

    void send();
    void sendGraphs(const std::string& name);
    void sendCloud(const std::string& name);
    void sendTroublemaker(const std::string& name);
    std::function<void()> anyTrouble();

    void clickButton();
    void dragInView();
    void useWheelOrKey();
    void changePanel();
    void changeSection();
    void changeWindow();
    void takePicture();
    void write();

    void check();

    std::mt19937 m_Random;
    // How often each event of a step takes place among a hundred.
    std::discrete_distribution<int> m_Events{40, 14, 10, 8, 5, 9, 6, 4, 4};
    std::set<std::string> m_SentNames; // since the window was made
    int m_NumPointSets = 0;
    QTemporaryDir m_Pictures;
    // Of the application.
    std::unique_ptr<WindowSystem> m_WindowSystem;
    std::unique_ptr<TestContext> m_Context;
};

} // namespace tavo
