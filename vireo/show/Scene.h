#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "tavo/base/math/vectors.h"
#include "tavo/points/PointSet.h"
#include "tavo/points/RegularVolume.h"
#include "vireo/show/Export.h"
#include "vireo/show/Grid.h"
#include "vireo/show/Picked.h"
#include "vireo/show/Transformation.h"
#include "vireo/show/Tuples.h"
#include "vireo/show/delivery/Statement.h"

namespace tavo {

struct ViewSlot;

/// A handle of an item of a scene. The operations of Scene that send something return it, so that what is said of the
/// item follows at once:
///
///     const tavo::Item lidar = tavo::scene("world").cloud("lidar", echoes).scalar("height", heights).size(3);
///
/// What is sent here stays for points that are sent later under the same path.
///
/// Colours and numbers belong to points if they are as many as the points: one for each point, vertex, arrow or box.
/// They belong to what is drawn between points if they are as many as that: one for each face of a mesh, each segment,
/// or each stretch of a line from one point to the next, which are then of one colour. A mesh may have as many vertices
/// as faces; the vertices have them then, unless onFaces() says otherwise.
///
/// Colours and numbers that fit neither, and normals that are not as many as the points, wait for what they fit, and
/// are left out meanwhile.
///
/// Of all that gives an item its colours one is shown: what show() says; without it the colours, or else the numbers
/// that came first.
class VIREO_SHOW_EXPORT Item
{
public:
    /// A handle of no item: nothing that is sent to it is shown.
    Item() = default;

    /// A colour for each point, or each face, segment or stretch: red, green and blue, and maybe opacity.
    Item colours(const Colours& values, const Statement& statement = Statement()) const;

    /// A number for each of them, under a name, shown by the colours of a map. NaN is grey.
    Item scalar(std::string_view name, const Numbers& values, const Statement& statement = Statement()) const;

    /// A category for each, under the name "labels", shown by colours that depend on nothing but the category.
    Item labels(const Numbers& values, const Statement& statement = Statement()) const;

    /// The same under a name of its own; there may be several.
    Item labels(std::string_view name, const Numbers& values, const Statement& statement = Statement()) const;

    /// Names for the categories of the item, which the legend has instead of their numbers:
    /// `labelNames({{2, "ground"}, {5, "trees"}})`.
    Item labelNames(const std::map<std::int64_t, std::string>& names, const Statement& statement = Statement()) const;

    /// Says that the numbers of that name, or "colours", belong to the faces of a mesh that has as many vertices.
    Item onFaces(std::string_view name, const Statement& statement = Statement()) const;

    /// Shows the numbers of that name, or "colours", or with an empty name the one colour. They may come later.
    Item show(std::string_view name, const Statement& statement = Statement()) const;

    /// The numbers that have the first and the last colour of the map; by default the least and the greatest there are.
    Item range(double from, double to, const Statement& statement = Statement()) const;

    /// The map from numbers to colours: "viridis" by default, or another one that docs/scenes.md names.
    Item colourMap(std::string_view name, const Statement& statement = Statement()) const;

    /// One colour for all: red, green, blue, opacity, each 0 to 255. Without it, an item has one of a palette.
    Item colour(const RGBA8& colour, const Statement& statement = Statement()) const;
    /// The same of red, green and blue: opaque.
    Item colour(const StaticVector<unsigned char, 3>& colour, const Statement& statement = Statement()) const
    {
        return this->colour(RGBA8(colour[0], colour[1], colour[2], 255), statement);
    }

    /// The normal of each point or vertex, by which light falls on it. They need not have the length 1.
    Item normals(const Points& values, const Statement& statement = Statement()) const;

    /// How large points and how wide lines are, in pixels of the screen, more than 0. Of size() and radius() the later
    /// one holds.
    Item size(double pixels, const Statement& statement = Statement()) const;

    /// How large the points of a cloud are, in units of the scene, so that those farther away are smaller: one radius
    /// for all, or one for each. They are discs, at least a pixel wide, and at most as many pixels as the
    /// driver can (often 255). Where it has no vertex programs they are as large as without a radius.
    Item radius(double units, const Statement& statement = Statement()) const;
    Item radius(const Numbers& units, const Statement& statement = Statement()) const;

