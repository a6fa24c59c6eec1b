#!/usr/bin/env python3
"""qxvtool image beside netpbm, gifsicle and libjpeg: what we convert they read, pixel for pixel where the type keeps pixels."""

import os
import random

import tool_case
from tool_case import ToolCase, judge, needs

RED, GREEN, WHITE = (255, 0, 0), (0, 255, 0), (255, 255, 255)


def ppm(width, height, pixels):
    return f"P6\n{width} {height}\n255\n".encode() + pixels


def pixels_of(data):
    """(width, height, R G B bytes) of a PPM or PGM."""
    magic, width, height, _ = data.split(None, 3)
    width, height = int(width), int(height)
    depth = 3 if magic == b"P6" else 1
    pixels = data[len(data) - width * height * depth:]
    return width, height, pixels if depth == 3 else bytes(value for value in pixels for _ in range(3))


def one_colour(width, height, colour):
    return ppm(width, height, bytes(colour) * (width * height))


class Convert(ToolCase):
    def setUp(self):
        super().setUp()
        self.pixels = random.Random(3).randbytes(37 * 21 * 3)

    def bitmap(self, name="in.bmp"):
        self.write(name, judge("ppmtobmp", "-quiet", "-bpp=24", data=ppm(37, 21, self.pixels)))

    @needs("ppmtobmp", "bmptopnm", "tgatoppm", "pcxtoppm")
    def test_types_that_keep_pixels(self):
        self.bitmap()
        for target, reader in (("out.bmp", "bmptopnm"), ("out.tga", "tgatoppm"), ("out.pcx", "pcxtoppm")):
            self.assertEqual(self.answer("image", "convert", "in.bmp", target), f"{target}: 37 x 21\n")
            self.assertEqual(pixels_of(judge(reader, "-quiet", self.path(target))), (37, 21, self.pixels), target)

    @needs("ppmtobmp", "bmptopnm", "pnmtopng", "pnmtotiff")
    def test_types_that_are_only_read(self):
        self.write("in.png", judge("pnmtopng", "-quiet", data=ppm(37, 21, self.pixels)))
        self.write("in.tif", judge("pnmtotiff", "-quiet", "-truecolor", "-none", data=ppm(37, 21, self.pixels)))
        for source in ("in.png", "in.tif"):
            self.answer("image", "convert", source, "out.bmp")
            self.assertEqual(pixels_of(judge("bmptopnm", "-quiet", self.path("out.bmp"))), (37, 21, self.pixels), source)
        for target in ("out.png", "out.tif", "out.xyz", "out"):
            self.assertIn("these are: bmp, gif, jpg, pcx, tga, yuv", self.refusal("image", "convert", "in.png", target, code=2))
            self.assertFalse(os.path.exists(self.path(target)))

    @needs("ppmtobmp", "djpeg")
    def test_jpg(self):
        smooth = bytes(value for y in range(64) for x in range(64) for value in (4 * x, 4 * y, 128))
        self.write("in.bmp", judge("ppmtobmp", "-quiet", "-bpp=24", data=ppm(64, 64, smooth)))
        self.answer("image", "convert", "in.bmp", "out.jpg")
        width, height, pixels = pixels_of(judge("djpeg", self.path("out.jpg")))
        self.assertEqual((width, height), (64, 64))
        self.assertLess(sum(abs(a - b) for a, b in zip(smooth, pixels, strict=True)) / len(smooth), 4)

    @needs("ppmtobmp", "bmptopnm")
    def test_size(self):
        self.write("in.bmp", judge("ppmtobmp", "-quiet", "-bpp=24", data=one_colour(40, 30, RED)))
        self.assertEqual(self.json("image", "convert", "in.bmp", "out.bmp", "--size", "100x7"),
                         {"file": "out.bmp", "width": 100, "height": 7, "frames": 1})
        self.assertEqual(pixels_of(judge("bmptopnm", "-quiet", self.path("out.bmp"))), (100, 7, bytes(RED) * 700))
        for size in ("100", "0x1", "1x0", "100x", "x100", "1x1x1", "-1x5", "99999x1"):
            self.refusal("image", "convert", "in.bmp", "b.bmp", "--size=" + size, code=2)

    @needs("ppmtobmp")
    def test_there_and_back_through_our_own_type(self):
        self.bitmap()
        self.answer("image", "convert", "in.bmp", "grey.yuv")
        info = self.json("image", "info", "grey.yuv")[0]
        self.assertEqual((info["type"], info["width"], info["height"], info["layout"]), ("YUV", 37, 21, "YUV"))

    def test_damaged_files(self):
        self.write("a.bmp", b"BM nonsense")
        self.write("a.gif", b"GIF89a nonsense")
        self.write("a.jpg", b"nonsense")
        for name in ("a.bmp", "a.gif", "a.jpg"):
            self.assertIn(f"qxvtool: {name}: ", self.refusal("image", "convert", name, "out.tga"))
            self.assertIn("error", self.json("image", "info", name, code=1)[0])

    @needs("ppmtobmp")
    def test_a_place_that_cannot_be_written(self):
        self.bitmap()
        self.assertEqual(self.refusal("image", "convert", "in.bmp", "none/out.tga"), "qxvtool: none/out.tga: cannot be created\n")


