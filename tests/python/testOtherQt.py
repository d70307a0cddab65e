"""Beside whoever else has Qt in the process: what works works, and what cannot is said in one line."""

import os
import re
import shutil
import unittest

from support import Folder, run


def folder_of(library):
    """Where this process would find a library of Qt's, once vireo is loaded."""
    ended = run("import vireo; print(open('/proc/self/maps').read())")
    return re.search(r"(/\S+)/" + re.escape(library), ended.stdout).group(1)


class MatplotlibTest(unittest.TestCase):
    def check(self, code, output):
        ended = run("import matplotlib, vireo\nvireo.plot('p').curve('c', [1, 2])\n" + code)
        self.assertEqual((ended.returncode, ended.stdout), (0, output), ended.stderr)
        return ended.stderr

    def test_a_figure_first(self):
        errors = self.check(
            """
matplotlib.use("Qt5Agg")
import matplotlib.pyplot as plt
plt.figure().add_subplot().plot([1, 2])
print(vireo.open_window(), vireo.pump())
plt.pause(0.2)
print(vireo.plot("p")._repr_png_()[:4], vireo.pump())
""",
            "True True\nb'\\x89PNG' True\n",
        )
        self.assertNotIn("QApplication", errors)

    def test_the_window_first(self):
        line = (
            "vireo's window has the QApplication in a thread of its own: make a figure with matplotlib's Qt backend before "
            "vireo's first picture or window, or use another backend, such as TkAgg"
        )
        self.check(
            """
print(vireo.open_window())
import matplotlib.pyplot as plt
try:
    plt.switch_backend("Qt5Agg")
except ImportError as error:
    print(error)
plt.switch_backend("Agg")
plt.figure().savefig("/dev/null", format="png")
print(vireo.pump())
""",
            f"True\n{line}\nTrue\n",
        )

    def test_the_backend_without_a_figure(self):
        errors = self.check(
            """
import matplotlib.pyplot as plt
plt.switch_backend("Qt5Agg")
print(vireo.open_window(), vireo.pump(), vireo.pump(), vireo.plot("p")._repr_png_())
vireo.show()
plt.figure()
print(vireo.open_window(), vireo.pump())
""",
            "False True True None\nTrue True\n",
        )
        self.assertEqual(errors.count("vireo.open_window(): matplotlib's Qt backend is loaded"), 1)
        self.assertEqual(errors.count("vireo.pump(): matplotlib's Qt backend is loaded"), 1)


class PyQtTest(unittest.TestCase):
    def test_the_application_of_the_program_is_used(self):
        ended = run(
            """
from PyQt5.QtCore import QTimer
from PyQt5.QtWidgets import QApplication
import vireo
application = QApplication([])
vireo.plot("p").curve("c", [1, 2])
timer = QTimer()
timer.timeout.connect(vireo.close_window)
timer.start(300)
vireo.show()
print("closed")
"""
        )
        self.assertEqual((ended.returncode, ended.stdout), (0, "closed\n"), ended.stderr)


class AnotherQtTest(unittest.TestCase):
    def copy_of_core(self, name):
        copy = Folder(self).file(name)
        shutil.copy(os.path.join(folder_of("libQt5Core.so.5"), "libQt5Core.so.5"), copy)
        return copy

    def test_beside_another_there_are_pictures_only(self):
        other = self.copy_of_core("libQt5Core-1a2b3c.so.5")
        code = """
import ctypes, os, sys, vireo
ctypes.CDLL(sys.argv[1])
vireo.plot("p").curve("c", [1, 2])
print(vireo.open_window(), vireo.pump(), vireo.pump(), vireo.plot("p")._repr_png_()[:4], os.getenv("QT_QPA_PLATFORM"))
"""
        ended = run(code, other)
        self.assertEqual((ended.returncode, ended.stdout), (0, "False True True b'\\x89PNG' None\n"), ended.stderr)
        line = f"another Qt is loaded, {other}: vireo makes pictures beside it, but opens no window"
        self.assertEqual(ended.stderr.count("vireo.open_window(): " + line), 1)
        self.assertEqual(ended.stderr.count("vireo.pump(): " + line), 1)

    def test_show_saves_the_pictures_beside_another(self):
        folder = Folder(self).path
        code = "import ctypes, sys, vireo\nctypes.CDLL(sys.argv[1])\nvireo.plot('p').curve('c', [1])\nvireo.show()"
        ended = run(code, self.copy_of_core("libQt6Core.so.6"), VIREO_SHOW="pictures:" + folder)
        self.assertEqual((ended.returncode, os.listdir(folder)), (0, ["p.png"]), ended.stderr)

    def test_in_the_place_of_the_right_one(self):
        other = self.copy_of_core("libQt5Core.so.5")
        code = """
import ctypes, sys
ctypes.CDLL(sys.argv[1])
try:
    import vireo
except ImportError as error:
    print(error)
"""
        ended = run(code, other)
        self.assertEqual(ended.returncode, 0, ended.stderr)
        self.assertRegex(ended.stdout, f"^vireo needs the Qt in .*, but {other} is loaded in its place: [^\n]*\n$")

    def test_plugins_of_another_package_are_not_taken(self):
        plugins = folder_of("libQt5Core.so.5") + "/qt5/plugins/platforms"
        folder = Folder(self).file("site-packages/other/platforms")
        shutil.copytree(plugins, folder)
        code = """
import os, vireo
vireo.plot("p").curve("c", [1, 2])
print(vireo.open_window(), "site-packages" in open("/proc/self/maps").read())
os.system('test -n "$QT_QPA_PLATFORM_PLUGIN_PATH" && echo put back')
"""
        ended = run(code, QT_QPA_PLATFORM_PLUGIN_PATH=folder)
        self.assertEqual((ended.returncode, ended.stdout), (0, "True False\nput back\n"), ended.stderr)


if __name__ == "__main__":
    unittest.main()