    /// From 0, where nothing is seen of the item, to 1.
    Item opacity(double opacity, const Statement& statement = Statement()) const;

    /// Shows or hides the item.
    Item visible(bool isVisible = true, const Statement& statement = Statement()) const;

    /// Has light fall on a mesh without normals as if it were curved, instead of face by face.
    Item smooth(bool isSmooth = true, const Statement& statement = Statement()) const;

    /// Draws the edges of a mesh's faces over them, in a darker colour, as wide as size() says.
    Item edges(bool areSeen = true, const Statement& statement = Statement()) const;

    /// How opaque a volume is, by its values: straight from point to point, and level beyond them. The first and the
    /// last value are its range, too. The opacity is that of a layer as thick as the smallest spacing of samples; along
    /// every axis, and however it is turned, the volume is as opaque.
    Item transferFunction(const std::vector<TransferPoint>& points, const Statement& statement = Statement()) const;

    /// Shows a volume as a look of that name does: its colours, its opacity, and for computed tomography its range, in
    /// Hounsfield's units: "grey", "hot", "bone", "viridis", "CT bone", "CT soft tissue", "CT lung" or "MRI". As
    /// "categories", its numbers tell apart instead of measuring: each has a colour of its own, and labelNames() its
    /// name; there is nothing between them, and 0 is not seen.
    ///
    ///     const std::vector<std::uint8_t> tissues(64 * 64 * 32);
    ///     tavo::scene("head")
    ///         .volume("tissues", tissues, {64, 64, 32})
    ///         .preset("categories")
    ///         .labelNames({{1, "bone"}, {2, "brain"}});
    ///
    Item preset(std::string_view name, const Statement& statement = Statement()) const;

    /// Shows a volume as a file says that the panel, or saveData(), saved: its colours, its range and its opacity. A
    /// file that cannot be read, or is damaged, is a line in the log.
    Item loadTransferFunction(const std::string& file, const Statement& statement = Statement()) const;

    /// Whether of a volume only the greatest value along each line of sight is seen, instead of all of them behind each
    /// other.
    Item maximumIntensity(bool isMaximum = true, const Statement& statement = Statement()) const;

    /// Whether light falls on a volume, from where it is seen: the more a place is inclined, by how the values rise
    /// there, the darker it is. Of greatest values, none is.
    Item lighting(bool isLit = true, const Statement& statement = Statement()) const;

    /// Where the samples of a volume have a value: a smooth surface, which is an item of its own below the volume's
    /// path, and which this returns. It follows new samples. Colour, opacity and all else are said of it as of a mesh:
    ///
    ///     const std::vector<float> density(64 * 64 * 32);
    ///     const tavo::Item head = tavo::scene("head").volume("density", density, {64, 64, 32});
    ///     head.isosurface(300).colour({230, 220, 200, 255});
    ///     head.isosurface(40, "skin").opacity(0.3);
    ///
    /// It ends where the volume does, and where samples are not finite. Of a large volume it is made in a thread, and
    /// comes when it is there. A volume of colours has none, nor has a value that all samples are above or below, which
    /// is said in the log.
    Item isosurface(double value, std::string_view name = "isosurface", const Statement& statement = Statement()) const;

    /// Whether the faces of a mesh are seen from behind too, as they are by default. Seen from the front, the vertices
    /// of a face go around counter-clockwise. Edges are seen from everywhere.
    Item backFaces(bool areSeen = true, const Statement& statement = Statement()) const;

private:
    friend class Scene;

    Item(std::shared_ptr<ViewSlot> slot, std::string_view path);

