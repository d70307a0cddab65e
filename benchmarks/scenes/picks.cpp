#include <random>

#include "benchmarks/scenes/SeenScene.h"
#include "tavo/base/objects/PException.h"
#include "vireo/show/scenes/ScenePicker.h"

namespace vireo_bench {

namespace {

// At another place each time.
class Picking : public SeenScene
{
public:
    using SeenScene::SeenScene;

    void run() override
    {
        const QPoint pixel(static_cast<int>(312 + m_Random() % 400), static_cast<int>(284 + m_Random() % 200));
        m_HasFound = m_Picker.pick(m_Camera, VIEW_SIZE, pixel) || m_HasFound;
    }
    Bytes result() override
    {
        if (!m_HasFound)
            throw tavo::PException("nothing was found");
        return {};
    }

private:
    tavo::ScenePicker m_Picker{m_Context, m_Model};
    std::mt19937 m_Random{1};
    bool m_HasFound = false;
};

// The whole picture, of which one pixel would be asked.
class Drawing : public SeenScene
{
public:
    using SeenScene::SeenScene;

    void run() override { draw(); }
};

template <typename Kind>
std::function<std::unique_ptr<Contestant>()> of(tavo::ItemUpdate (*make)(std::size_t), std::size_t number)
{
    return [=] { return std::make_unique<Kind>(make(number)); };
}

void addPicksIn(const std::string& what, tavo::ItemUpdate (*make)(std::size_t), std::size_t number)
{
    add({"pick in " + what,
        {{"vireo", of<Picking>(make, number)}, {"drawing it", of<Drawing>(make, number), 1.0, anyResult}}});
}

} // namespace

void addPicks()
{
    addPicksIn("a cloud of 10,000 points", cloudOf, 10'000);
    addPicksIn("a cloud of 1,000,000 points", cloudOf, 1'000'000);
    addPicksIn("a cloud of 10,000,000 points", cloudOf, 10'000'000);
    addPicksIn("a surface of 2,000,000 triangles", surfaceOf, 1'000'000);
}

} // namespace vireo_bench
