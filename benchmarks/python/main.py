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


# Whether a process that has given memory back must get it anew depends on how it happens to lie. Here both are left alone, or
# keep all of it, or get all of it anew for each call, except for the copies that the module keeps for the next ones.
ALLOCATORS = {
    "memory as it comes": {},
    "memory that the process has": {"MALLOC_TRIM_THRESHOLD_": "1000000000", "MALLOC_MMAP_THRESHOLD_": "100000000"},
    "fresh memory": {"MALLOC_MMAP_THRESHOLD_": "100000"},
}


def middle_milliseconds(call, num_calls):
    times = []
    for number in range(num_calls):
        start = time.perf_counter()
        call(number)
        times.append(1000 * (time.perf_counter() - start))
    return sorted(times)[len(times) // 2]


def output_of(command, **variables):
    environment = dict(os.environ, **variables)
    return float(subprocess.run(command, capture_output=True, text=True, check=True, env=environment).stdout)


def send(num_calls):
    """Prints the milliseconds of the middle one of the calls, as floor.cpp does."""
    x = numpy.arange(NUM_SAMPLES, dtype=float)
    y = x.copy()

    def send_changed(number):
        x[0] = y[0] = -number  # there is no earlier copy that could be shared
        vireo.plot("p").curve("c", x, y)

    print(middle_milliseconds(send_changed, num_calls))
    vireo.clear()


def measure_calls(floor, num_calls):
    print("| `plot(\"p\").curve(\"c\", x, y)`, 1,000,000 samples, into | C++ | Python | ratio | at most | |")
    print("|---|---|---|---|---|---|")
    for name, variables in ALLOCATORS.items():
        cpp = output_of([floor, str(num_calls)], **variables)
        python = output_of([sys.executable, __file__, "--send", str(num_calls)], **variables)
        verdict = "met" if python <= LIMIT * cpp else "missed"
        print(f"| {name} | {cpp:.2f} ms | {python:.2f} ms | {python / cpp:.2f} | {LIMIT} | {verdict} |")


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
    for name in ("vireo", "matplotlib", "pyqtgraph"):
        if importlib.util.find_spec(name) is None:
            print(f"| {name} | not installed |")
            continue
        command = [sys.executable, __file__, "--draw", name, str(num_calls)]
        print(f"| {name} | {output_of(command, QT_QPA_PLATFORM='offscreen'):.1f} ms |")


if __name__ == "__main__":
    if sys.argv[1] == "--send":
        send(int(sys.argv[2]))
    elif sys.argv[1] == "--draw":
        draw(sys.argv[2], int(sys.argv[3]))
    else:
        calls = int(sys.argv[2]) if len(sys.argv) > 2 else 51
        measure_calls(sys.argv[1], calls)
        measure_pictures(max(calls // 5, 1))
