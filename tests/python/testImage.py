"""Images by Python."""

import unittest

import numpy

import vireo
from support import DataTest

PIXELS = numpy.arange(24).reshape(4, 6)


class ImageTest(DataTest):
    def numbers(self, name):
        return [float(cell) for row in self.rows(name)[1:] for cell in row[2:]]

    def test_pixels_come_in_any_layout(self):
        wide = numpy.zeros((8, 12))
        wide[::2, 1::2] = PIXELS
        for pixels in (
            PIXELS,
            PIXELS.tolist(),
            PIXELS.astype("f2"),
            PIXELS.astype(">u2"),
            numpy.asfortranarray(PIXELS),
            wide[::2, 1::2],
            PIXELS[::-1][::-1],
        ):
            vireo.image("layouts", pixels)
            self.assertEqual(self.numbers("layouts"), PIXELS.ravel().tolist())

    def test_channels_are_the_last_axis(self):
        for channels in (1, 2, 3, 4):
            pixels = numpy.arange(6 * channels, dtype="u1").reshape(2, 3, channels)
            vireo.image(f"{channels} channels", pixels)
            self.assertEqual(self.numbers(f"{channels} channels"), pixels.ravel().tolist())

    def test_stacks_have_another_axis_first(self):
        shown = vireo.image_stack("stack", PIXELS.reshape(2, 4, 3)).layer_names(["before", "after"])
        self.assertIsInstance(shown, vireo.Image)
        self.assertEqual(self.numbers("stack"), list(range(12)))
        vireo.image_stack("colours", numpy.zeros((3, 4, 5, 3), "u1"))
        for pixels in (PIXELS, numpy.zeros((2, 2, 2, 5)), 1):
            with self.assertRaisesRegex(TypeError, "^pixels has the shape"):
                vireo.image_stack("refused", pixels)

    def test_stacks_are_sent_one_by_one(self):
        shown = vireo.image("layers").layer(0, PIXELS)
        self.assertIs(shown.layer(1, numpy.zeros((2, 3, 3), "u1")), shown)
        self.assertEqual(self.numbers("layers"), PIXELS.ravel().tolist())
        shown.layer(index=0, pixels=[[1, 2.5]]).layer_names(["before", "after"])
        self.assertEqual(self.numbers("layers"), [1, 2.5])
        for pixels in (numpy.zeros(5), numpy.zeros((2, 2, 5)), 1):
            with self.assertRaisesRegex(TypeError, "^pixels has the shape"):
                shown.layer(1, pixels)
        with self.assertRaises(TypeError):
            shown.layer(0.5, PIXELS)

    def test_what_is_no_image_is_refused(self):
        for pixels in (numpy.zeros(5), numpy.zeros((2, 2, 5)), numpy.zeros((2, 2, 2, 2)), 1):
            with self.assertRaisesRegex(TypeError, "^pixels has the shape"):
                vireo.image("refused", pixels)
        with self.assertRaisesRegex(TypeError, "^pixels is made of bool"):
            vireo.image("refused", numpy.zeros((2, 2), bool))

    def test_operations_return_their_handle(self):
        image = vireo.image("chain", PIXELS)
        for operation, arguments in {
            "bgr": (False,),
            "bottom_up": (),
            "range": (0, 5),
            "percentiles": (1, 99),
            "colour_map": ("viridis",),
            "gamma": (1.5,),
            "channel": (0,),
            "link": (vireo.image("other", PIXELS),),
            "difference": ("",),
        }.items():
            with self.subTest(operation=operation):
                self.assertIs(getattr(image, operation)(*arguments), image)
        self.assertEqual(repr(vireo.image("chain")), "vireo.image('chain')")
        self.assertTrue(image._repr_png_().startswith(b"\x89PNG"))


if __name__ == "__main__":
    unittest.main()
