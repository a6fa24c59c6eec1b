#!/usr/bin/env python3
"""BMP, TGA and PCX files beside netpbm and Pillow: what we write they read, what they write we read, pixel for pixel."""

import json
import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest

SUBJECT = ""
PICTURES = 400  # of each kind that we write

# A list of jobs from the standard input: a file to read and one for what it holds, or a mode, a size, pixels and a file to write.
PILLOW = """
import json, sys
from PIL import Image
for job in json.load(sys.stdin):
    if len(job) == 2:
        image = Image.open(job[0])
        with open(job[1], "wb") as file:
            file.write(b"%d %d %d\\n" % (image.size + (len(image.getbands()),)) + image.tobytes())
    else:
        mode, size, pixels, name, options = job
        with open(pixels, "rb") as file:
            Image.frombytes(mode, size, file.read()).save(name, **options)
"""


def python_with_pillow():
    for python in (sys.executable, "/usr/bin/python3"):
        if shutil.which(python) and subprocess.run([python, "-c", "import PIL"], capture_output=True, check=False).returncode == 0:
            return python
    return None


def run(arguments, data=b""):
    done = subprocess.run(arguments, input=data, capture_output=True, timeout=100, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{arguments} gave {done.returncode}: {done.stderr.decode(errors='replace')[:500]}")
    return done.stdout


def pam(width, height, depth, pixels):
    kind = {1: "GRAYSCALE", 3: "RGB", 4: "RGB_ALPHA"}[depth]
    header = f"P7\nWIDTH {width}\nHEIGHT {height}\nDEPTH {depth}\nMAXVAL 255\nTUPLTYPE {kind}\nENDHDR\n"
    return header.encode() + pixels


def ppm(width, height, pixels):
    return f"P6\n{width} {height}\n255\n".encode() + pixels


def pixels_of(data):
    """(width, height, samples a pixel, bytes) of a PAM, PPM, PGM or PBM file."""
    if data.startswith(b"P7"):
        header, pixels = data.split(b"ENDHDR\n", 1)
        fields = dict(line.split(None, 1) for line in header.decode().splitlines()[1:])
        return int(fields["WIDTH"]), int(fields["HEIGHT"]), int(fields["DEPTH"]), pixels
    magic, width, height, rest = data.split(None, 3)
    width, height = int(width), int(height)
    if magic == b"P4":
        bits = data[len(data) - (width + 7) // 8 * height:]
        stride = (width + 7) // 8
        return width, height, 1, bytes(0 if bits[y * stride + x // 8] >> (7 - x % 8) & 1 else 255
                                       for y in range(height) for x in range(width))
    depth = 3 if magic == b"P6" else 1
    return width, height, depth, data[len(data) - width * height * depth:]


def as_rgb(picture):
    width, height, depth, pixels = picture
    if depth == 1:
        return width, height, bytes(value for value in pixels for _ in range(3))
    return width, height, pixels if depth == 3 else b"".join(pixels[i:i + 3] for i in range(0, len(pixels), 4))


def noise(generator, count):
    return generator.randbytes(count)


def stretches(generator, count):
    parts = []
    while sum(map(len, parts)) < count:
        parts.append(generator.randbytes(1) * generator.randrange(1, 150))
        parts.append(generator.randbytes(generator.randrange(0, 12)))
    return b"".join(parts)[:count]


def coloured(generator, count, colours):
    """Pixels of at most so many colours, all of them used where there is room."""
    table = [generator.randbytes(3) for _ in range(colours)]
    order = list(range(colours)) + [generator.randrange(colours) for _ in range(count)]
    return b"".join(table[index] for index in order[:count])


class ImageCodecs(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(dir="/dev/shm" if os.path.isdir("/dev/shm") else None)
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.random = random.Random(1)

    def path(self, name):
        return os.path.join(self.folder, name)

    def put(self, name, data):
        with open(self.path(name), "wb") as file:
            file.write(data)
        return self.path(name)

    def pictures(self, count, depth, even_width=False):
        for index in range(count):
            width, height = self.random.randrange(1, 71), self.random.randrange(1, 21)
            if even_width:
                width += width % 2
            make = noise if index % 2 else stretches
            yield width, height, make(self.random, width * height * depth)

    def through_subject(self, mode, kind, pairs):
        for first in range(0, len(pairs), 100):
            run([SUBJECT, mode, kind] + [path for pair in pairs[first:first + 100] for path in pair])

    def check_what_we_write(self, kind, depth, reader):
        """Our files through a program of netpbm."""
        pictures = list(self.pictures(PICTURES, depth))
        pairs = [(self.put(f"{i}.pam", pam(w, h, depth, pixels)), self.path(f"{i}.{kind}")) for i, (w, h, pixels) in enumerate(pictures)]
        self.through_subject("write", kind, pairs)
        for (width, height, pixels), (_, path) in zip(pictures, pairs):
            self.assertEqual(as_rgb(pixels_of(run([reader, "-quiet", path]))), as_rgb((width, height, depth, pixels)), path)

    def check_what_others_write(self, kind, files):
        """Their files, made of known pixels, through our codec: pairs of a file and its picture."""
        pairs = [(self.put(f"{i}.{kind}", data), self.path(f"{i}.pam")) for i, (data, _) in enumerate(files)]
        self.through_subject("read", kind, pairs)
        for (_, expected), (_, path) in zip(files, pairs):
            with open(path, "rb") as file:
                width, height, depth, pixels = pixels_of(file.read())
            self.assertEqual((width, height, depth, pixels) if len(expected) == 4 else as_rgb((width, height, depth, pixels)), expected, path)

    def test_bmp_files_that_we_write(self):
        self.check_what_we_write("bmp", 3, "bmptopnm")

    def test_tga_files_that_we_write(self):
        self.check_what_we_write("tga", 4, "tgatoppm")

    def test_pcx_files_that_we_write(self):
        self.check_what_we_write("pcx", 3, "pcxtoppm")

    def test_bmp_files_that_others_write(self):
        files = []
        for bits, count in ((24, 150), (8, 100), (4, 75), (1, 75)):
            for width, height, pixels in self.pictures(count, 3):
                if bits != 24:
                    pixels = coloured(self.random, width * height, min(1 << bits, width * height))
                files.append((run(["ppmtobmp", "-quiet", f"-bpp={bits}"], ppm(width, height, pixels)), (width, height, pixels)))
        self.check_what_others_write("bmp", files)

    def test_tga_files_that_others_write(self):
        files = []
        for options in ([], ["-norle"]):
            for width, height, pixels in self.pictures(75, 3):
                files.append((run(["pamtotga", "-quiet", "-rgb"] + options, ppm(width, height, pixels)), (width, height, pixels)))
            for width, height, pixels in self.pictures(75, 4):
                files.append((run(["pamtotga", "-quiet"] + options, pam(width, height, 4, pixels)), (width, height, 4, pixels)))
        self.check_what_others_write("tga", files)

    def test_pcx_files_that_others_write(self):
        """Rows of an odd length carry a byte of padding there, which we misread on purpose."""
        files = []
        for width, height, pixels in self.pictures(100, 3, even_width=True):
            files.append((run(["ppmtopcx", "-quiet", "-24bit"], ppm(width, height, pixels)), (width, height, pixels)))
        for width, height, _ in self.pictures(100, 3, even_width=True):
            pixels = coloured(self.random, width * height, min(256, width * height))
            files.append((run(["ppmtopcx", "-quiet", "-8bit"], ppm(width, height, pixels)), (width, height, pixels)))
        self.check_what_others_write("pcx", files)

    def pillow(self, jobs):
        python = python_with_pillow()
        if python is None:
            print("skipped: Pillow is not installed here")
            self.skipTest("Pillow is not installed here")
        run([python, "-c", PILLOW], json.dumps(jobs).encode())

    def test_files_that_we_write_by_pillow(self):
        for kind, depth in (("bmp", 3), ("tga", 4), ("pcx", 3)):
            pictures = list(self.pictures(100, depth))
            pairs = [(self.put(f"{i}.pam", pam(w, h, depth, pixels)), self.path(f"{i}.{kind}")) for i, (w, h, pixels) in enumerate(pictures)]
            self.through_subject("write", kind, pairs)
            self.pillow([(path, path + ".raw") for _, path in pairs])
            for (width, height, pixels), (_, path) in zip(pictures, pairs):
                with open(path + ".raw", "rb") as file:
                    self.assertEqual(file.read(), b"%d %d %d\n" % (width, height, depth) + pixels, path)

    def test_files_that_pillow_writes(self):
        """Sides that need no padding, which in PCX files we misread on purpose."""
        kinds = {"bmp": (("RGB", {}), ("RGBA", {}), ("L", {}), ("1", {})),
                 "tga": tuple((mode, options) for mode in ("RGB", "RGBA") for options in ({}, {"compression": "tga_rle"})),
                 "pcx": (("RGB", {}), ("L", {}), ("1", {}))}
        for kind, ways in kinds.items():
            jobs, files = [], []
            for mode, options in ways * 25:
                width, height = 16 * self.random.randrange(1, 7), self.random.randrange(1, 21)
                depth = {"RGB": 3, "RGBA": 4}.get(mode, 1)
                stored = stretches(self.random, width * height * depth // (8 if mode == "1" else 1))
                pixels = bytes(255 * (byte >> bit & 1) for byte in stored for bit in range(7, -1, -1)) if mode == "1" else stored
                picture = (width, height, 4, pixels) if depth == 4 else as_rgb((width, height, depth, pixels))
                jobs.append((mode, (width, height), self.put(f"{len(jobs)}.raw", stored), self.path(f"pillow{len(jobs)}.{kind}"), options))
                files.append((jobs[-1][3], picture))
            self.pillow(jobs)
            self.check_what_others_write(kind, [(self.got(name), picture) for name, picture in files])

    def got(self, name):
        with open(name, "rb") as file:
            return file.read()


if __name__ == "__main__":
    programs = ("bmptopnm", "ppmtobmp", "tgatoppm", "pamtotga", "pcxtoppm", "ppmtopcx")
    missing = [program for program in programs if shutil.which(program) is None]
    if missing:
        print("skipped: not installed here: " + ", ".join(missing))
        sys.exit(77)
    SUBJECT = sys.argv.pop(1)
    unittest.main()
