import numpy
import vireo

t = 0.01 * numpy.arange(2000)
plot = vireo.plot("pressure")
plot.curve("inlet", t, 101325 + 300 * numpy.sin(t))
plot.curve("outlet", t, 101325 + 300 * numpy.exp(-0.1 * t) * numpy.sin(2 * t))
plot.x_axis("time", "s").y_axis("pressure", "Pa")
vireo.show()
