"""What the tests of the Python module share."""

import csv
import os
import subprocess
import sys
import tempfile
import unittest


class Folder:
    """A folder of its own, which goes with the test."""

    def __init__(self, test):
        folder = tempfile.TemporaryDirectory()
        test.addCleanup(folder.cleanup)
        self.path = folder.name

    def file(self, name):
        return os.path.join(self.path, name)


class DataTest(unittest.TestCase):
    """What vireo has got is read back from the data that it saves."""

    def setUp(self):
        self.folder = Folder(self)

    def rows(self, view):
        import vireo

        file = self.folder.file("data.csv")
        self.assertTrue(vireo.save_data(view, file))
        with open(file, newline="") as stream:
            return list(csv.reader(stream))

    def column(self, view, name):
        rows = self.rows(view)
        index = rows[0].index(name)
        return [float(row[index]) for row in rows[1:] if row[index]]


def run(code, *arguments, **variables):
    """Runs a program of its own, without what this one was told by VIREO_SHOW and Qt."""
    environment = {name: value for name, value in os.environ.items() if not name.startswith(("VIREO_SHOW", "QT_"))}
    environment.update(variables)
    for name in [name for name, value in environment.items() if value is None]:
        del environment[name]
    command = [sys.executable, "-c", code, *arguments]
    return subprocess.run(command, env=environment, capture_output=True, text=True, timeout=120)
