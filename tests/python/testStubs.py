"""The stubs say what there is: the same names, with the same arguments and defaults."""

import ast
import inspect
import re
import unittest
from pathlib import Path

import vireo

STUBS = ast.parse((Path(vireo.__file__).parent / "__init__.pyi").read_text())


def functions(body):
    """Of each name the arguments of every overload."""
    found = {}
    for node in body:
        if isinstance(node, ast.FunctionDef) and not node.name.startswith("_"):
            names = [argument.arg for argument in node.args.args if argument.arg != "self"]
            defaults = [ast.unparse(default) for default in node.args.defaults]
            found.setdefault(node.name, []).append((names, defaults))
    return found


def real_functions(owner):
    found = {}
    for name, member in vars(owner).items():
        if name.startswith("_") or not inspect.isroutine(member):
            continue
        pattern = r"^(?:\d+\. )?" + name + r"\((.*)\) -> "
        for signature in re.findall(pattern, member.__doc__, re.MULTILINE):
            arguments = ast.parse(f"def f({signature}): pass".replace("vireo.", "")).body[0].args
            names = [argument.arg for argument in arguments.args if argument.arg not in ("self", "arg0")]
            found.setdefault(name, []).append((names, [ast.unparse(default) for default in arguments.defaults]))
    return found


class StubsTest(unittest.TestCase):
    def setUp(self):
        self.maxDiff = None

    def test_functions(self):
        self.assertEqual(self.without_repeats(functions(STUBS.body)), self.without_repeats(real_functions(vireo)))

    def test_classes(self):
        classes = {node.name: node for node in STUBS.body if isinstance(node, ast.ClassDef)}
        self.assertEqual(set(classes), {name for name, member in inspect.getmembers(vireo, inspect.isclass)})
        for name, node in classes.items():
            with self.subTest(name=name):
                owner = getattr(vireo, name)
                bases = [base.__name__ for base in owner.__bases__ if base.__module__ == "vireo"]
                self.assertEqual([base.id for base in node.bases], bases)
                properties = {
                    member
                    for member, value in inspect.getmembers(owner, lambda value: isinstance(value, property))
                }
                stubs = functions(node.body)
                self.assertEqual({member for member in stubs if member in properties}, properties)
                stubs = {member: value for member, value in stubs.items() if member not in properties}
                self.assertEqual(self.without_repeats(stubs), self.without_repeats(real_functions(owner)))

    @staticmethod
    def without_repeats(found):
        return {name: sorted(map(str, {str(each) for each in overloads})) for name, overloads in found.items()}

    def test_the_package_says_that_it_has_types(self):
        self.assertTrue((Path(vireo.__file__).parent / "py.typed").exists())


if __name__ == "__main__":
    unittest.main()