    std::shared_ptr<ViewSlot> m_Slot;
    std::string m_Path;
};

/// A handle of a scene: clouds of points, surfaces, lines and more in one view in space. It is made by `scene(name)`,
/// is small, and can be kept, copied and be a member; it may outlive the scene and the window. All
/// handles of one name are the same scene, in every thread.
///
///     const tavo::Scene scene = tavo::scene("world");
///     scene.cloud("lidar/front", echoes).scalar("height", heights);
///     scene.mesh("car/body", corners, triangles).colour({200, 30, 30, 255});
///
/// Each item has a path. Sending again under a path replaces what is shown there, and leaves alone from where the user
/// looks at the scene. Items are at the coordinates that were sent, however far from the origin: double precision is
/// kept. Points of which a coordinate is not finite, and what would be drawn between them, are left out.
///
/// Every operation may be called by any thread at any time, waits for nobody and throws nothing. What one statement
/// sends is shown together; its last argument (see Statement) is left out. A mistake, such as a triangle of vertices
/// that are not there, is a line in the log; what was shown stays, and the numbers that the same statement sends for
/// its points are left out, too. It is a mistake to send no points or samples, or none that is finite: `remove` takes
/// an item away.
class VIREO_SHOW_EXPORT Scene
{
public:
    /// A handle of no scene: nothing that is sent to it is shown.
    Scene() = default;

    /// Points.
    Item cloud(std::string_view path, const Points& points, const Statement& statement = Statement()) const;

    /// Points whose numbers x, y, z lie one after the other.
    template <Number T>
    Item cloud(
        std::string_view path, const T* points, std::size_t count, const Statement& statement = Statement()) const
    {
        return cloud(path, Points(points, 3 * count), statement);
    }

    /// The points of a set (tavo/points/PointSet.h) with their attributes: "position", "normal" and "color", and every
    /// one of a single number under its name, as scalar() shows it; or as labels() does, if they are at most 20
    /// different whole numbers and the name has a word such as "index", "id", "label", "class" or "segment". Attributes
    /// of several numbers that have another name are left out. Integers of colours go up to 255, floats up to 1.
    Item cloud(std::string_view path, const PointSet& points, const Statement& statement = Statement()) const;

    /// A surface of triangles, quadrangles or polygons (see Faces), which name their vertices by numbers counted from
    /// 0. Polygons may be concave. Both sides are seen. Faces without area are left out.
    Item mesh(std::string_view path, const Points& vertices, const Faces& faces,
        const Statement& statement = Statement()) const;

    /// A line through the points, in their order.
    Item lines(std::string_view path, const Points& points, const Statement& statement = Statement()) const;

    /// A line from the first point to the second, from the third to the fourth, and so on.
    Item segments(std::string_view path, const Points& points, const Statement& statement = Statement()) const;

    /// An arrow from each point, as long as its direction.
    Item vectors(std::string_view path, const Points& points, const Points& directions,
        const Statement& statement = Statement()) const;

    /// The edges of boxes along the axes.
    Item boxes(std::string_view path, const Points& minima, const Points& maxima,
        const Statement& statement = Statement()) const;

    /// The axes of a coordinate system: x red, y green, z blue.
    Item frame(std::string_view path, const Transformation& matrix, const Statement& statement = Statement()) const;

    /// A text at a position. It is as large as the numbers of the window, and in front of everything.
    Item text(std::string_view path, const Points& position, std::string_view text,
        const Statement& statement = Statement()) const;

    /// A volume: samples on a grid, seen as if they were clouds of smoke, through which other items are seen as far as
    /// they are not opaque. A number has a colour by the map, as that of points has, and is as opaque as
    /// transferFunction() says; samples that are NaN or infinite are not seen. Colours are as opaque as they are
    /// bright, or as they say.
    ///
    ///     const std::vector<float> density(64 * 64 * 32);
    ///     tavo::scene("head").volume("density", density, {64, 64, 32}, {0.9, 0.9, 1.2}).range(40, 400);
    ///
    /// The first sample is at the origin; the axes of the grid point where the orientation says. Each sample stands for
    /// a cell about it. Its numbers are its field "value", beside which scalar() may give it others. A volume of more
    /// samples than textures hold is drawn at half its resolution, or a quarter and so on, which is said in the log.
    Item volume(std::string_view path, const Samples& samples, const GridSize& size, const Spacing& spacing = 1,
        const Vector3d& origin = {}, const Orientation& orientation = {},
        const Statement& statement = Statement()) const;

