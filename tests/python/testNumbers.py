"""Numbers of any type and layout come through as they are."""

import array
import datetime
import sys
import threading
import unittest

import numpy

import vireo
from support import DataTest, run

VALUES = [0, 1, 3, 100, 7, 2]


class NumbersTest(DataTest):
    def check(self, numbers, expected=VALUES):
        vireo.plot("numbers").clear().curve("y", numbers)
        self.assertEqual(self.column("numbers", "y"), [float(value) for value in expected])

    def test_types(self):
        for name in "i1 u1 i2 u2 i4 u4 i8 u8 f2 f4 f8 f16".split():
            for order in "<>":
                with self.subTest(type=order + name):
                    self.check(numpy.array(VALUES, numpy.dtype(name).newbyteorder(order)))

    def test_layouts(self):
        apart = numpy.zeros((6, 5))
        apart[:, 3] = VALUES
        packed = numpy.zeros(6, numpy.dtype([("flag", "u1"), ("value", "f8")]))
        packed["value"] = VALUES
        for name, numbers in {
            "column": apart[:, 3],
            "every other": numpy.repeat(VALUES, 2)[::2],
            "backwards": numpy.array(VALUES[::-1])[::-1],
            "not aligned": packed["value"],
            "all in one place": numpy.broadcast_to(5.0, 6),
        }.items():
            with self.subTest(layout=name):
                self.check(numbers, list(numbers))

    def test_read_only(self):
        numbers = numpy.array(VALUES)
        numbers.flags.writeable = False
        self.check(numbers)

    def test_what_is_no_array(self):
        for numbers in (VALUES, tuple(VALUES), array.array("d", VALUES), bytearray(VALUES), numpy.array(VALUES).data):
            with self.subTest(type=type(numbers).__name__):
                self.check(numbers)
        self.check(range(4), range(4))
        self.check([1, 2.5], [1, 2.5])

    def test_what_is_empty_leaves_what_was_shown(self):
        self.check([1, 2.5], [1, 2.5])
        vireo.plot("numbers").curve("y", [])
        self.assertEqual(self.column("numbers", "y"), [1, 2.5])

    def test_large_integers_keep_their_digits(self):
        vireo.image("large", numpy.array([[2**63 + 1, 2**63 + 3]], "u8"))
        self.assertEqual([row[-1] for row in self.rows("large")[1:]], [str(2**63 + 1), str(2**63 + 3)])

    def test_masked_elements_are_gaps(self):
        vireo.plot("masked").curve("y", numpy.ma.array(VALUES, mask=[0, 1, 0, 0, 0, 0]))
        cells = [row[-1] for row in self.rows("masked")[1:]]
        self.assertEqual([cells[0], cells[2]], ["0", "3"])
        self.assertNotEqual(cells[1], "1")

    def test_moments_are_seconds(self):
        moments = numpy.array(["1970-01-02", "1970-01-03"], "M8[D]")
        vireo.plot("moments").curve("y", moments, [1, 2])
        self.assertEqual(self.column("moments", "y x"), [86400, 172800])
        vireo.plot("durations").curve("y", numpy.array([1500], "m8[ms]"), [1])
        self.assertEqual(self.column("durations", "y x"), [1.5])

    def test_moments_of_pythons_are_seconds(self):
        local = datetime.datetime(2024, 5, 17, 12, 30)
        aware = datetime.datetime(1970, 1, 1, 2, tzinfo=datetime.timezone(datetime.timedelta(hours=1)))
        day = datetime.date(2024, 5, 17)
        for moments, expected in (
            ([local, local + datetime.timedelta(seconds=1)], [local.timestamp(), local.timestamp() + 1]),
            (numpy.array([aware], object), [3600]),
            ([day], [datetime.datetime(2024, 5, 17).timestamp()]),
        ):
            vireo.plot("moments of Python's").curve("y", moments, expected)
            self.assertEqual(self.column("moments of Python's", "y x"), expected)
        vireo.plot("appended moments").append("y", aware, 1)
        self.assertEqual(self.column("appended moments", "y x"), [3600])
        with self.assertRaisesRegex(TypeError, "^x is made of object"):
            vireo.plot("moments of Python's").curve("y", [local, None], [1, 2])

    def test_what_is_no_number_is_refused(self):
        plot = vireo.plot("refused")
        for numbers, why in (
            ([True, False], "bool"),
            (numpy.zeros(3, bool), "bool"),
            ([1j], "complex"),
            ("123", "<U3"),
            (["a"], "<U1"),
            (None, "object"),
            ([[1], [1, 2]], "list"),
            (iter([1]), "object"),
            (3, "shape"),
            (numpy.zeros((3, 2)), "shape"),
        ):
            with self.subTest(numbers=numbers), self.assertRaisesRegex(TypeError, "^y .*" + why):
                plot.curve("y", numbers)

    def test_the_copy_is_made_before_the_call_returns(self):
        for numbers in (numpy.arange(10000.0), numpy.arange(20000.0)[::2]):
            first = list(numbers[:3])
            vireo.plot("copied").curve("y", numbers)
            numbers[:] = -1
            self.assertEqual(self.column("copied", "y")[:3], first)

    def test_copies_lie_in_the_memory_of_earlier_ones(self):
        # Memory that the system gives anew is not there before it is written to, page by page.
        code = """
import numpy, resource, vireo
numbers = numpy.zeros((1000000, 2))
def send():
    numbers[0] += 1
    vireo.plot("p").curve("c", numbers.ravel()[:1000000], numbers[:, 1])
for _ in range(3): send()
before = resource.getrusage(resource.RUSAGE_SELF).ru_minflt
for _ in range(10): send()
print(resource.getrusage(resource.RUSAGE_SELF).ru_minflt - before < 2000)
vireo.clear()
"""
        ended = run(code, MALLOC_MMAP_THRESHOLD_="100000")
        self.assertEqual((ended.returncode, ended.stdout), (0, "True\n"), ended.stderr)

    def test_other_threads_go_on_while_numbers_are_copied(self):
        interval = sys.getswitchinterval()
        self.addCleanup(sys.setswitchinterval, interval)
        sys.setswitchinterval(1000)  # nobody is made to let go of the interpreter
        gate = threading.Lock()
        gate.acquire()
        passed = []

        def other():
            with gate:
                passed.append(True)

        thread = threading.Thread(target=other)
        thread.start()
        numbers = numpy.zeros((4000000, 2))[:, 1]
        plot = vireo.plot("copied")
        gate.release()
        for _ in range(200):
            if passed:
                break
            plot.curve("y", numbers)
        is_beside = bool(passed)
        sys.setswitchinterval(interval)
        thread.join()
        self.assertTrue(is_beside)


if __name__ == "__main__":
    unittest.main()
