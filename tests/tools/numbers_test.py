#!/usr/bin/env python3
"""qxvtool crc, guid, round, spline and geometry."""

import math
import re

import tool_case
from tool_case import ToolCase, judge, needs

GUID = re.compile(r"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")


class Crc(ToolCase):
    def test_check_value(self):
        self.assertEqual(self.answer("crc", "--text", "123456789"), "0376e6e7  123456789\n")

    def test_empty_file_is_the_preset(self):
        self.write("empty", b"")
        self.assertEqual(self.json("crc", "empty"), [{"file": "empty", "crc": "ffffffff"}])

    def test_expectation(self):
        self.write("a", b"123456789")
        self.answer("crc", "a", "--expect", "376E6E7")
        self.assertIn("a: has the CRC 0376e6e7, not 00000001", self.refusal("crc", "a", "--expect", "1"))
        self.assertIn("--expect xyz", self.refusal("crc", "a", "--expect", "xyz", code=2))

    def test_files_or_a_text(self):
        self.refusal("crc", code=2)
        self.refusal("crc", "a", "--text", "b", code=2)


class Guid(ToolCase):
    def test_forms_and_marks(self):
        for method in ("system", "random", "milliseconds", "seconds", "counter"):
            lines = self.answer("guid", "--count", "20", "--method", method).split()
            self.assertEqual(len(lines), 20)
            for line in lines:
                self.assertTrue(GUID.fullmatch(line), line)
                self.assertTrue(method == "system" or line[19:23] == "5158", line)  # Q and X

    def test_new_ones_each(self):
        ids = self.json("guid", "--count", "1000")
        self.assertEqual(len(set(ids)), 1000)

    def test_wrong_use(self):
        self.refusal("guid", "--count", "0", code=2)
        self.refusal("guid", "--method", "dice", code=2)


class Round(ToolCase):
    def test_figures_decimals_and_steps(self):
        for arguments, expected in [
            (["1234.5", "--figures", "2"], "1200"), (["1234.5", "--figures", "2", "--to", "up"], "1300"),
            (["-1234.5", "--figures", "2", "--to", "down"], "-1300"), (["12.345", "--decimals", "2", "--to", "zero"], "12.34"),
            (["12.346", "--decimals", "2"], "12.35"), (["16", "--decimals", "-1"], "20"), (["0.5", "--decimals", "0"], "1"),
            (["17.3", "--step", "0.25", "--to", "down"], "17.25"), (["17.3", "--step", "0.25", "--to", "up"], "17.5"),
        ]:
            self.assertEqual(self.answer("round", *arguments), expected + "\n", arguments)

    def test_json(self):
        self.assertEqual(self.json("round", "1234.5", "0.05", "--figures", "1"),
                         [{"value": 1234.5, "rounded": 1000, "exponent": 3}, {"value": 0.05, "rounded": 0.05, "exponent": -2}])

    def test_wrong_use(self):
        for arguments in (["1"], ["1", "--figures", "2", "--step", "1"], ["x", "--figures", "2"], ["1e3", "--figures", "2"],
                          ["1", "--figures", "2", "--to", "nearest"], ["1", "--figures", "10"]):
            self.refusal("round", *arguments, code=2)


