"""Slices by Python: volumes, what lies on them, and where the crosshair is."""

import unittest

import numpy

import vireo
from support import DataTest

RAMP = numpy.arange(24, dtype="i2").reshape(2, 3, 4)


class SlicesTest(DataTest):
    def test_the_last_index_is_x(self):
        for samples in (RAMP, RAMP.astype(">i4"), numpy.asfortranarray(RAMP, "f8"), RAMP.tolist()):
            vireo.slices("ramp", samples, spacing=(1, 2, 3), origin=(10, 20, 30))
            rows = self.rows("ramp")
            self.assertEqual(rows[0], ["x", "y", "z", "value"])
            values = {tuple(map(float, row[:3])): float(row[3]) for row in rows[1:]}
            self.assertEqual(values[(10, 20, 30)], 0)
            self.assertEqual(values[(11, 20, 30)], 1)
            self.assertEqual(values[(10, 22, 30)], 4)
            self.assertEqual(values[(10, 20, 33)], 12)

    def test_what_lies_on_them_is_chained(self):
        shown = vireo.slices("head", RAMP).window(0, 20).colour_map("bone").crosshair(1, 1, 1)
        self.assertIsInstance(shown, vireo.Slices)
        overlay = shown.overlay(numpy.ones((2, 2, 2)), spacing=0.5).window(0, 1).colour_map("heat").opacity(0.5)
        self.assertIsInstance(overlay, vireo.SliceOverlay)
        for names in (["nothing", "bone"], {1: "bone"}):
            labels = shown.labels(RAMP % 2, names)
            self.assertIs(labels.outlines().colours({1: (255, 0, 0), 2: (0, 255, 0, 128)}), labels)
        with self.assertRaisesRegex(TypeError, "^a colour"):
            labels.colours({1: "red"})
        self.assertIs(shown.remove_overlay().remove_labels(), shown)
        self.assertEqual(shown._repr_png_()[:4], b"\x89PNG")

    def test_an_overlay_has_the_operations_of_its_slices(self):
        overlay = vireo.slices("head", RAMP).overlay(RAMP, origin=(1, 0, 0))
        self.assertIsInstance(overlay, vireo.Slices)
        self.assertIs(overlay.crosshair(1, 1, 1).opacity(0.5), overlay)
        labels = overlay.labels(RAMP % 2).outlines()
        self.assertIs(labels.remove_overlay(), labels)
        self.assertEqual(repr(overlay), "<overlay of vireo.slices('head')>")
        self.assertEqual(repr(labels), "<labels of vireo.slices('head')>")
        self.assertEqual(labels._repr_png_()[:4], b"\x89PNG")

    def test_samples_in_a_row_need_a_size(self):
        vireo.slices("row", RAMP.ravel(), (4, 3, 2)).overlay(RAMP.ravel(), size=[4, 3, 2])
        self.assertEqual(len(self.rows("row")), 25)

    def picture_with(self, *arguments, **where):
        shown = vireo.slices("atlas", numpy.zeros((8, 8, 8))).crosshair(3, 3, 3)
        shown.labels(*arguments, **where).opacity(1)
        return shown._repr_png_()

    def test_labels_lie_where_they_say(self):
        cube = numpy.zeros((8, 8, 8), "u1")
        cube[2:4, 2:4, 2:4] = 1
        expected = self.picture_with(cube)
        self.assertNotEqual(self.picture_with(numpy.zeros((8, 8, 8), "u1")), expected)
        for where in (
            {"origin": (2, 2, 2)},
            {"origin": (2, 2, 2), "spacing": 1},
            {"origin": (3, 2, 2), "orientation": ((-1, 0, 0), (0, 1, 0), (0, 0, 1))},
        ):
            with self.subTest(where=where):
                self.assertEqual(self.picture_with(numpy.ones((2, 2, 2), "u1"), **where), expected)
        self.assertEqual(self.picture_with([1] * 8, [], (2, 2, 2), 1, (2, 2, 2)), expected)
        self.assertEqual(self.picture_with(numpy.ones((1, 1, 1)), spacing=2, origin=(2.5, 2.5, 2.5)), expected)
        self.assertNotEqual(self.picture_with(numpy.ones((2, 2, 2), "u1"), origin=(3, 2, 2)), expected)
        for labels in (numpy.zeros((8, 64)), numpy.zeros((2, 2, 2, 2)), 1):
            with self.assertRaisesRegex(TypeError, "^samples has the shape"):
                vireo.slices("atlas").labels(labels)

    def test_an_orientation_has_three_directions(self):
        vireo.slices("head", RAMP, orientation=((0, 0, 1), (1, 0, 0), (0, 1, 0)))
        for orientation in (numpy.eye(2), [1, 2, 3], "xyz", [(1, 0), (0, 1), (1, 1)]):
            with self.assertRaises(TypeError):
                vireo.slices("head", RAMP, orientation=orientation)

    def test_other_shapes_are_refused(self):
        for samples in (1, [1, 2], numpy.zeros((2, 2)), numpy.zeros((2, 2, 2, 2, 2))):
            with self.assertRaisesRegex(TypeError, "^samples has the shape"):
                vireo.slices("head", samples)


if __name__ == "__main__":
    unittest.main()
