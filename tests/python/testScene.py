"""Scenes by Python: items, their values, matrices and what is picked."""

import json
import unittest

import numpy

import vireo
from support import DataTest, run

POINTS = [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]]


class SceneTest(DataTest):
    def points(self, view):
        rows = self.rows(view)
        columns = [rows[0].index(name) for name in "xyz"]
        return [[float(row[column]) for column in columns] for row in rows[1:]]

    def test_points_come_in_any_layout(self):
        apart = numpy.zeros((4, 5), "f4")
        apart[:, 1:4] = POINTS
        for points in (
            POINTS,
            numpy.ravel(POINTS),
            numpy.asfortranarray(POINTS, "f8"),
            numpy.array(POINTS, ">i2"),
            apart[:, 1:4],
            numpy.array(POINTS).T.copy().T,
        ):
            vireo.scene("layouts").clear().cloud("c", points)
            self.assertEqual(self.points("layouts"), POINTS)

    def test_points_keep_double_precision(self):
        vireo.scene("far").cloud("c", [[4e6 + 0.001, 5e5, 1 / 3]])
        self.assertEqual(self.points("far"), [[4e6 + 0.001, 5e5, 1 / 3]])

    def test_other_shapes_are_refused(self):
        scene = vireo.scene("refused")
        for points in (numpy.zeros((3, 4)), numpy.zeros((2, 3, 3)), 1, [[1, 2]]):
            with self.assertRaisesRegex(TypeError, r"^points has the shape .*\(n, 3\)"):
                scene.cloud("c", points)
        with self.assertRaisesRegex(TypeError, r"^faces has the shape"):
            scene.mesh("m", POINTS, numpy.zeros((1, 2, 3), int))
        with self.assertRaisesRegex(TypeError, r"^samples has the shape"):
            scene.volume("v", numpy.zeros((2, 2)))
        for colours in (numpy.zeros((4, 2)), numpy.zeros((4, 5))):
            with self.assertRaisesRegex(TypeError, r"^values has the shape .*\(n, 3\) or \(n, 4\)"):
                scene.cloud("c", POINTS).colours(colours)

    def test_faces_are_whole_numbers(self):
        scene = vireo.scene("whole")
        for faces in (numpy.array([[0.0, 1, 2]]), numpy.array([0.0, 1, 2], "f4"), [[0.0, 1, 2], [0, 1, 3.0, 2]]):
            scene.mesh("m", POINTS, faces)
        for faces in (numpy.array([[0, 1, 1.5]]), [[0, 1, 1.5], [0, 1, 3, 2]], [0, 1, 1.5]):
            with self.assertRaisesRegex(TypeError, "^faces has 1.5, which is not a whole number$"):
                scene.mesh("m", POINTS, faces)
        for faces in ([[0, 1, numpy.nan]], [[0, 1, 2**70], [0, 1, 2, 3]]):
            with self.assertRaisesRegex(TypeError, "^faces has .*, which is not a whole number$"):
                scene.mesh("m", POINTS, faces)

    def test_an_orientation_is_any_array(self):
        class Axes:
            def __array__(self, *arguments):
                return numpy.eye(3)

        vireo.scene("oriented").volume("v", numpy.zeros((2, 2, 2)), orientation=Axes())

    def test_a_volume_has_isosurfaces(self):
        z, y, x = numpy.mgrid[-1:1:16j, -1:1:16j, -1:1:16j]
        volume = vireo.scene("volume").volume("ball", x * x + y * y + z * z).lighting().lighting(False)
        surface = volume.isosurface(0.5, "skin").colour((200, 100, 50)).opacity(0.5)
        self.assertEqual(repr(surface), "<item 'ball/skin' of vireo.scene('volume')>")
        self.assertTrue(vireo.save_picture("volume", self.folder.file("volume.png"), 60, 40))

    def test_categories_have_names(self):
        item = vireo.scene("named").cloud("c", POINTS).labels([1, 2, 1, 2]).label_names({1: "ground", 2: "trees"})
        self.assertIsInstance(item, vireo.Item)
        with self.assertRaises(TypeError):
            item.label_names(["ground"])

    def test_every_item_has_a_picture(self):
        scene = vireo.scene("items")
        scene.cloud("cloud", POINTS)
        scene.mesh("triangles", POINTS, [[0, 1, 2], [0, 1, 3]])
        scene.mesh("flat", POINTS, [0, 1, 2])
        scene.mesh("quadrangles", POINTS, numpy.array([[0, 1, 2, 3]], "u2"))
        scene.mesh("polygons", POINTS, [[0, 1, 2], [0, 1, 3, 2]])
        scene.lines("lines", POINTS)
        scene.segments("segments", POINTS)
        scene.vectors("vectors", POINTS, numpy.ones((4, 3)))
        scene.boxes("boxes", POINTS, numpy.array(POINTS) + 1)
        scene.frame("frame", numpy.eye(4))
        scene.text("text", (0, 0, 2), "here")
        scene.volume("volume", numpy.ones((2, 3, 4)), spacing=(1, 2, 3), origin=(5, 0, 0))
        self.assertTrue(scene._repr_png_().startswith(b"\x89PNG"))
        self.assertTrue(scene.cloud("cloud", POINTS)._repr_png_().startswith(b"\x89PNG"))
        # Each of them is there, and what the index of the last axis counts is x.
        ended = run(f"""
import numpy, vireo
scene = vireo.scene("s")
scene.mesh("m", numpy.zeros((3, 3)), [[0, 1, 2, 7]])
scene.volume("v", numpy.ones((2, 3, 4)), size=(4, 3, 3))
scene.cloud("c", [1, 2])
""")
        self.assertIn('mesh("m"): face 0 names vertex 7 of 3', ended.stderr)
        self.assertIn('volume("v")', ended.stderr)
        self.assertIn('cloud("c"): 2 numbers are no points', ended.stderr)

    def test_looks_of_volumes_are_loaded(self):
        file = self.folder.file("look.json")
        volume = vireo.scene("looks").volume("v", numpy.ones((2, 3, 4))).range(0, 2)
        self.assertTrue(vireo.save_data("looks", file))
        self.assertIs(volume.load_transfer_function(file), volume)
        ended = run("import vireo; vireo.scene('s').volume('v', [[[1, 2]]]).load_transfer_function('/none.json')")
        self.assertIn("/none.json", ended.stderr)

    def test_volumes_of_labels_are_categories(self):
        labels = numpy.ones((4, 4, 4), dtype=numpy.int16)
        volume = vireo.scene("atlas").volume("atlas", labels, spacing=(2, 2, 2))
        volume.preset("categories").label_names({1: "brain"}).transfer_function([(1, 1), (2, 1)])
        vireo.scene("atlas").view("front").bearings(False)
        file = self.folder.file("look.json")
        self.assertTrue(vireo.save_data("atlas", file))
        with open(file, encoding="utf-8") as look:
            self.assertTrue(json.load(look)["categories"])
        self.assertTrue(vireo.save_picture("atlas", self.folder.file("atlas.png"), 60, 60))
        ended = run("import vireo; vireo.scene('s').volume('v', [[[1, 2]]]).preset('none')")
        self.assertIn("there are grey, hot, bone", ended.stderr)

    def test_values_belong_to_points(self):
        item = vireo.scene("values").cloud("c", POINTS)
        values = {
            "scalar": ("height", [1, 2, 3, 4]),
            "colours": (numpy.eye(4),),
            "labels": ([1, 1, 2, 2], "class"),
            "normals": (POINTS,),
            "radius": ([1, 2, 3, 4],),
            "transfer_function": ([(0, 0), (1, 0.5)],),
            "show": ("height",),
            "on_faces": ("other",),
            "colour_map": ("inferno",),
            "preset": ("hot",),
            "size": (3,),
            "opacity": (0.5,),
            "visible": (),
            "smooth": (),
            "edges": (),
            "back_faces": (False,),
            "maximum_intensity": (),
            "range": (0, 4),
            "colour": ((1, 2, 3),),
        }
        for operation, arguments in values.items():
            with self.subTest(operation=operation):
                self.assertIs(getattr(item, operation)(*arguments), item)
        self.assertIs(item.radius(0.5), item)
        self.assertEqual(self.column("values", "height"), [1, 2, 3, 4])
        self.assertEqual(self.column("values", "class"), [1, 1, 2, 2])
        self.assertEqual(self.column("values", "normal y"), [0, 0, 1, 0])
        self.assertEqual(repr(item), "<item 'c' of vireo.scene('values')>")

    def test_operations_of_scenes_return_their_handle(self):
        scene = vireo.scene("chain")
        for operation, arguments in {
            "view": ("front",),
            "orthographic": (),
            "bearings": (False,),
            "clip_box": ((0, 0, 0), (1, 1, 1)),
            "cut_out": ((0, 0, 0), (1, 1, 1)),
            "no_clip_box": (),
            "transform": ("c", numpy.eye(4)),
            "on_pick": (None,),
            "remove": ("c",),
            "clear": (),
        }.items():
            with self.subTest(operation=operation):
                self.assertIs(getattr(scene, operation)(*arguments), scene)

    def test_matrices_are_as_numpy_writes_them(self):
        matrix = numpy.eye(4)
        matrix[:3, 3] = 1, 2, 3
        for layout in (matrix, numpy.asfortranarray(matrix), matrix.tolist(), matrix.astype("f4")):
            ended = run(f"import numpy, vireo; vireo.scene('s').transform('c', numpy.array({numpy.array(layout).tolist()}))")
            self.assertNotIn("last row", ended.stderr)
        ended = run(f"import vireo; vireo.scene('s').transform('c', {matrix.T.tolist()})")
        self.assertIn("the last row of the matrix is 1, 2, 3, 1", ended.stderr)
        for wrong in (numpy.eye(3), numpy.arange(16)):
            with self.assertRaisesRegex(TypeError, r"^matrix has the shape .*\(4, 4\)"):
                vireo.scene("matrices").transform("c", wrong)

    def test_callbacks_can_be_called(self):
        with self.assertRaisesRegex(TypeError, "^callback"):
            vireo.scene("callbacks").on_pick(3)


if __name__ == "__main__":
    unittest.main()
