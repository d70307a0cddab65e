#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/View.h"
#include "benchmarks/support/inputs.h"
#include "benchmarks/works.h"
#include "vireo/context/SavedState.h"
#include "vireo/volume/SliceVolumeRenderer.h"

#include <GL/glu.h>

namespace vireo_bench {

namespace {

using tavo::RegularVolume;
using tavo::RGBA8;
using tavo::StaticVector;
using tavo::Vector3f;
using Names = std::vector<GLuint>;

const std::array<Vector3f, 3> ALONG_EACH_AXIS = {Vector3f(1, 0, 0), Vector3f(0, 1, 0), Vector3f(0, 0, 1)};

// The samples of a volume of one channel, in memory, as bare programs have them.
const float* samplesOf(const RegularVolume& volume)
{
    return reinterpret_cast<const float*>(volume.getPointSet()->getData());
}

std::size_t numSamplesAlong(const RegularVolume& volume, unsigned int axis)
{
    return static_cast<std::size_t>(volume.getExtends()[axis]);
}

// The axes across a stack, of which the first one runs along the rows of its slices.
unsigned int uAcross(unsigned int axis)
{
    return axis == 0 ? 1 : 0;
}

unsigned int vAcross(unsigned int axis)
{
    return axis == 2 ? 1 : 2;
}

// The slices of a volume across an axis, as they lie in memory.
class Slices
{
public:
    Slices(const RegularVolume& volume, unsigned int axis)
        : m_Samples(samplesOf(volume))
        , m_Axis(axis)
        , m_Count(numSamplesAlong(volume, axis))
        , m_Width(numSamplesAlong(volume, uAcross(axis)))
        , m_Height(numSamplesAlong(volume, vAcross(axis)))
        , m_Steps{1, numSamplesAlong(volume, 0), numSamplesAlong(volume, 0) * numSamplesAlong(volume, 1)}
    {}

    std::size_t count() const { return m_Count; }
    std::size_t width() const { return m_Width; }
    std::size_t height() const { return m_Height; }

    const float* find(std::size_t slice) const { return m_Samples + slice * m_Steps[m_Axis]; }
    std::size_t sampleStep() const { return m_Steps[uAcross(m_Axis)]; }
    std::size_t rowStep() const { return m_Steps[vAcross(m_Axis)]; }

private:
    const float* m_Samples;
    unsigned int m_Axis;
    std::size_t m_Count;
    std::size_t m_Width;
    std::size_t m_Height;
    std::array<std::size_t, 3> m_Steps;
};

// The same, to be read in ascending order. Across X, each sample of a slice lies in a cache line of its own: sixteen
// slices, which share the lines, are fetched at once, and their lines are asked for ahead. Asking ahead for the rows of
// other slices takes off nothing.
class FetchedSlices : public Slices
{
public:
    FetchedSlices(const RegularVolume& volume, unsigned int axis)
        : Slices(volume, axis)
        , m_IsAcrossX(axis == 0)
    {}

    const float* find(std::size_t slice)
    {
        if (!m_IsAcrossX)
            return Slices::find(slice);
        if (slice % NUM_TOGETHER == 0)
            fetchFrom(slice);
        return &m_Fetched[slice % NUM_TOGETHER * distance()];
    }
    static constexpr std::size_t sampleStep() { return 1; }
    std::size_t rowStep() const { return m_IsAcrossX ? width() : Slices::rowStep(); }

private:
    static constexpr std::size_t NUM_TOGETHER = 16;
    static constexpr std::size_t NUM_LINES_AHEAD = 16;

    // Between fetched slices: not their size, which may be a power of two, of which caches keep only a few.
    std::size_t distance() const { return width() * height() + NUM_TOGETHER; }

    void fetchFrom(std::size_t slice)
    {
        const std::size_t numFetched = std::min(NUM_TOGETHER, count() - slice);
        const std::size_t size = width() * height();
        m_Fetched.resize(NUM_TOGETHER * distance());
        float* const to = m_Fetched.data();
        const float* from = Slices::find(slice);
        for (std::size_t i = 0; i < size; ++i, from += count()) {
            const float* const ahead = from + NUM_LINES_AHEAD * count();
            __builtin_prefetch(ahead);
            __builtin_prefetch(ahead + NUM_TOGETHER - 1); // may be in another line
            for (std::size_t fetched = 0; fetched < numFetched; ++fetched)
                to[fetched * distance() + i] = from[fetched];
        }
    }

