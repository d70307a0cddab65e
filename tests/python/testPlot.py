"""Plots by Python: what is sent, chained, saved and refused."""

import datetime
import os
import pathlib
import struct
import threading
import unittest

import numpy

import vireo
from support import DataTest, run


def size_of_png(data):
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    return struct.unpack(">II", data[16:24])


class PlotTest(DataTest):
    def test_operations_return_their_handle(self):
        plot = vireo.plot("chain")
        x = [1, 2, 3]
        for operation, arguments in {
            "curve": ("a", x, x),
            "points": ("b", x),
            "steps": ("c", x, x),
            "bars": ("d", x),
            "histogram": ("e", x),
            "band": ("f", x, x, x),
            "append": ("g", 1, 2.5),
            "keep": ("g", 10),
            "colour": ("a", (255, 0, 0)),
            "style": ("a", "dashed"),
            "title": ("Chain",),
            "x_axis": ("time", "s"),
            "y_axis": ("pressure",),
            "y2_axis": ("speed", "m/s"),
            "log_x": (False,),
            "log_y": (),
            "time_x": (False,),
            "x_range": (0, 5),
            "y_range": (1, 5),
            "window": (3,),
            "vertical": (1, "here"),
            "horizontal": (2,),
            "link": (vireo.plot("other"),),
            "remove": ("a",),
            "clear": (),
        }.items():
            with self.subTest(operation=operation):
                self.assertIs(getattr(plot, operation)(*arguments), plot)
        self.assertEqual(repr(plot), "vireo.plot('chain')")

    def test_every_kind_of_series_arrives(self):
        plot = vireo.plot("kinds").curve("a", [1], [10]).points("b", [1], [20]).steps("c", [1], [30]).bars("d", [1], [40])
        plot.band("e", [1], [50], [60])
        cells = {cell for row in self.rows("kinds") for cell in row}
        self.assertLessEqual({"10", "20", "30", "40", "50", "60"}, cells)

    def test_appended_samples_are_numbers_or_series(self):
        plot = vireo.plot("appended").append("y", 0.5, 1.5).append("y", 1, numpy.float32(2)).append("y", [2, 3], (3, 4))
        plot.append("y", numpy.datetime64("1970-01-01T00:00:04"), 5)
        self.assertEqual(self.column("appended", "y x"), [0.5, 1, 2, 3, 4])
        self.assertEqual(self.column("appended", "y"), [1.5, 2, 3, 4, 5])
        with self.assertRaisesRegex(TypeError, "^x has the shape"):
            plot.append("y", numpy.zeros((2, 2)), 1)
        with self.assertRaisesRegex(TypeError, "^y is made of bool"):
            plot.append("y", 1, True)

    def test_places_along_x_may_be_moments(self):
        plot = vireo.plot("moments").curve("y", [numpy.datetime64("2024-05-17"), numpy.datetime64("2024-05-18")], [1, 2])
        without = plot._repr_png_()
        plot.vertical(datetime.datetime(2024, 5, 17, 12, tzinfo=datetime.timezone.utc), "noon")
        line = plot._repr_png_()
        self.assertNotEqual(line, without)
        plot.vertical(numpy.datetime64("2024-05-17T12:00"), "noon")
        self.assertEqual(plot._repr_png_(), line)
        plot.x_range(numpy.datetime64("2024-05-17T06:00"), datetime.datetime(2024, 5, 18, tzinfo=datetime.timezone.utc))
        self.assertNotEqual(plot._repr_png_(), line)
        for mistake in (lambda: plot.vertical("noon"), lambda: plot.vertical([1, 2]), lambda: plot.x_range(0, None)):
            with self.assertRaisesRegex(TypeError, "^(x|high) (is made of|has the shape)"):
                mistake()

    def test_colours_are_bytes(self):
        plot = vireo.plot("colours").colour("y", [1, 2, 3]).colour("y", numpy.array([1, 2, 3, 4], "u1"))
        for colour in ((1, 2), (1, 2, 256), (0.5, 0.5, 0.5), "red", None):
            with self.subTest(colour=colour), self.assertRaisesRegex(TypeError, "^a colour is"):
                plot.colour("y", colour)

    def test_keywords_name_arguments(self):
        vireo.plot(name="keywords").curve(name="y", x=[5], y=[6])
        self.assertEqual(self.column("keywords", "y x"), [5])

    def test_pictures_have_their_size(self):
        vireo.plot("picture").curve("y", [1, 2, 3])
        file = pathlib.Path(self.folder.file("p.png"))
        self.assertTrue(vireo.save_picture("picture", file, width=300, height=200))
        self.assertEqual(size_of_png(file.read_bytes()), (300, 200))
        self.assertTrue(vireo.save_pictures(self.folder.file("all")))
        self.assertIn("picture.png", os.listdir(self.folder.file("all")))

    def test_notebooks_get_a_picture(self):
        self.assertEqual(size_of_png(vireo.plot("notebook").curve("y", [1, 2])._repr_png_()), (1000, 700))

    def test_what_is_sent_together_ends_with_its_block(self):
        with vireo.Together():
            vireo.plot("together").curve("y", [1])
        self.assertEqual(self.column("together", "y"), [1])

    def test_a_block_ends_in_the_thread_that_began_it(self):
        together = vireo.Together()
        together.__enter__()
        vireo.plot("block").curve("y", [1])
        refusals = []

        def end():
            try:
                together.__exit__(None, None, None)
            except RuntimeError as error:
                refusals.append(str(error))

        thread = threading.Thread(target=end)
        thread.start()
        thread.join()
        self.assertEqual(refusals, ["a block of vireo.Together must end in the thread in which it began"])
        together.__exit__(None, None, None)
        self.assertEqual(self.column("block", "y"), [1])

    def test_views_are_removed(self):
        vireo.plot("removed").curve("y", [1])
        vireo.remove("removed")
        self.assertFalse(vireo.save_data("removed", self.folder.file("removed.csv")))
        vireo.plot("cleared").curve("y", [1])
        vireo.clear()
        self.assertFalse(vireo.save_data("cleared", self.folder.file("cleared.csv")))

    def test_help_is_enough_to_start(self):
        for callable in (vireo.plot, vireo.scene, vireo.image):
            self.assertIn("import numpy, vireo", callable.__doc__)
        for owner in (vireo, vireo.Plot, vireo.Scene, vireo.Item, vireo.Image):
            for name in dir(owner):
                if not name.startswith("_"):
                    self.assertTrue(getattr(owner, name).__doc__, name)


