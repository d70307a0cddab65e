"""An image of numbers, in the colours of a map, and the same in colours of its own."""

import numpy
import vireo

y, x = numpy.mgrid[-1:1:480j, -1.5:1.5:720j]
waves = numpy.sin(20 * numpy.hypot(x, y)) * numpy.exp(-2 * numpy.hypot(x, y))
colours = numpy.dstack([waves, x, y]).astype("f4") * 0.5 + 0.5

vireo.image("waves", waves).range(-1, 1).colour_map("viridis")
vireo.image("colours", colours).link(vireo.image("waves"))
vireo.show()
