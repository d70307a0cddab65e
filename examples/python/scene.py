"""A cloud of points and a surface in one scene. What is clicked is printed."""

import numpy
import vireo

random = numpy.random.default_rng(1)
points = random.normal(size=(20000, 3))
x, y = numpy.meshgrid(numpy.linspace(-4, 4, 60), numpy.linspace(-4, 4, 60))
ground = numpy.column_stack([x.ravel(), y.ravel(), -4 + 0.3 * numpy.sin(2 * x.ravel()) * numpy.cos(2 * y.ravel())])
corner = numpy.array([60 * row + column for row in range(59) for column in range(59)])
faces = numpy.column_stack([corner, corner + 1, corner + 61, corner + 60])

scene = vireo.scene("world")
scene.cloud("points", points).scalar("distance", numpy.linalg.norm(points, axis=1)).size(3)
scene.mesh("ground", ground, faces).colour((110, 140, 90)).smooth()
scene.on_pick(lambda picked: print(picked.path, picked.index, picked.position, picked.fields))
vireo.show()