    bool m_IsAcrossX;
    std::vector<float> m_Fetched;
};

// The transfer function of a bare program: called for each sample, as an application hands it to a renderer, or
// compiled into the loop.
class CalledFunction
{
public:
    RGBA8 operator()(float density) { return m_Map(&m_Window, StaticVector<float, 1>(density)); }

private:
    DensityWindow m_Window;
    RegularVolume::Mapping<1> volatile m_Map = DensityWindow::map; // not to be seen through by the compiler
};

class InlinedFunction
{
public:
    RGBA8 operator()(float density) { return DensityWindow().look(density); }
};

template <typename Function, typename SlicesOfAxis>
void colourSlice(SlicesOfAxis& slices, std::size_t slice, RGBA8* texels, std::size_t rowLength)
{
    Function colourOf;
    const float* samples = slices.find(slice);
    // Which the texels might overwrite, for all that the compiler knows.
    const std::size_t width = slices.width();
    const std::size_t step = slices.sampleStep();
    for (std::size_t row = 0; row < slices.height(); ++row, samples += slices.rowStep(), texels += rowLength)
        for (std::size_t i = 0; i < width; ++i)
            texels[i] = colourOf(samples[i * step]);
}

void setSliceParameters()
{
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
}

void uploadSlice(GLint internalFormat, std::size_t width, std::size_t height, const RGBA8* texels)
{
    glTexImage2D(GL_TEXTURE_2D, 0, internalFormat, static_cast<GLsizei>(width), static_cast<GLsizei>(height), 0,
        GL_RGBA, GL_UNSIGNED_BYTE, texels);
}

GLuint newTexture()
{
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    return name;
}

// One texture a slice, of the slice's size.
template <typename Function, typename SlicesOfAxis = FetchedSlices>
void makeStack(const RegularVolume& volume, unsigned int axis, Names& names)
{
    SlicesOfAxis slices(volume, axis);
    std::vector<RGBA8> texels(slices.width() * slices.height());
    for (std::size_t slice = 0; slice < slices.count(); ++slice) {
        colourSlice<Function>(slices, slice, texels.data(), slices.width());
        names.push_back(newTexture());
        setSliceParameters();
        uploadSlice(GL_RGBA8, slices.width(), slices.height(), texels.data());
    }
}

// The same in sizes that are powers of two, each image in the texture before the one that is made for it, as
// Tex2dVolumeRenderer has it.
template <typename Function, typename SlicesOfAxis = FetchedSlices>
void makePaddedStack(const RegularVolume& volume, unsigned int axis, Names& names)
{
    SlicesOfAxis slices(volume, axis);
    const std::size_t paddedWidth = std::bit_ceil(slices.width());
    const std::size_t paddedHeight = std::bit_ceil(slices.height());
    std::vector<RGBA8> texels(paddedWidth * paddedHeight, tavo::NULL_VECTOR4UB);
    for (std::size_t slice = 0; slice < slices.count(); ++slice) {
        colourSlice<Function>(slices, slice, texels.data(), paddedWidth);
        setSliceParameters();
        uploadSlice(4, paddedWidth, paddedHeight, texels.data());
        names.push_back(newTexture());
    }
}

// A sum over all texels, in which each place counts differently.
void addTexels(GLuint name, std::uint64_t& sum)
{
    GLint width = 0;
    GLint height = 0;
    glBindTexture(GL_TEXTURE_2D, name);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    std::vector<std::uint32_t> texels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    if (!texels.empty())
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
    for (const std::uint32_t texel : texels)
        sum = sum * 31 + texel;
}

Bytes checksum(const Names& names)
{
    std::uint64_t sum = names.size();
    for (const GLuint name : names)
        addTexels(name, sum);
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&sum);
    return {bytes, bytes + sizeof sum};
}

// Makes the three stacks of a volume.
class Preparation : public Contestant
{
public:
    explicit Preparation(RegularVolume& volume)
        : m_Volume(volume)
    {}
    void prepare() override
    {
        View::context();
        glBindTexture(GL_TEXTURE_2D, 0);
    }
    void run() override
    {
        for (unsigned int axis = 0; axis < 3; ++axis)
            make(axis);
        glFinish();
    }
    Bytes result() override { return checksum(names()); }

protected:
    virtual void make(unsigned int axis) = 0;
    virtual const Names& names() const = 0;
    RegularVolume& volume() { return m_Volume; }

private:
    RegularVolume& m_Volume;
};

// A renderer that is asked to make its textures without drawing.
template <typename Renderer>
class Preparing : public Renderer
{
public:
    void prepareAlong(RegularVolume& volume, const Vector3f& direction)
    {
        this->prepareTextures(&volume, direction, {CHANNEL}, DensityWindow::map, &m_Window);
    }
    const Names& names() const { return this->textureNames.front(); }

