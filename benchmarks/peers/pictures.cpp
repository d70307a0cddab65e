#include "benchmarks/peers/pictures.h"

#include <algorithm>

namespace vireo_bench {

namespace {

// A contestant whose result is a picture.
class Picture : public Contestant
{
public:
    explicit Picture(std::unique_ptr<Scene> scene)
        : m_Scene(std::move(scene))
    {}
    Bytes result() override { return m_Scene->pixels(); }

protected:
    Scene& scene() { return *m_Scene; }

private:
    std::unique_ptr<Scene> m_Scene;
};

class FirstPicture : public Picture
{
public:
    using Picture::Picture;
    void run() override
    {
        scene().load();
        scene().draw();
    }
    void cleanUp() override { scene().unload(); }
};

class NextPicture : public Picture
{
public:
    explicit NextPicture(std::unique_ptr<Scene> ofScene)
        : Picture(std::move(ofScene))
    {
        scene().load();
        scene().draw();
    }
    ~NextPicture() override { scene().unload(); }
    void run() override { scene().draw(); }
};

// A picture of the head in another window of densities than before.
class ChangedPicture : public NextPicture
{
public:
    using NextPicture::NextPicture;
    void prepare() override { m_Window.black = 90 - m_Window.black; }
    void run() override
    {
        scene().setWindow(m_Window);
        NextPicture::run();
    }

private:
    DensityWindow m_Window;
};

// The share of the pixels that are not black.
double litShare(const Bytes& pixels)
{
    std::size_t numLit = 0;
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        numLit += std::max({pixels[i], pixels[i + 1], pixels[i + 2]}) > 16 ? 1 : 0;
    return static_cast<double>(numLit) / static_cast<double>(pixels.size() / 4);
}

// Whether two show as much as each other, more or less, and at all.
bool areAlike(const Bytes& first, const Bytes& other)
{
    const double ratio = litShare(other) / litShare(first);
    return ratio > 0.8 && ratio < 1.25;
}

template <typename Kind>
Comparison picture(const std::string& name, Subject subject)
{
    Comparison comparison{name, {}};
    for (const Showing& showing : showingsOf(subject))
        comparison.entries.push_back(
            {showing.name, [make = showing.make] { return std::make_unique<Kind>(make()); }, {}, areAlike});
    return comparison;
}

} // namespace

Comparison firstPicture(const std::string& name, Subject subject)
{
    return picture<FirstPicture>(name, subject);
}

Comparison nextPicture(const std::string& name, Subject subject)
{
    return picture<NextPicture>(name, subject);
}

Comparison changedPicture(const std::string& name)
{
    return picture<ChangedPicture>(name, Subject::HEAD);
}

} // namespace vireo_bench
