#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "vireo/show/scenes/ClipBox.h"
#include "vireo/show/scenes/Matrix4.h"
#include "vireo/show/scenes/SceneBox.h"
#include "vireo/show/scenes/SceneChoices.h"
#include "vireo/show/scenes/SceneItem.h"
#include "vireo/show/scenes/SceneUpdate.h"
#include "vireo/show/volumes/VolumeSurfaces.h"

namespace tavo {

// The items of a scene, by their paths, and where they are.
class SceneModel
{
public:
    // An item in its place: the matrix is that of its branches, from the coordinates that were sent to the scene's.
    struct Placed
    {
        const std::string* path;
        SceneItem* item;
        Matrix4 matrix;
    };

    explicit SceneModel(std::string name)
        : m_Name(std::move(name))
    {}

    // Frees what will be replaced.
    void makeRoom(const Replaced& replaced);

    // Takes over what was sent to the items. Returns whether anything of it waits for its points.
    bool apply(SceneUpdate& update);

    // Whether surfaces of volumes are still to come; takes those that are there, and returns whether any were; waits
    // for them all.
    bool isBusy() const { return m_Surfaces.areBusy(); }
    bool takeSurfaces();
    double progressOfSurfaces() const { return m_Surfaces.progress(); }
    void giveUpSurfaces() { m_Surfaces.giveUp(); }
    void finishSurfaces();

    // Says in the log what waits still, each thing once.
    void sayWhatWaits() const;

    // The same of volumes that have been drawn, with fewer samples than there are, or none.
    void sayWhatIsReduced() const;

    // What a person chooses of the items. It wins over what is sent, then and later.
    const SceneChoices& getChoices() const { return m_Choices; }
    template <typename Choose>
    void choose(Choose choose)
    {
        choose(m_Choices);
        for (auto& [path, item] : m_Items)
            item.choose(m_Choices.of(path));
    }

    std::vector<Placed> visibleItems();

    // What is seen of them.
    ClipBox& getClipBox() { return m_ClipBox; }
    const ClipBox& getClipBox() const { return m_ClipBox; }

    // The same for drawing; none if all is seen, or all but what is in the other one.
    std::optional<SceneBox> drawnClipBox() { return m_ClipBox.isCutOut() ? std::nullopt : m_ClipBox.around(box()); }
    std::optional<SceneBox> drawnCutOut() { return m_ClipBox.isCutOut() ? m_ClipBox.around(box()) : std::nullopt; }

    // By their paths.
    const std::map<std::string, SceneItem>& items() const { return m_Items; }

    // Of all that is visible.
    SceneBox box();

    // Whether any volume that is visible is white where it is most opaque, so that it needs a dark ground.
    bool hasWhiteVolume() const;

private:
    std::string nameOf(const std::string& path) const;
    VolumeSurfaces::Say say() const;
    bool lacksVolume(const SceneItem& surface) const;
    SceneItem& add(const std::string& path);
    void remove(const std::string& branch);
    Matrix4 matrixOf(const std::string& path) const;

    std::string m_Name;
    std::map<std::string, SceneItem> m_Items;
    VolumeSurfaces m_Surfaces;
    SceneChoices m_Choices;
    ClipBox m_ClipBox;
    std::map<std::string, Matrix4> m_Transforms;
    std::size_t m_NumColours = 0;
};

} // namespace tavo
