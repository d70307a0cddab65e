"""What documents and examples say works: each block is run as it stands."""

import os
import re
import unittest
from pathlib import Path

from support import Folder, run

ROOT = Path(__file__).parents[2]


class DocumentsTest(unittest.TestCase):
    def run_all(self, programs):
        for number, program in enumerate(programs):
            with self.subTest(program=program[:200]):
                pictures = Folder(self).file("pictures")
                ended = run(program, VIREO_SHOW="pictures:" + pictures, DISPLAY=None)
                self.assertEqual(ended.returncode, 0, ended.stderr)
                self.assertNotRegex(ended.stderr, "tavo|Traceback")
                self.assertTrue(os.listdir(pictures))

    def test_documents(self):
        found = 0
        for document in (ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))):
            programs = re.findall(r"```python\n(.*?)```", document.read_text(), re.DOTALL)
            found += len(programs)
            self.run_all(programs)
        self.assertGreaterEqual(found, 3)

    def test_examples(self):
        programs = [file.read_text() for file in sorted((ROOT / "examples/python").glob("*.py"))]
        self.assertTrue(programs)
        self.run_all(programs)


if __name__ == "__main__":
    unittest.main()