    // Another window by turns.
    void changeWindow()
    {
        m_Window.black = 90 - m_Window.black;
        this->invalidate();
    }

private:
    DensityWindow m_Window;
};

class SliceRendererPreparation : public Preparation
{
public:
    using Preparation::Preparation;
    void cleanUp() override { m_Renderer.disposeTextures(); }

protected:
    void make(unsigned int axis) override { m_Renderer.prepareAlong(volume(), ALONG_EACH_AXIS[axis]); }
    const Names& names() const override { return m_Renderer.names(); }

    Preparing<tavo::SliceVolumeRenderer> m_Renderer;
};

// Only what is seen along a direction.
class StackPreparation : public SliceRendererPreparation
{
public:
    StackPreparation(RegularVolume& volume, const Vector3f& direction)
        : SliceRendererPreparation(volume)
        , m_Direction(direction)
    {}
    void run() override
    {
        m_Renderer.prepareAlong(volume(), m_Direction);
        glFinish();
    }
    Bytes result() override { return {}; }

private:
    Vector3f m_Direction;
};

class ChangedStackPreparation : public StackPreparation
{
public:
    ChangedStackPreparation(RegularVolume& volume, const Vector3f& direction)
        : StackPreparation(volume, direction)
    {
        View::context();
        ChangedStackPreparation::run();
    }
    ~ChangedStackPreparation() override
    {
        View::context();
        m_Renderer.disposeTextures();
    }
    void run() override
    {
        m_Renderer.changeWindow();
        StackPreparation::run();
    }
    void cleanUp() override {}
};

class TablePreparation : public SliceRendererPreparation
{
public:
    explicit TablePreparation(RegularVolume& volume)
        : SliceRendererPreparation(volume)
    {
        m_Renderer.setTableSize(tableSize(volume));
    }

private:
    // About as many entries as vireo-view has, and one for each density that there is: those of the head are whole
    // numbers.
    static unsigned int tableSize(const RegularVolume& volume)
    {
        const float* const samples = samplesOf(volume);
        const auto [min, max] = std::minmax_element(samples, samples + volume.getPointSet()->getNumPoints());
        return 16 * static_cast<unsigned int>(*max - *min) + 1;
    }
};

class Tex2dRendererPreparation : public Preparation
{
public:
    using Preparation::Preparation;
    void cleanUp() override { m_Renderer.disposeTextures(); }

protected:
    void make(unsigned int axis) override
    {
        if (axis == 0) // it makes all three at once
            m_Renderer.prepareAlong(volume(), ALONG_EACH_AXIS[axis]);
    }
    const Names& names() const override { return m_Renderer.names(); }

private:
    Preparing<tavo::Tex2dVolumeRenderer> m_Renderer;
};

class BarePreparation : public Preparation
{
public:
    using MakeStack = void (*)(const RegularVolume& volume, unsigned int axis, Names& names);

    BarePreparation(RegularVolume& volume, MakeStack makeStack)
        : Preparation(volume)
        , m_MakeStack(makeStack)
    {}
    void cleanUp() override
    {
        glDeleteTextures(static_cast<GLsizei>(m_Names.size()), m_Names.data());
        m_Names.clear();
    }

protected:
    void make(unsigned int axis) override { m_MakeStack(volume(), axis, m_Names); }
    const Names& names() const override { return m_Names; }

private:
    MakeStack m_MakeStack;
    Names m_Names;
};

// Draws a volume in a square view, as it is seen along a direction.
class Drawing : public Contestant
{
public:
    Drawing(RegularVolume& volume, int size, const Vector3f& direction)
        : m_Volume(volume)
        , m_Size(size)
        , m_Direction(direction)
    {}

    void prepare() override
    {
        view();
        loadMatrices();
    }
    void run() override
    {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        draw();
        glFinish();
    }
    Bytes result() override { return view().pixels(); }

protected:
    virtual void draw() = 0;
    virtual View& view() { return View::ofSize(m_Size, m_Size); }
    int size() const { return m_Size; }
    RegularVolume& volume() const { return m_Volume; }
    const Vector3f& direction() const { return m_Direction; }

private:
    void loadMatrices() const
    {
        constexpr double FAR_AWAY = 500;
        const tavo::Box3f& box = m_Volume.getBoundingBox();
        const Vector3f middle = (box.getMin() + box.getMax()) * 0.5f;
        const bool isUpright = m_Direction[0] != 0 || m_Direction[1] != 0;
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(26, 1, FAR_AWAY / 2, FAR_AWAY * 2);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(0, 0, 0, m_Direction[0], m_Direction[1], m_Direction[2], 0, isUpright ? 0 : 1, isUpright ? 1 : 0);
        const Vector3f eye = middle - m_Direction * static_cast<float>(FAR_AWAY);
        glTranslatef(-eye[0], -eye[1], -eye[2]);
    }

