#include "benchmarks/peers/pictures.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace vireo_bench {

namespace {

unsigned char brightness(const Bytes& pixels, std::size_t i)
{
    return std::max({pixels[i], pixels[i + 1], pixels[i + 2]});
}

// Of the pixels' brightness, which is 0 to 255.
double meanDifference(const Bytes& first, const Bytes& second)
{
    double sum = 0;
    for (std::size_t i = 0; i < first.size(); i += 4)
        sum += std::abs(brightness(first, i) - brightness(second, i));
    return sum / static_cast<double>(first.size() / 4);
}

double meanBrightness(const Bytes& pixels)
{
    return meanDifference(pixels, Bytes(pixels.size()));
}

// The share of the pixels that are not black.
double litShare(const Bytes& pixels)
{
    std::size_t numLit = 0;
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        numLit += brightness(pixels, i) > 16 ? 1 : 0;
    return static_cast<double>(numLit) / static_cast<double>(pixels.size() / 4);
}

// Whether two show as much as each other, about as brightly, and anything at all.
bool areAlike(const Bytes& first, const Bytes& other)
{
    const auto isNear = [](double ratio) { return ratio > 0.8 && ratio < 1.25; };
    return first.size() == other.size() && isNear(litShare(other) / litShare(first)) &&
           isNear(meanBrightness(other) / meanBrightness(first));
}

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

// Draws what was drawn before.
class NextPicture : public Picture
{
public:
    explicit NextPicture(std::unique_ptr<Scene> ofScene)
        : Picture(std::move(ofScene))
    {
        scene().load();
        scene().draw();
        m_First = scene().pixels();
    }
    ~NextPicture() override { scene().unload(); }
    void run() override { scene().draw(); }
    // None if it is not the first one over again: who draws less then, or drew less at first, is not to be compared.
    Bytes result() override
    {
        Bytes picture = Picture::result();
        return isFirst(picture) ? picture : Bytes();
    }

protected:
    bool isFirst(const Bytes& picture) const { return meanDifference(m_First, picture) < 0.5; }

private:
    Bytes m_First;
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
    // That in the changed window, which must be another than the first one, which in turn must come back.
    Bytes result() override
    {
        Bytes changed = Picture::result();
        prepare();
        run();
        return !isFirst(changed) && isFirst(Picture::result()) ? changed : Bytes();
    }

private:
    DensityWindow m_Window;
};

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

Comparison changedPicture(const std::string& name, Subject subject)
{
    return picture<ChangedPicture>(name, subject);
}

} // namespace vireo_bench
