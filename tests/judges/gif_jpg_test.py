#!/usr/bin/env python3
"""GIF and JPG files beside netpbm, giflib, gifsicle and libjpeg's programs: what we write they read, what they write we read."""

import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest

SUBJECT = ""
IMAGES = 250


def run(arguments, data=b""):
    done = subprocess.run(arguments, input=data, capture_output=True, timeout=60, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{arguments} gave {done.returncode}: {done.stderr.decode(errors='replace')}")
    return done.stdout


def pixmap(data):
    """[(width, height, bytes R G B)] of the PPM and PGM images that follow each other."""
    images = []
    while data:
        fields = data.split(None, 4)[:4]
        kind, width, height = fields[0], int(fields[1]), int(fields[2])
        at = 0
        for field in fields:
            at = data.index(field, at) + len(field)
        size = width * height * (3 if kind == b"P6" else 1)
        samples = data[at + 1:at + 1 + size]
        images.append((width, height, samples if kind == b"P6" else bytes(v for v in samples for _ in range(3))))
        data = data[at + 1 + size:]
    return images


def swapped(pixels):
    """R G B of B G R, and back."""
    result = bytearray(pixels)
    result[0::3], result[2::3] = pixels[2::3], pixels[0::3]
    return bytes(result)


def picture(chance, width, height):
    """B G R: noise, few colours or shades."""
    size = width * height * 3
    kind = chance.randrange(3)
    if kind == 0:
        return chance.randbytes(size)
    if kind == 1:
        colours = [chance.randbytes(3) for _ in range(1 + chance.randrange(5))]
        run_length = 1 + chance.randrange(60)
        return b"".join(chance.choice(colours) * run_length for _ in range(width * height // run_length + 1))[:size]
    return bytes((x * 3 + y * k * 2) % 256 for y in range(height) for x in range(width) for k in range(3))


def in_palette(pixels):
    """R G B as the fixed palette shows B G R."""
    threes, twos = [v * 32 + v * 4 + v // 2 for v in range(8)], [v * 85 for v in range(4)]
    result = bytearray(pixels)
    result[0::3] = bytes(threes[v >> 5] for v in pixels[2::3])
    result[1::3] = bytes(threes[v >> 5] for v in pixels[1::3])
    result[2::3] = bytes(twos[v >> 6] for v in pixels[0::3])
    return bytes(result)


class Pictures(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = os.path.join(self.folder.name, "picture")
        self.chance = random.Random(5)

    def write(self, kind, width, height, pixels):
        run([SUBJECT, kind, str(width), str(height), self.path], pixels)

    def put(self, data):
        with open(self.path, "wb") as file:
            file.write(data)

    def got(self):
        with open(self.path, "rb") as file:
            return file.read()

    def read(self):
        """(width, height, R G B) as we read it."""
        line, _, pixels = run([SUBJECT, "read", self.path]).partition(b"\n")
        width, height = map(int, line.split())
        return width, height, swapped(pixels)

    def size(self, most):
        return 1 + self.chance.randrange(most), 1 + self.chance.randrange(most)

    def test_gif_files_that_we_write(self):
        for turn in range(IMAGES):
            width, height = self.size(300 if turn % 20 == 0 else 70)
            pixels = picture(self.chance, width, height)
            self.write("gif", width, height, pixels)
            self.assertEqual(pixmap(run(["giftopnm", self.path])), [(width, height, in_palette(pixels))], f"turn {turn}")

    def test_gif_files_of_several_frames(self):
        frames = [picture(self.chance, 90, 70) for _ in range(5)]
        self.write("gif", 90, 70, b"".join(frames))
        self.assertEqual(pixmap(run(["giftopnm", "-image=all", self.path])), [(90, 70, in_palette(frame)) for frame in frames])
        text = run(["giftext", self.path]).decode()
        self.assertEqual(text.count("Image Size - Left = 0, Top = 0, Width = 90, Height = 70"), 5)
        listing = run(["gifsicle", "--info", self.path]).decode()
        self.assertIn("5 images", listing)
        self.assertIn("logical screen 90x70", listing)
        self.assertIn("global color table [256]", listing)
        again = pixmap(run(["giftopnm", "-image=all"], run(["gifsicle", "--unoptimize", self.path])))
        self.assertEqual([image[2] for image in again], [in_palette(frame) for frame in frames])

    def test_jpg_files_that_we_write(self):
        for turn in range(IMAGES):
            width, height = self.size(300 if turn % 20 == 0 else 70)
            pixels = picture(self.chance, width, height)
            self.write("jpg", width, height, pixels)
            ppm = b"P6\n%d %d\n255\n" % (width, height) + swapped(pixels)
            self.assertEqual(self.got(), run(["cjpeg", "-quality", "70", "-sample", "2x2", "-dct", "int"], ppm), f"turn {turn}")
            self.assertEqual(pixmap(run(["djpeg", self.path])), [self.read()], f"turn {turn}")

    def test_jpg_files_that_cjpeg_writes(self):
        ways = [[], ["-progressive"], ["-grayscale"], ["-grayscale", "-progressive"], ["-arithmetic"], ["-optimize"], ["-rgb"],
                ["-sample", "1x1"], ["-sample", "2x1"], ["-restart", "1"], ["-quality", "100"], ["-quality", "5"]]
        for way in ways * 8:
            width, height = self.size(150)
            ppm = b"P6\n%d %d\n255\n" % (width, height) + picture(self.chance, width, height)
            self.put(run(["cjpeg"] + way, ppm))
            self.assertEqual(pixmap(run(["djpeg", self.path])), [self.read()], way)

    def test_jpg_files_cut_short(self):
        for way in ([], ["-progressive"], ["-grayscale"]):
            whole = run(["cjpeg"] + way, b"P6\n120 90\n255\n" + picture(random.Random(1), 120, 90))
            for size in range(whole.index(b"\xff\xda") + 20, len(whole), 97):
                self.put(whole[:size])
                shown = subprocess.run(["djpeg", self.path], capture_output=True, timeout=60, check=False)
                if shown.returncode in (0, 2):  # 2: with warnings; where djpeg gives up inside a table we show what came before
                    self.assertEqual(pixmap(shown.stdout), [self.read()], f"{way} {size}")
                else:
                    self.assertEqual(self.read()[:2], (120, 90), f"{way} {size}")


if __name__ == "__main__":
    SUBJECT = sys.argv.pop(1)
    MISSING = [program for program in ("giftopnm", "giftext", "gifsicle", "cjpeg", "djpeg") if shutil.which(program) is None]
    if MISSING:
        print("skipped: this machine has no " + ", ".join(MISSING))
        sys.exit(77)
    unittest.main(verbosity=2)