class MistakesTest(unittest.TestCase):
    def test_nothing_is_made_but_by_calls(self):
        for made in (vireo.Plot, vireo.Scene, vireo.Item, vireo.Image, vireo.Slices, vireo.SliceOverlay, vireo.Picked):
            for make in (made, lambda: made.__new__(made), type("Derived", (made,), {})):
                with self.assertRaisesRegex(TypeError, "made by functions of vireo"):
                    make()
        together = vireo.Together.__new__(vireo.Together)
        with together:
            vireo.plot("together").curve("y", [1])

    def test_names_need_not_be_utf_8(self):
        self.assertEqual(repr(vireo.plot(b"a\xff")), "vireo.plot('a\ufffd')")

    def test_a_handle_alone_takes_no_name_and_starts_nothing(self):
        code = """
import vireo
alone = vireo.plot("name")
print(alone._repr_png_(), "libqxcb" in open("/proc/self/maps").read())
print(vireo.scene("name").cloud("c", [0, 0, 0])._repr_png_()[:4])
"""
        ended = run(code)
        self.assertEqual((ended.returncode, ended.stdout), (0, "None False\nb'\\x89PNG'\n"), ended.stderr)
        self.assertIn('there is no view "name"', ended.stderr)

    def test_mistakes_are_lines_in_the_log(self):
        ended = run("import vireo\nvireo.plot('p').curve('c', [1, 2], [1])\nprint('goes on')")
        self.assertEqual(ended.stdout, "goes on\n")
        self.assertIn('plot("p").curve("c"): 2 x and 1 y; what was shown stays', ended.stderr)

    def test_off_costs_nothing(self):
        code = """
import vireo
plot = vireo.plot("p").curve("c", "no numbers").band("b", 1, 2, 3).append("a", None, None)
vireo.scene("s").cloud("c", "no points").colours(1).scalar("s", 1).normals(2).radius("r")
vireo.scene("s").mesh("m", 1, 2)
vireo.scene("s").volume("v", None)
vireo.scene("s").frame("f", None).colour((1, 2, 3))
vireo.scene("s").transform("f", None).on_pick(print)
vireo.image("i", "no pixels").gamma(2)
vireo.show()
print(vireo.pump(), vireo.open_window(), vireo.save_picture("p", "p.png"), plot._repr_png_())
"""
        ended = run(code, VIREO_SHOW="off")
        self.assertEqual((ended.stdout, ended.stderr), ("True False False None\n", ""))
        self.assertEqual(ended.returncode, 0)


if __name__ == "__main__":
    unittest.main()