    RegularVolume& m_Volume;
    int m_Size;
    Vector3f m_Direction;
};

template <typename Renderer>
class RendererDrawing : public Drawing
{
public:
    using Drawing::Drawing;
    ~RendererDrawing() override { m_Renderer.disposeTextures(); }

protected:
    void draw() override { m_Renderer.drawVolume(&volume(), direction(), CHANNEL, DensityWindow::map, &m_Window); }

    Renderer m_Renderer;

private:
    DensityWindow m_Window;
};

// Draws in a context in which nobody has made textures before: only there are its own what it takes them for.
class Tex2dRendererDrawing : public RendererDrawing<tavo::Tex2dVolumeRenderer>
{
public:
    using RendererDrawing::RendererDrawing;
    ~Tex2dRendererDrawing() override
    {
        Tex2dRendererDrawing::view();
        m_Renderer.disposeTextures();
    }

protected:
    View& view() override { return m_View.inSize(size(), size()); }

private:
    View m_View;
};

class BareDrawing : public Drawing
{
public:
    // Its slices in textures of their size, or in textures that are padded to powers of two.
    BareDrawing(RegularVolume& volume, int size, const Vector3f& direction, bool isPadded)
        : Drawing(volume, size, direction)
        , m_Axis(axisAlong(direction))
    {
        BareDrawing::view();
        if (!isPadded) {
            makeStack<InlinedFunction>(volume, m_Axis, m_Names);
            return;
        }
        m_Names.push_back(newTexture()); // for the first image; the last name has none
        makePaddedStack<InlinedFunction>(volume, m_Axis, m_Names);
        m_MaxS = shareInPadded(numSamplesAlong(volume, uAcross(m_Axis)));
        m_MaxT = shareInPadded(numSamplesAlong(volume, vAcross(m_Axis)));
    }
    ~BareDrawing() override
    {
        BareDrawing::view();
        glDeleteTextures(static_cast<GLsizei>(m_Names.size()), m_Names.data());
    }

protected:
    void draw() override
    {
        glPushAttrib(tavo::ALL_ATTRIBUTE_BITS);
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glEnable(GL_TEXTURE_2D);
        glDepthMask(GL_FALSE);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        const bool isSeenFromBelow = direction()[m_Axis] < 0;
        for (std::size_t i = 0; i < numSlices(); ++i)
            drawSlice(isSeenFromBelow ? i : numSlices() - 1 - i);
        glPopAttrib();
    }

private:
    static unsigned int axisAlong(const Vector3f& direction)
    {
        unsigned int axis = 0;
        for (const unsigned int other : {1u, 2u})
            if (std::abs(direction[other]) > std::abs(direction[axis]))
                axis = other;
        return axis;
    }

    static float shareInPadded(std::size_t count)
    {
        return static_cast<float>(count) / static_cast<float>(std::bit_ceil(count));
    }

    std::size_t numSlices() const { return numSamplesAlong(volume(), m_Axis); }

    void drawSlice(std::size_t slice) const
    {
        const Vector3f& min = volume().getBoundingBox().getMin();
        const Vector3f& max = volume().getBoundingBox().getMax();
        const float part = static_cast<float>(slice) / static_cast<float>(numSlices());
        const float p = min[m_Axis] + (max[m_Axis] - min[m_Axis]) * part;
        const unsigned int u = uAcross(m_Axis);
        const unsigned int v = vAcross(m_Axis);
        Vector3f corner;
        corner[m_Axis] = p;
        glBindTexture(GL_TEXTURE_2D, m_Names[slice]);
        glBegin(GL_QUADS);
        for (const auto& [s, t] : {std::pair(0.0f, 0.0f), {0.0f, m_MaxT}, {m_MaxS, m_MaxT}, {m_MaxS, 0.0f}}) {
            corner[u] = s == 0 ? min[u] : max[u];
            corner[v] = t == 0 ? min[v] : max[v];
            glTexCoord2f(s, t);
            glVertex3fv(corner.data());
        }
        glEnd();
    }

