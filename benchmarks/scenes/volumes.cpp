#include <QApplication>
#include <optional>

#include "benchmarks/scenes/BareCloud.h"
#include "benchmarks/scenes/clouds.h"
#include "benchmarks/scenes/headVolume.h"
#include "benchmarks/works.h"
#include "tavo/base/objects/PException.h"
#include "vireo/context/SavedState.h"
#include "vireo/show/scenes/SceneRenderer.h"
#include "vireo/show/scenes/SceneView.h"

namespace vireo_bench {

namespace {

// A scene of the head, in a picture of one pixel: all is there that it takes, and hardly anything is drawn.
class HeadScene
{
public:
    explicit HeadScene(bool mayBeCoarse = false)
    {
        if (!m_Context)
            throw tavo::PException("there is no context");
        m_Look.mayBeCoarse = mayBeCoarse;
    }
    void send(tavo::ItemUpdate item)
    {
        tavo::SceneUpdate update;
        update.items["head"] = std::move(item);
        m_Model.apply(update);
        m_Camera.fit(m_Model.box(), {1, 1});
    }
    void draw() { m_Renderer.draw(m_Camera, {1, 1}, m_Look); }

private:
    std::shared_ptr<tavo::SceneContext> m_Context = tavo::SceneContext::get();
    tavo::SceneModel m_Model{"scene"};
    tavo::SceneRenderer m_Renderer{m_Context, m_Model};
    tavo::SceneCamera m_Camera = cameraOfHead();
    tavo::SceneLook m_Look{Qt::black, Qt::white, QFont(), 1, false, false};
};

class Textures : public Contestant
{
public:
    enum class Kind
    {
        None,
        Coarse,
        Whole
    };

    explicit Textures(Kind kind)
        : m_Kind(kind)
    {}
    void prepare() override
    {
        m_Scene.emplace(m_Kind == Kind::Coarse);
        m_Scene->draw(); // of nothing
    }
    void run() override
    {
        if (m_Kind != Kind::None)
            m_Scene->send(headVolume());
        m_Scene->draw();
    }
    void cleanUp() override { m_Scene.reset(); }

private:
    std::shared_ptr<tavo::SceneContext> m_Context = tavo::SceneContext::get(); // which lives on between the runs
    Kind m_Kind;
    std::optional<HeadScene> m_Scene;
};

class ChangedLook : public Contestant
{
public:
    ChangedLook()
    {
        m_Scene.send(headVolume());
        m_Scene.draw();
    }
    void prepare() override { m_Window.black = 90 - m_Window.black; }
    void run() override
    {
        m_Scene.send(headLook(m_Window));
        m_Scene.draw();
    }

private:
    DensityWindow m_Window;
    HeadScene m_Scene;
};

// What the textures cannot do without: each sample read once in the order of the slices, as a number of two bytes.
class BareTextures : public Contestant
{
public:
    void run() override
    {
        const tavo::SceneContext::Scope scope(*m_Context);
        const tavo::Vector3i& size = head().getExtends(); // seen along y
        const auto width = static_cast<std::size_t>(size[0]);
        const auto height = static_cast<std::size_t>(size[2]);
        const auto* const samples = reinterpret_cast<const float*>(head().getPointSet()->getData());
        std::vector<std::uint16_t> texels(width * height);
        m_Names.resize(static_cast<std::size_t>(size[1]));
        glGenTextures(size[1], m_Names.data());
        const tavo::SavedClientAttributes before(GL_CLIENT_PIXEL_STORE_BIT);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        for (std::size_t y = 0; y < m_Names.size(); ++y) {
            for (std::size_t z = 0; z < height; ++z)
                for (std::size_t x = 0; x < width; ++x)
                    texels[z * width + x] =
                        static_cast<std::uint16_t>(samples[(z * m_Names.size() + y) * width + x] * 256);
            glBindTexture(GL_TEXTURE_2D, m_Names[y]);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
            glTexImage2D(
                GL_TEXTURE_2D, 0, GL_LUMINANCE16, size[0], size[2], 0, GL_LUMINANCE, GL_UNSIGNED_SHORT, texels.data());
        }
        glFinish();
    }
    void cleanUp() override
    {
        const tavo::SceneContext::Scope scope(*m_Context);
        glDeleteTextures(static_cast<GLsizei>(m_Names.size()), m_Names.data());
    }

private:
    std::shared_ptr<tavo::SceneContext> m_Context = tavo::SceneContext::get();
    std::vector<GLuint> m_Names;
};

// A view of a window, from when something is sent until it is painted for the first time.
class FirstPicture : public Contestant
{
public:
    explicit FirstPicture(bool isOfHead)
        : m_IsOfHead(isOfHead)
    {}
    void prepare() override
    {
        m_View = std::make_unique<tavo::SceneView>("scene");
        m_View->setAttribute(Qt::WA_ShowWithoutActivating);
        m_View->setWindowFlags(Qt::Window | Qt::BypassWindowManagerHint);
        m_View->resize(VIEW_SIZE);
        m_View->show();
        QApplication::processEvents();
    }
    void run() override
    {
        tavo::SceneUpdate update;
        if (m_IsOfHead)
            update.items["head"] = headVolume();
        m_View->apply(update);
        m_View->repaint();
    }
    void cleanUp() override { m_View.reset(); }

private:
    std::shared_ptr<tavo::SceneContext> m_Context = tavo::SceneContext::get();
    bool m_IsOfHead;
    std::unique_ptr<tavo::SceneView> m_View;
};

} // namespace

void addVolumes()
{
    add({"textures of the head in view, from its samples",
        {{"vireo", [] { return std::make_unique<Textures>(Textures::Kind::Whole); }},
            {"SliceVolumeRenderer", [] { return stackBySliceRenderer(head(), VIEW_OF_HEAD); }, 0.65, anyResult},
            {"bare conversion and upload", std::make_unique<BareTextures>, std::nullopt, anyResult}}});
    add({"the same after a changed transfer function",
        {{"vireo", std::make_unique<ChangedLook>},
            {"SliceVolumeRenderer", [] { return changedStackBySliceRenderer(head(), VIEW_OF_HEAD); }, 0.5,
                anyResult}}});
    constexpr double AT_ONCE = 0.1;
    add({"coarse textures of the head, which come first",
        {{"vireo", [] { return std::make_unique<Textures>(Textures::Kind::Coarse); }},
            {"an empty scene", [] { return std::make_unique<Textures>(Textures::Kind::None); }, 1.0, anyResult,
                AT_ONCE}}});
    add({"first picture of the head in a view, which may be coarse",
        {{"vireo", [] { return std::make_unique<FirstPicture>(true); }},
            {"an empty scene", [] { return std::make_unique<FirstPicture>(false); }, 1.0, anyResult, AT_ONCE}}});
}

} // namespace vireo_bench
