"""Python has what the front door of C++ has: every operation, and every argument that an array does not bring along."""

import inspect
import re
import unittest
from pathlib import Path

import vireo

HEADERS = Path(__file__).parents[2] / "vireo/show"
CLASSES = {"Plot": "Plot", "Scene": "Scene", "Item": "Scene", "Slices": "Slices", "SliceOverlay": "Slices", "Image": "Image"}
FUNCTIONS = ("show", "Plot", "Scene", "Slices", "Image")

# How arguments are called that are words of Python's, or that a word names better.
RENAMED = {"from": "low", "to": "high", "words": "style"}
SAID_BY_SHAPES = {"count", "width", "height", "channels"}
# What only programs of C++ have: classes of its libraries, and memory with gaps.
ONLY_IN_CPP = {
    "append": {"moment"},
    "image": {"picture"},
    "on_pick": {"run"},
    "volume": {"channel", "volume"},
}
ONLY_CPP_HAS = {"stride"}


def in_pythons_spelling(name):
    return re.sub(r"(?<=[a-z0-9])[A-Z]", lambda capital: "_" + capital[0].lower(), name)


def text_of(header):
    return re.sub(r"//[^\n]*", "", (HEADERS / (header + ".h")).read_text())


def public_part(text, name):
    """What users of a class see of it, whose members are indented."""
    body = re.search(r"^class VIREO_SHOW_EXPORT " + name + r"\b[^\n;]*\n\{\n(.*?)^\};", text, re.DOTALL | re.MULTILINE)[1]
    return re.split(r"^(?:private|protected):", body.split("public:\n", 1)[1], flags=re.MULTILINE)[0]


def names_of(arguments):
    """The last word of each argument, which commas in templates do not end."""
    without_templates = arguments
    while "<" in without_templates:
        without_templates = re.sub(r"<[^<>]*>", "", without_templates)
    named = (argument.split("=")[0].split() for argument in without_templates.split(","))
    return {RENAMED.get(words[-1].strip("*&"), in_pythons_spelling(words[-1].strip("*&"))) for words in named if words}


def operations(text, ending):
    """Of each name the arguments of all its overloads."""
    found = {}
    for name, arguments in re.findall(r"\b(\w+)\(([^;{}]*?(?:\{\}[^;{}]*?)*)" + ending, text):
        found.setdefault(in_pythons_spelling(name), set()).update(names_of(arguments))
    return found


def pythons_operations(owner):
    found = {}
    for name, member in vars(owner).items():
        if not name.startswith("_") and inspect.isroutine(member):
            signatures = re.findall(r"^(?:\d+\. )?" + name + r"\((.*)\) -> ", member.__doc__, re.MULTILINE)
            found[name] = {
                argument.split(":")[0]
                for signature in signatures
                for argument in re.split(r", (?=\w+: )", signature)
                if argument and not argument.startswith("self")
            }
    return found


class FrontDoorTest(unittest.TestCase):
    def compare(self, cpp, python):
        self.assertEqual(set(cpp) - ONLY_CPP_HAS, set(python))
        for name, arguments in python.items():
            with self.subTest(operation=name):
                self.assertLessEqual(arguments, cpp[name])
                self.assertLessEqual(cpp[name] - arguments, SAID_BY_SHAPES | ONLY_IN_CPP.get(name, set()))

    def test_classes(self):
        for name, header in CLASSES.items():
            with self.subTest(name=name):
                cpp = operations(public_part(text_of(header), name), r",?\s*const Statement&")
                self.compare(cpp, pythons_operations(getattr(vireo, name)))

    def test_functions(self):
        cpp = {}
        for header in FUNCTIONS:
            outside_of_classes = re.sub(r"^(class|struct|concept) .*?^\};", "", text_of(header), flags=re.DOTALL | re.MULTILINE)
            declarations = re.findall(r"^VIREO_SHOW_EXPORT [^;]*;", outside_of_classes, re.MULTILINE)
            for name, arguments in operations("\n".join(declarations), r"\);").items():
                cpp.setdefault(name, set()).update(arguments - {"statement"})
        self.compare(cpp, pythons_operations(vireo))

    def test_what_is_picked(self):
        body = re.search(r"^struct Picked\n\{\n(.*?)^\};", text_of("Picked"), re.DOTALL | re.MULTILINE)[1]
        fields = re.findall(r"^    \S[^=;\n]* (\w+)(?: = 0)?;", body, re.MULTILINE)
        self.assertEqual(set(fields), {name for name in vars(vireo.Picked) if not name.startswith("_")})


if __name__ == "__main__":
    unittest.main()