    unsigned int m_Axis;
    Names m_Names;
    float m_MaxS = 1;
    float m_MaxT = 1;
};

template <typename Kind, typename... Arguments>
std::function<std::unique_ptr<Contestant>()> with(RegularVolume& volume, Arguments... arguments)
{
    return [&volume, arguments...] { return std::make_unique<Kind>(volume, arguments...); };
}

const char* const AT_ONCE = "floor, sixteen slices at once";
const char* const INLINED = "floor, function inlined";
const char* const INLINED_AT_ONCE = "floor, sixteen slices at once, function inlined";

// The same without ratios to reach.
Comparison ofInterest(Comparison comparison)
{
    for (Entry& entry : comparison.entries)
        entry.ratioToReach.reset();
    return comparison;
}

} // namespace

Comparison prepareBySliceRenderer(const std::string& name, RegularVolume& volume)
{
    return {"prepare " + name + ", SliceVolumeRenderer",
        {{"vireo", with<SliceRendererPreparation>(volume)},
            {"floor", with<BarePreparation>(volume, makeStack<CalledFunction, Slices>), 1.10},
            {AT_ONCE, with<BarePreparation>(volume, makeStack<CalledFunction>)},
            {INLINED_AT_ONCE, with<BarePreparation>(volume, makeStack<InlinedFunction>)}}};
}

Comparison prepareByTable(const std::string& name, RegularVolume& volume)
{
    return {"prepare " + name + ", SliceVolumeRenderer with a table",
        {{"vireo", with<TablePreparation>(volume)},
            {INLINED, with<BarePreparation>(volume, makeStack<InlinedFunction, Slices>), 1.10},
            {INLINED_AT_ONCE, with<BarePreparation>(volume, makeStack<InlinedFunction>)}}};
}

Comparison prepareByTex2dRenderer(const std::string& name, RegularVolume& volume)
{
    return {"prepare " + name + ", Tex2dVolumeRenderer",
        {{"vireo", with<Tex2dRendererPreparation>(volume)},
            {"floor", with<BarePreparation>(volume, makePaddedStack<CalledFunction, Slices>), 1.10},
            {AT_ONCE, with<BarePreparation>(volume, makePaddedStack<CalledFunction>)},
            {INLINED_AT_ONCE, with<BarePreparation>(volume, makePaddedStack<InlinedFunction>)}}};
}

std::unique_ptr<Contestant> stackBySliceRenderer(RegularVolume& volume, const Vector3f& direction)
{
    return std::make_unique<StackPreparation>(volume, direction);
}

std::unique_ptr<Contestant> changedStackBySliceRenderer(RegularVolume& volume, const Vector3f& direction)
{
    return std::make_unique<ChangedStackPreparation>(volume, direction);
}

Comparison drawBySliceRenderer(const std::string& name, RegularVolume& volume, int size, const Vector3f& direction)
{
    return {"draw " + name + ", SliceVolumeRenderer",
        {{"vireo", with<RendererDrawing<tavo::SliceVolumeRenderer>>(volume, size, direction)},
            {"floor", with<BareDrawing>(volume, size, direction, false), 1.02}}};
}

Comparison drawByTex2dRenderer(const std::string& name, RegularVolume& volume, int size, const Vector3f& direction)
{
    return {"draw " + name + ", Tex2dVolumeRenderer",
        {{"vireo", with<Tex2dRendererDrawing>(volume, size, direction)},
            {"floor", with<BareDrawing>(volume, size, direction, true), 1.02}}};
}

void addVolumeWorks()
{
    for (const auto& prepare : {prepareBySliceRenderer, prepareByTable, prepareByTex2dRenderer}) {
        add(prepare("the head's three stacks", head()));
        add(ofInterest(prepare("the three stacks of 64 x 64 x 64 samples", headInCube(64))));
    }
    const std::vector<std::pair<std::string, Vector3f>> directions = {{"+X", {1, 0, 0}}, {"-X", {-1, 0, 0}},
        {"+Y", {0, 1, 0}}, {"-Y", {0, -1, 0}}, {"+Z", {0, 0, 1}}, {"-Z", {0, 0, -1}},
        {"(0.6, -0.64, 0.48)", {0.6f, -0.64f, 0.48f}}};
    for (const auto& draw : {drawBySliceRenderer, drawByTex2dRenderer})
        for (const int size : {512, 1024})
            for (const auto& [name, direction] : directions) {
                const std::string pixels = std::to_string(size) + " x " + std::to_string(size);
                add(draw("the head, " + pixels + ", along " + name, head(), size, direction));
            }
}

} // namespace vireo_bench