class Info(ToolCase):
    @needs("ppmtobmp")
    def test_fields(self):
        size = len(judge("ppmtobmp", "-quiet", "-bpp=24", data=one_colour(40, 30, RED)))
        self.write("in.bmp", judge("ppmtobmp", "-quiet", "-bpp=24", data=one_colour(40, 30, RED)))
        expected = {"file": "in.bmp", "type": "BMP", "width": 40, "height": 30, "layout": "BGR", "frames": 1, "bytes": size}
        self.assertEqual(self.json("image", "info", "in.bmp", "in.bmp"), [expected, expected])
        self.assertIn("  width   40\n  height  30\n", self.answer("image", "info", "in.bmp"))

    def test_unknown_type(self):
        self.write("in.xyz", b"nonsense")
        self.assertIn("in.xyz: not a type of image", self.refusal("image", "info", "in.xyz"))


class Frames(ToolCase):
    COLOURS = (RED, GREEN, WHITE)

    def animation(self):
        names = []
        for number, colour in enumerate(self.COLOURS):
            name = self.write(f"{number}.gif", judge("ppmtogif", "-quiet", data=one_colour(16, 12, colour)))
            names.append(self.path(name))
        judge("gifsicle", "--delay=10", "--loopcount=forever", *names, "-o", self.path("anim.gif"))

    @needs("ppmtogif", "gifsicle", "bmptopnm")
    def test_each_as_a_file(self):
        self.animation()
        info = self.json("image", "info", "anim.gif")[0]
        self.assertEqual((info["frames"], info["frame_milliseconds"], info["type"]), (3, 100, "GIF"))
        files = self.json("image", "frames", "anim.gif", "new/stills")
        self.assertEqual(files, [f"new/stills/anim_00{number}.bmp" for number in (1, 2, 3)])
        for name, colour in zip(files, self.COLOURS, strict=True):
            self.assertEqual(pixels_of(judge("bmptopnm", "-quiet", self.path(name))), (16, 12, bytes(colour) * 192), name)

    @needs("ppmtogif", "gifsicle", "bmptopnm")
    def test_one_of_them(self):
        self.animation()
        self.answer("image", "convert", "anim.gif", "second.bmp", "--frame", "2")
        self.assertEqual(pixels_of(judge("bmptopnm", "-quiet", self.path("second.bmp"))), (16, 12, bytes(GREEN) * 192))
        self.assertIn("anim.gif: has no frame 4 (there are 3)", self.refusal("image", "convert", "anim.gif", "a.bmp", "--frame", "4"))
        self.refusal("image", "convert", "anim.gif", "a.bmp", "--frame", "0")

    @needs("ppmtogif", "gifsicle", "giftopnm")
    def test_all_of_them_in_another_animation(self):
        self.animation()
        self.assertEqual(self.json("image", "convert", "anim.gif", "half.gif", "--size", "8x6")["frames"], 3)
        self.assertIn(b"3 images", judge("gifsicle", "--info", self.path("half.gif")))
        for number, colour in enumerate(self.COLOURS, 1):
            frame = pixels_of(judge("giftopnm", "-quiet", f"-image={number}", self.path("half.gif")))
            self.assertEqual(frame, (8, 6, bytes(colour) * 48), number)


if __name__ == "__main__":
    tool_case.main()