class Spline(ToolCase):
    def test_samples_of_a_straight_line(self):
        answer = self.json("spline", "line.bmp", "0,0", "30,40", "60,80", "--step", "10")
        self.assertEqual(answer["length"], 100)
        self.assertEqual(answer["count"], len(answer["samples"]))
        for x, y in answer["samples"]:
            self.assertAlmostEqual(3 * y, 4 * x, 2)
        first, last = answer["samples"][0], answer["samples"][-1]
        self.assertAlmostEqual(math.hypot(*first), 0, 3)
        self.assertAlmostEqual(math.hypot(*last), 100, 3)

    @needs("bmptopnm")
    def test_picture(self):
        self.answer("spline", "curve.bmp", "0,0", "100,0", "--size", "148x101")
        data = judge("bmptopnm", "-quiet", self.path("curve.bmp"))
        self.assertTrue(data.startswith(b"P6\n148 101\n255\n"), data[:20])
        pixels = data[-148 * 101 * 3:]

        def at(x, y):
            return tuple(pixels[(y * 148 + x) * 3:][:3])

        # One scale of 1, a margin of 24, the line in the middle of the height.
        self.assertEqual(at(74, 50), (30, 105, 190))
        self.assertEqual(at(25, 50), (215, 85, 45))
        self.assertEqual(at(123, 51), (215, 85, 45))
        self.assertEqual(at(74, 20), (252, 252, 250))

    def test_wrong_use(self):
        for arguments in (["a.png", "0,0", "1,1"], ["a.bmp", "0,0"], ["a.bmp", "0,0", "x,1"], ["a.bmp", "0,0", "0,0"], ["a.bmp", "0,0,0", "1,1,1"],
                          ["a.bmp", "0,0", "1,1", "--size", "0x5"], ["a.bmp", "0,0", "1,1", "--size", "axb"],
                          ["a.bmp", "0,0", "1,1", "--step", "0.00000001"]):
            self.refusal("spline", *arguments, code=2)

    def test_a_file_that_cannot_be_made(self):
        self.assertIn("none/a.bmp: cannot be created", self.refusal("spline", "none/a.bmp", "0,0", "1,1"))


class Geometry(ToolCase):
    def test_lines_of_the_plane(self):
        self.assertEqual(self.json("geometry", "lines", "0,0", "4,4", "0,4", "4,0"), {"relation": "intersecting", "point": [2, 2]})
        self.assertEqual(self.json("geometry", "lines", "0,0", "1,0", "0,1", "1,1"), {"relation": "parallel", "point": None})
        self.assertEqual(self.json("geometry", "lines", "0,0", "1,0", "2,0", "3,0"), {"relation": "coincident", "point": None})

    def test_lines_of_space(self):
        answer = self.json("geometry", "lines", "0,0,0", "1,0,0", "0,0,5", "0,1,5")
        self.assertEqual((answer["relation"], answer["point"], answer["distance"]), ("skew", None, 5))
        self.assertAlmostEqual(answer["degrees"], 90)

    def test_foot(self):
        self.assertEqual(self.answer("geometry", "foot", "3,4", "0,0", "1,0"), "foot      3, 0\ndistance  4\n")
        self.assertEqual(self.json("geometry", "foot", "-3,4,0", "0,0,0", "1,0,0"), {"foot": [-3, 0, 0], "distance": 4})

    def test_pierce(self):
        answer = self.json("geometry", "pierce", "1,1,-1", "1,1,1", "0,0,0", "1,0,0", "0,1,0")
        self.assertEqual((answer["relation"], answer["point"], answer["normal"]), ("intersecting", [1, 1, 0], [0, 0, 1]))
        self.assertAlmostEqual(answer["degrees"], 90, 4)

    def test_turn(self):
        image = self.json("geometry", "turn", "1,0,0", "0,0,0", "0,0,1", "--degrees", "90")["image"]
        for value, expected in zip(image, (0, 1, 0), strict=True):
            self.assertAlmostEqual(value, expected)

    def test_degenerate_ones(self):
        for arguments in (["lines", "0,0", "0,0", "0,4", "4,0"], ["foot", "1,1", "0,0", "0,0"], ["foot", "1,1,1", "0,0,0", "0,0,0"],
                          ["lines", "0,0,0", "0,0,0", "0,4,0", "4,0,0"], ["turn", "1,0,0", "0,0,0", "0,0,0", "--degrees", "90"]):
            self.assertIn("the two points of a line are the same", self.refusal("geometry", *arguments), arguments)
        self.assertIn("the three points of a plane lie in a line",
                      self.refusal("geometry", "pierce", "0,0,0", "0,0,1", "0,0,0", "1,0,0", "2,0,0"))

    def test_wrong_use(self):
        for arguments in (["foot", "1", "2", "3"], ["foot", "1,1", "2,2,2", "3,3"], ["turn", "1,0", "0,0", "0,1", "--degrees", "9"],
                          ["foot", "1,,1", "2,2,2", "3,3,3"]):
            self.refusal("geometry", *arguments, code=2)


if __name__ == "__main__":
    tool_case.main()
