"""The window beside a program of Python's: threads, callbacks, prompts, and its end."""

import os
import unittest

from support import Folder, run

CLICK = """
import subprocess, threading, time, sys
import vireo

picked = []
clicked = threading.Event()

def click():
    ids = []
    while not ids:
        ids = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", " - vireo$"],
                             capture_output=True, text=True).stdout.split()
    geometry = subprocess.run(["xdotool", "getwindowgeometry", "--shell", ids[-1]],
                              capture_output=True, text=True).stdout
    values = dict(line.split("=") for line in geometry.split())
    x = int(values["X"]) + int(values["WIDTH"]) // 3 # in the middle of the scene, beside which there is its panel
    y = int(values["Y"]) + int(values["HEIGHT"]) // 2
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])

def click_until(event):
    while not event.wait(0.5):
        click()
"""


class WindowTest(unittest.TestCase):
    def check(self, code, output="", errors="", **variables):
        ended = run(code, **variables)
        self.assertEqual(ended.returncode, 0, ended.stderr)
        self.assertEqual(ended.stdout, output)
        if errors is not None:
            self.assertEqual(self.without_qt(ended.stderr), errors)
        return ended

    @staticmethod
    def without_qt(errors):
        lines = [line for line in errors.splitlines(True) if "XDG_RUNTIME_DIR" not in line]
        return "".join(lines)

    def test_a_window_left_open_closes_in_order(self):
        for ending in ("", "sys.exit(0)", "vireo.close_window()", "vireo.clear()"):
            with self.subTest(ending=ending):
                self.check(
                    "import sys, vireo\n"
                    "vireo.plot('p').curve('c', [1, 2])\n"
                    "vireo.scene('s').cloud('c', [0, 0, 0]).colour((1, 2, 3))\n"
                    "print(vireo.open_window(), vireo.pump())\n" + ending,
                    "True True\n",
                )

    def test_a_window_left_open_behind_an_exception(self):
        ended = run("import vireo\nvireo.plot('p').curve('c', [1])\nvireo.open_window()\n1 / 0")
        self.assertEqual(ended.returncode, 1)
        self.assertIn("ZeroDivisionError", ended.stderr)

    @unittest.skipIf("ASAN_OPTIONS" in os.environ, "the sanitizer does not stand how the system ends threads")
    def test_daemon_threads_end_with_the_interpreter(self):
        self.check(
            """
import threading, time, vireo
def send():
    while True:
        vireo.plot("p").curve("c", [1, 2, 3])
for _ in range(3): threading.Thread(target=send, daemon=True).start()
time.sleep(0.3)
print("end")
""",
            "end\n",
            errors=None,
        )

    def test_threads_that_are_the_first_to_ask_for_picks(self):
        self.check(
            """
import threading, vireo
def ask(number):
    for i in range(20): vireo.scene(f"s{number}").on_pick(lambda picked: None)
threads = [threading.Thread(target=ask, args=(number,)) for number in range(8)]
for thread in threads: thread.start()
for thread in threads: thread.join()
print(sum(thread.name == "vireo" for thread in threading.enumerate()))
""",
            "1\n",
            errors=None,
        )

    def test_calls_come_from_any_thread(self):
        self.check(
            """
import threading, vireo
def send(number):
    for i in range(200):
        vireo.plot(f"p{number % 3}").append(f"c{number}", i, [number])
        vireo.plot("q").append(f"c{number}", float(i), float(number))
threads = [threading.Thread(target=send, args=(number,)) for number in range(8)]
opener = threading.Thread(target=lambda: print(vireo.open_window()))
for thread in threads + [opener]: thread.start()
for thread in threads + [opener]: thread.join()
import tempfile
with tempfile.TemporaryDirectory() as folder:
    print(vireo.save_data("q", folder + "/q.csv"), len(open(folder + "/q.csv").readlines()))
""",
            "True\nTrue 201\n",
        )

    def test_the_window_is_alive_while_python_computes(self):
        # The closing of the window is seen though the program never lets the window do anything.
        self.check(
            """
import sys, vireo
sys.setswitchinterval(1000)
vireo.plot("p").curve("c", [1, 2])
vireo.open_window()
vireo.close_window()
while vireo.pump(): pass
print("closed")
""",
            "closed\n",
        )

    def test_show_ends_when_the_window_closes(self):
        self.check(
            """
import threading, vireo
closed = threading.Event()
def close():
    while not closed.wait(0.1): vireo.close_window()
vireo.plot("p").curve("c", [1, 2])
vireo.open_window()
thread = threading.Thread(target=close)
thread.start()
vireo.show()
closed.set()
thread.join()
print("closed")
""",
            "closed\n",
            None,
        )

    def test_ctrl_c_ends_show(self):
        self.check(
            """
import os, signal, threading, vireo
vireo.plot("p").curve("c", [1, 2])
threading.Timer(1, lambda: os.kill(os.getpid(), signal.SIGINT)).start()
try:
    vireo.show()
except KeyboardInterrupt:
    print("interrupted")
""",
            "interrupted\n",
        )

    def test_what_is_clicked_is_told_to_python(self):
        ended = run(
            CLICK
            + """
def pick(picked):
    print(picked.path, picked.index, picked.position, picked.fields, picked, threading.current_thread().name)
    clicked.set()
    raise ValueError("of the callback")

scene = vireo.scene("s")
scene.bearings(False).cloud("c", [[1, 2, 3]]).scalar("height", [7]).size(200)
scene.on_pick(pick)
vireo.open_window()
click_until(clicked)
print("goes on")
""",
            VIREO_SHOW="fresh",
        )
        self.assertEqual(ended.returncode, 0, ended.stderr)
        self.assertIn("c 0 (1.0, 2.0, 3.0) {'height': 7.0} <picked 'c', 0> vireo\n", ended.stdout)
        self.assertIn("goes on\n", ended.stdout)
        self.assertIn("ValueError: of the callback", ended.stderr)

    def test_callbacks_end_before_the_interpreter(self):
        # One that is called at the end has ended; those after it are not called; functions may hold what they like.
        ended = run(
            CLICK
            + """
class Held:
    pass

def pick(picked, held=Held()):
    clicked.set()
    time.sleep(1)
    print("ended", flush=True)

scene = vireo.scene("s").on_pick(lambda picked: None).on_pick(pick)
scene.bearings(False).cloud("c", [[1, 2, 3]]).size(200)
vireo.open_window()
click_until(clicked)
""",
            VIREO_SHOW="fresh",
        )
        self.assertEqual((ended.returncode, ended.stdout), (0, "ended\n"), ended.stderr)

    def test_functions_that_are_replaced_are_let_go_of(self):
        self.check(
            """
import threading, vireo, weakref
gone = threading.Event()
def make():
    def pick(picked): pass
    weakref.finalize(pick, gone.set)
    vireo.scene("s").on_pick(pick)
make()
vireo.scene("s").cloud("c", [0, 0, 0])
vireo.open_window()
vireo.scene("s").on_pick(None)
print(gone.wait(60))
""",
            "True\n",
        )

    def test_children_of_a_fork_end(self):
        self.check(
            """
import multiprocessing, os, sys, vireo
vireo.plot("p").curve("c", [1, 2])
vireo.scene("s").on_pick(print)
vireo.open_window()
def child():
    vireo.plot("p").curve("c", [3])
    print(vireo.save_picture("p", "p.png"), flush=True)
process = multiprocessing.get_context("fork").Process(target=child)
process.start()
process.join()
print(process.exitcode, flush=True)
if not os.fork():
    sys.exit(0)
print(os.waitstatus_to_exitcode(os.wait()[1]))
""",
            "False\n0\n0\n",
        )

    def test_pictures_at_the_end(self):
        folder = Folder(self).path
        self.check(
            "import vireo; vireo.plot('p').curve('c', [1, 2])", VIREO_SHOW="pictures:" + folder, DISPLAY=None
        )
        with open(folder + "/p.png", "rb") as stream:
            self.assertEqual(stream.read(4), b"\x89PNG")

    def test_without_a_display_there_is_one_line(self):
        ended = run("import vireo; vireo.plot('p').curve('c', [1]); print(vireo.open_window())", DISPLAY=None)
        self.assertEqual((ended.returncode, ended.stdout), (0, "False\n"))
        self.assertIn("there is no display", ended.stderr)

    def test_a_folder_without_a_name_is_one_line(self):
        self.check(
            "import vireo; vireo.plot('p').curve('c', [1]); print(vireo.save_pictures(''))",
            "False\n",
            'warning: tavo::savePictures(""): the folder cannot be made\n',
            DISPLAY=None,
        )

    def test_pictures_need_no_display(self):
        self.check(
            "import vireo; print(vireo.scene('s').cloud('c', [0, 0, 0])._repr_png_()[:4])", "b'\\x89PNG'\n", DISPLAY=None
        )

    def test_ipython_shows_the_window_beside_the_prompt(self):
        self.check(
            """
from IPython.core.interactiveshell import InteractiveShell
shell = InteractiveShell.instance()
for cell in ("import vireo", "plot = vireo.plot('p').curve('c', [1, 2])", "print(vireo.open_window())"):
    shell.run_cell(cell)
data, _ = shell.display_formatter.format(shell.user_ns["plot"])
print(sorted(data), data["image/png"][:4])
""",
            "True\n['image/png', 'text/plain'] b'\\x89PNG'\n",
            None,
        )


if __name__ == "__main__":
    unittest.main()