    /// A channel of a volume (tavo/points/RegularVolume.h) of one number, or of three or four that are colours: the
    /// first one unless it is named. Its cells fill the volume's box.
    Item volume(std::string_view path, const RegularVolume& volume, std::string_view channel = {},
        const Statement& statement = Statement()) const;

    /// Moves all items of a path and below it: "car" moves "car/body". The matrix is 16 numbers column by column (see
    /// Transformation), and its last row is 0, 0, 0, 1.
    Scene transform(
        std::string_view path, const Transformation& matrix, const Statement& statement = Statement()) const;

    /// Takes the items of a path and below it away, or all.
    Scene remove(std::string_view path, const Statement& statement = Statement()) const;
    Scene clear(const Statement& statement = Statement()) const;

    /// Looks at the whole scene from a side, until the user looks from elsewhere: "front", "back", "left", "right",
    /// "top" or "bottom". z points up, and x to the right in front and at the top.
    Scene view(std::string_view side, const Statement& statement = Statement()) const;

    /// Shows what is farther away as large as what is near, until the user chooses.
    Scene orthographic(bool isOrthographic = true, const Statement& statement = Statement()) const;

    /// Shows a box about everything, with numbers along its edges, and in orthographic views a bar of length, until the
    /// user chooses. They are shown unless something else is said.
    Scene bearings(bool areShown = true, const Statement& statement = Statement()) const;

    /// Shows only what is in a box along the axes, until the user chooses. Closed surfaces look solid where it cuts
    /// them. The ends must be finite, and `low` nowhere above `high`.
    Scene clipBox(const Vector3d& low, const Vector3d& high, const Statement& statement = Statement()) const;

    /// Takes away what is in a box along the axes, such as a corner of a volume, so that one sees what is behind it,
    /// until the user chooses. It takes the place of a clipBox(), and clipBox() that of it.
    Scene cutOut(const Vector3d& low, const Vector3d& high, const Statement& statement = Statement()) const;

    /// Shows everything again, until the user chooses.
    Scene noClipBox(const Statement& statement = Statement()) const;

    /// Has a function called with what a person clicks in the scene; clicks on nothing are not told. The last function
    /// that was given counts, and an empty one takes it away.
    ///
    ///     #include <iostream>
    ///
    ///     tavo::scene("world").onPick(
    ///         [](const tavo::Picked& picked) { std::cout << picked.path << ' ' << picked.index << "\n"; });
    ///
    /// It is called in the thread of the window, between two events: that of the program where it has a QApplication or
    /// calls `show()` or `pump()`. The window waits for it meanwhile. It may do what a program may do anywhere: send,
    /// remove the scene, give another function. What it throws is a line in the log.
    ///
    /// It goes with its scene, and at the end of the program; what it holds dies then, in that thread. Until one that
    /// is taken away is known to have gone, it may be called for a frame or so: let it hold what it needs.
    Scene onPick(std::function<void(const Picked&)> callback, const Statement& statement = Statement()) const;

    /// The same in a thread of the program's choice: `run` is called in the thread of the window, with work that
    /// calls the function. It hands the work to whoever is to do it, at any time. Work whose function was taken away
    /// does nothing.
    ///
    ///     #include <QObject>
    ///     #include <iostream>
    ///
    ///     QObject worker; // that lives in another thread
    ///     tavo::scene("world").onPick([](const tavo::Picked& picked) { std::cout << picked.path << "\n"; },
    ///         [&worker](std::function<void()> work) { QMetaObject::invokeMethod(&worker, work); });
    Scene onPick(std::function<void(const Picked&)> callback, std::function<void(std::function<void()>)> run,
        const Statement& statement = Statement()) const;

private:
    friend VIREO_SHOW_EXPORT Scene scene(std::string_view name);

    std::shared_ptr<ViewSlot> m_Slot;
};

/// The scene of that name. It is in the window as soon as anything is sent to it.
VIREO_SHOW_EXPORT Scene scene(std::string_view name);

} // namespace tavo
