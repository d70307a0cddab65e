"""What the Python module costs beside C++, and what a picture of the same curve costs beside other packages of Python's.

    main.py FLOOR [NUM_CALLS]

FLOOR is the program of floor.cpp. Prints two tables.
"""

import importlib.util
import os
import subprocess
import sys
import tempfile
import time

import numpy
import vireo

NUM_SAMPLES = 1000000
LIMIT = 1.2
WIDTH, HEIGHT = 1000, 700


def middle_milliseconds(call, num_calls):
    times = []
    for number in range(num_calls):
        start = time.perf_counter()
        call(number)
        times.append(1000 * (time.perf_counter() - start))
    return sorted(times)[len(times) // 2]


def measure_call(floor, num_calls):
    x = numpy.arange(NUM_SAMPLES, dtype=float)
    y = x.copy()
    times = []
    for number in range(num_calls):
        x[0] = y[0] = -number  # there is no earlier copy that could be shared
        start = time.perf_counter()
        vireo.plot("p").curve("c", x, y)
        times.append(1000 * (time.perf_counter() - start))
    python = sorted(times)[len(times) // 2]
    cpp = float(subprocess.run([floor, str(num_calls)], capture_output=True, text=True, check=True).stdout)
    ratio = python / cpp
    print("| one call | C++ | Python | ratio | at most | |\n|---|---|---|---|---|---|")
    print(
        f"| `plot(\"p\").curve(\"c\", x, y)`, 1,000,000 samples | {cpp:.2f} ms | {python:.2f} ms | {ratio:.2f} | {LIMIT} | "
        f"{'met' if ratio <= LIMIT else 'missed'} |"
    )


def vireo_picture(x, y, file):
    vireo.plot("p").curve("c", x, y)
    vireo.save_picture("p", file, WIDTH, HEIGHT)


def matplotlib_picture(x, y, file):
    from matplotlib.backends.backend_agg import FigureCanvasAgg
    from matplotlib.figure import Figure

    figure = Figure(figsize=(WIDTH / 100, HEIGHT / 100), dpi=100)
    FigureCanvasAgg(figure)
    figure.add_subplot().plot(x, y)
    figure.savefig(file)


class PyqtgraphPicture:
    def __init__(self):
        import pyqtgraph

        self.qt = pyqtgraph.mkQApp()
        self.widget = pyqtgraph.PlotWidget()
        self.widget.resize(WIDTH, HEIGHT)
        self.curve = self.widget.plot()
        self.curve.setDownsampling(auto=True, method="peak")

    def __call__(self, x, y, file):
        self.curve.setData(x, y)
        self.widget.grab().save(file)


def draw(name, num_calls):
    """Prints the milliseconds of the middle one of the pictures."""
    picture = {"vireo": lambda: vireo_picture, "matplotlib": lambda: matplotlib_picture, "pyqtgraph": PyqtgraphPicture}
    save = picture[name]()
    x = numpy.linspace(0, 100, NUM_SAMPLES)
    y = numpy.sin(x) + 0.1 * numpy.random.default_rng(1).normal(size=NUM_SAMPLES)
    with tempfile.TemporaryDirectory() as folder:
        file = os.path.join(folder, "p.png")
        save(x, y, file)  # what is made once is made
        print(middle_milliseconds(lambda number: save(x, y + number, file), num_calls))


def measure_pictures(num_calls):
    print(f"\n| a picture of {NUM_SAMPLES:,} samples, {WIDTH} x {HEIGHT} | |\n|---|---|")
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    for name in ("vireo", "matplotlib", "pyqtgraph"):
        if importlib.util.find_spec(name) is None:
            print(f"| {name} | not installed |")
            continue
        command = [sys.executable, __file__, "--draw", name, str(num_calls)]
        output = subprocess.run(command, capture_output=True, text=True, check=True, env=environment).stdout
        print(f"| {name} | {float(output):.1f} ms |")


if __name__ == "__main__":
    if sys.argv[1] == "--draw":
        draw(sys.argv[2], int(sys.argv[3]))
    else:
        num_calls = int(sys.argv[2]) if len(sys.argv) > 2 else 51
        measure_call(sys.argv[1], num_calls)
        vireo.clear()
        measure_pictures(max(num_calls // 5, 1))
