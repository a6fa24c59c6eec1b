#!/usr/bin/env python3
"""What the writer writes is what FreeImage, netpbm and Pillow read, pixel for pixel; what Pillow writes the reader reads; and
pictures in other layouts and sizes follow the rules of pixel_rules.py."""

import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest

import pixel_rules as rules
from pixel_rules import BGR, BGRA, LAYOUTS, RGB, bytes_of

try:
    from PIL import Image
except ImportError:
    Image = None

SUBJECT = ""
PEER = ""
PICTURES = 60  # of each kind


def run(arguments, data=b""):
    done = subprocess.run(arguments, input=data, capture_output=True, timeout=100, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{arguments} gave {done.returncode}: {done.stderr.decode(errors='replace')[:500]}")
    return done.stdout


def pixmaps(data):
    """[(width, height, bytes R G B)] of the PPM, PGM and PBM images that follow each other."""
    images = []
    while data:
        fields = data.split(None, 4)[:3 if data.startswith(b"P4") else 4]
        width, height = int(fields[1]), int(fields[2])
        at = 0
        for field in fields:
            at = data.index(field, at) + len(field)
        if fields[0] == b"P4":
            stride = (width + 7) // 8
            bits = data[at + 1:at + 1 + stride * height]
            pixels = b"".join(b"\0\0\0" if bits[y * stride + x // 8] >> (7 - x % 8) & 1 else b"\xff\xff\xff"
                              for y in range(height) for x in range(width))
            images.append((width, height, pixels))
            data = data[at + 1 + stride * height:]
            continue
        size = width * height * (3 if fields[0] == b"P6" else 1)
        samples = data[at + 1:at + 1 + size]
        images.append((width, height, samples if fields[0] == b"P6" else bytes(v for v in samples for _ in range(3))))
        data = data[at + 1 + size:]
    return images


def opaque(rgb):
    result = bytearray(b"\xff" * (len(rgb) // 3 * 4))
    for channel in range(3):
        result[channel::4] = rgb[channel::3]
    return bytes(result)


def swapped(pixels, size):
    """Red and blue change places."""
    result = bytearray(pixels)
    result[0::size], result[2::size] = pixels[2::size], pixels[0::size]
    return bytes(result)


def without_alpha(rgba):
    result = bytearray(len(rgba) // 4 * 3)
    for channel in range(3):
        result[channel::3] = rgba[channel::4]
    return bytes(result)


def in_palette(bgr):
    """R G B as the fixed palette of our GIF files shows them."""
    threes, twos = [v * 36 + v // 2 for v in range(8)], [v * 85 for v in range(4)]
    result = bytearray(bgr)
    result[0::3] = bytes(threes[v >> 5] for v in bgr[2::3])
    result[1::3] = bytes(threes[v >> 5] for v in bgr[1::3])
    result[2::3] = bytes(twos[v >> 6] for v in bgr[0::3])
    return bytes(result)


class Frames(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.subject = subprocess.Popen([SUBJECT], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    @classmethod
    def tearDownClass(cls):
        cls.subject.stdin.close()
        cls.subject.stdout.close()
        cls.subject.wait(60)

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.chance = random.Random(7)

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def put(self, name, data):
        with open(self.path(name), "wb") as file:
            file.write(data)
        return self.path(name)

    def get(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def ask(self, *words):
        self.subject.stdin.write(" ".join(map(str, words)) + "\n")
        self.subject.stdin.flush()
        return self.subject.stdout.readline().split()

    def info(self, path):
        status, *numbers = self.ask("info", path)
        self.assertEqual(status, "00000000", path)
        return dict(zip(("type", "frames", "layout", "width", "height", "time"), map(int, numbers)))

    def read(self, path, layout, width, height, padding=0, frame=0):
        """The rows of the buffer, without the room behind them."""
        answer = self.ask("read", frame, layout, width, height, padding, path, self.path("out"))
        self.assertEqual(answer[0], "00000000", path)
        whole = self.get("out")
        used = (width * bytes_of(layout) + padding) * height
        self.assertEqual(whole[used:], bytes((width * 4 + padding) * height - used))
        return whole[:used]

    def raw(self, path, frame=0):
        self.assertEqual(self.ask("raw", frame, path, self.path("out"))[0], "00000000", path)
        return self.get("out")

    def peer(self, path, page=0):
        """(width, height, R G B A) as FreeImage alone has it."""
        width, height = map(int, run([PEER, path, str(page), self.path("peer")]).split())
        return width, height, swapped(self.get("peer"), 4)

    def sizes(self, most):
        return [1 + self.chance.randrange(most) for _ in range(4)]

    def noise(self, layout, width, height, padding):
        count = (width * bytes_of(layout) + padding) * height
        if self.chance.randrange(2):
            return self.chance.randbytes(count)
        return bytes((i * 5 // 3 + i // 70) % 256 for i in range(count))  # smooth

    def written(self, name, own, frames=1, even=False):
        """A file of frames that the writer made of pictures of any layout and size: (path, width, height, the frames by the
        rules, in the file's own layout)."""
        layout, padding = self.chance.choice(LAYOUTS), self.chance.randrange(8)
        width, height, to_width, to_height = self.sizes(40)
        if self.chance.randrange(4) == 0:
            width, height = to_width, to_height
        if even:
            to_width += to_width % 2
        pictures = [self.noise(layout, width, height, padding) for _ in range(frames)]
        path = self.path(name)
        answer = self.ask("write", frames, own, to_width, to_height, 0, layout, width, height, padding, path,
                          self.put("in", b"".join(pictures)))
        self.assertEqual(answer, ["00000000"], name)
        expected = [rules.frame(layout, width, height, padding, p, own, to_width, to_height, 0) for p in pictures]
        return path, to_width, to_height, expected

    # --- what the writer writes ---

    def test_tga_files(self):
        for turn in range(PICTURES):
            path, width, height, (bgra,) = self.written("a.tga", BGRA)
            rgba = swapped(bgra, 4)
            self.assertEqual(self.peer(path), (width, height, rgba), f"turn {turn}, FreeImage")
            self.assertEqual(pixmaps(run(["tgatoppm", path])), [(width, height, without_alpha(rgba))], f"turn {turn}, netpbm")
            picture = Image.open(path)
            self.assertEqual((picture.size, picture.convert("RGBA").tobytes()), ((width, height), rgba), f"turn {turn}, Pillow")

    def test_bmp_files(self):
        for turn in range(PICTURES):
            path, width, height, (bgr,) = self.written("a.bmp", BGR)
            rgb = swapped(bgr, 3)
            self.assertEqual(self.peer(path), (width, height, opaque(rgb)), f"turn {turn}, FreeImage")
            self.assertEqual(pixmaps(run(["bmptopnm", "-quiet", path])), [(width, height, rgb)], f"turn {turn}, netpbm")
            picture = Image.open(path)
            self.assertEqual((picture.size, picture.convert("RGB").tobytes()), ((width, height), rgb), f"turn {turn}, Pillow")

    def test_pcx_files(self):
        """Rows of an odd length: only netpbm takes them as they are, the others want bytes of padding that are not there."""
        for turn in range(PICTURES):
            path, width, height, (rgb,) = self.written("a.pcx", RGB, even=turn % 2 == 0)
            self.assertEqual(pixmaps(run(["pcxtoppm", path])), [(width, height, rgb)], f"turn {turn}, netpbm")
            if turn % 2 == 0:
                self.assertEqual(self.peer(path), (width, height, opaque(rgb)), f"turn {turn}, FreeImage")
                picture = Image.open(path)
                self.assertEqual((picture.size, picture.convert("RGB").tobytes()), ((width, height), rgb), f"turn {turn}, Pillow")

    def test_gif_files(self):
        for turn in range(PICTURES):
            path, width, height, frames = self.written("a.gif", BGR, frames=1 + turn % 4)
            shown = [in_palette(frame) for frame in frames]
            self.assertEqual(pixmaps(run(["giftopnm", "-image=all", path])), [(width, height, rgb) for rgb in shown], f"turn {turn}")
            picture = Image.open(path)
            self.assertEqual(getattr(picture, "n_frames"), len(shown))
            for number, rgb in enumerate(shown):
                self.assertEqual(self.peer(path, number), (width, height, opaque(rgb)), f"turn {turn}, FreeImage, {number}")
                picture.seek(number)
                self.assertEqual(picture.convert("RGB").tobytes(), rgb, f"turn {turn}, Pillow, {number}")
                self.assertEqual(swapped(self.raw(path, number), 3), rgb, f"turn {turn}, the reader, {number}")

    def test_jpg_files(self):
        """Pillow and netpbm have the same codec behind them; FreeImage decodes faster and less exactly."""
        for turn in range(PICTURES):
            path, width, height, (bgr,) = self.written("a.jpg", BGR)
            rgb = swapped(self.raw(path), 3)
            self.assertEqual(pixmaps(run(["djpeg", "-dct", "int", path])), [(width, height, rgb)], f"turn {turn}, djpeg")
            picture = Image.open(path)
            self.assertEqual((picture.size, picture.convert("RGB").tobytes()), ((width, height), rgb), f"turn {turn}, Pillow")
            self.assertEqual(self.peer(path)[:2], (width, height), f"turn {turn}, FreeImage")
            self.assertEqual(len(rgb), len(bgr))

    def test_a_plain_picture_stays_near_in_a_jpg_file(self):
        pixels = bytes((x * 2 + y + 40 * c) % 256 if c < 2 else 90 for y in range(40) for x in range(60) for c in range(3))
        pixels = bytes(min(value, 200) for value in pixels)
        path = self.path("a.jpg")
        self.assertEqual(self.ask("write", 1, BGR, 60, 40, 0, BGR, 60, 40, 0, path, self.put("in", pixels)), ["00000000"])
        for name, shown in (("Pillow", swapped(Image.open(path).convert("RGB").tobytes(), 3)),
                            ("FreeImage", swapped(without_alpha(self.peer(path)[2]), 3))):
            error = sum(abs(a - b) for a, b in zip(shown, pixels)) / len(pixels)
            self.assertLess(error, 6, name)

    # --- what Pillow writes ---

    def picture(self, mode):
        width, height = 1 + self.chance.randrange(50), 5 + self.chance.randrange(50)
        if mode == "1":
            return Image.frombytes("L", (width, height), self.chance.randbytes(width * height)).convert("1", dither=0)
        if mode == "P":
            picture = Image.frombytes("P", (width, height), self.chance.randbytes(width * height))
            picture.putpalette(self.chance.randbytes(768))
            return picture
        size = {"L": 1, "LA": 2, "RGB": 3, "RGBA": 4}[mode]
        return Image.frombytes(mode, (width, height), self.chance.randbytes(width * height * size))

    def check_file(self, path, picture, what, by_peer=True):
        width, height = picture.size
        info = self.info(path)
        self.assertEqual((info["width"], info["height"]), (width, height), what)
        has_alpha = picture.mode in ("LA", "RGBA")
        self.assertEqual(info["layout"], BGRA if has_alpha else BGR, what)
        expected = picture.convert("RGBA").tobytes()
        self.assertEqual(swapped(self.read(path, BGRA, width, height), 4), expected, what)
        raw = self.raw(path)
        self.assertEqual(swapped(raw, 4) if has_alpha else opaque(swapped(raw, 3)), expected, what)
        if by_peer:
            self.assertEqual(self.peer(path)[2], expected, f"{what}, FreeImage alone")

    def test_png_files_of_pillow(self):
        for mode in ("1", "L", "LA", "P", "RGB", "RGBA"):
            for turn in range(8):
                picture = self.picture(mode)
                picture.save(self.path("a.png"))
                self.check_file(self.path("a.png"), picture, f"{mode} {turn}")

    def test_tif_files_of_pillow(self):
        for compression in (None, "packbits", "tiff_lzw", "tiff_deflate", "tiff_adobe_deflate"):
            for mode in ("1", "L", "LA", "P", "RGB", "RGBA"):
                picture = self.picture(mode)
                if mode == "LA":  # FreeImage has one alpha for all pixels of a grey
                    grey = picture.getchannel("L")
                    picture = Image.merge("LA", (grey, grey.point(lambda value: value ^ 0x5A)))
                picture.save(self.path("a.tif"), compression=compression)
                if mode == "P":  # Pillow writes 256 times the colours, FreeImage cuts down what that is of 65535
                    picture.putpalette([value * 256 * 255 // 65535 for value in picture.getpalette()])
                # Pillow does not tell the samples of L and P, which FreeImage alone takes for alpha
                self.check_file(self.path("a.tif"), picture, f"{mode} {compression}", by_peer=mode not in ("L", "P"))
        for compression in ("group3", "group4"):
            picture = self.picture("1")
            picture.save(self.path("a.tif"), compression=compression)
            self.check_file(self.path("a.tif"), picture, compression)

    def test_gif_files_of_pillow(self):
        for mode in ("1", "L", "P"):
            for interlaced in (False, True):
                picture = self.picture(mode)
                picture.save(self.path("a.gif"), interlace=interlaced)
                self.check_file(self.path("a.gif"), picture, f"{mode} interlaced: {interlaced}")

    # --- layouts and sizes ---

    def test_frames_in_every_layout_and_many_sizes(self):
        pairs = [(1, 1), (1, 2), (2, 1), (3, 2), (2, 3), (4, 3), (5, 9), (16, 8), (17, 5), (33, 66), (67, 66), (100, 99)]
        pairs += [(1 + self.chance.randrange(300), 1 + self.chance.randrange(300)) for _ in range(36 if rules.numpy else 4)]
        for turn, (length, size) in enumerate(pairs):
            other, to_other = self.chance.choice(pairs[:12])
            width, height, to_width, to_height = (length, other, size, to_other) if turn % 2 else (other, length, to_other, size)
            source = (BGRA, BGR, RGB)[turn % 3]
            pixels = self.noise(source, width, height, 0)
            mode, name = {BGRA: ("RGBA", "a.tga"), BGR: ("RGB", "a.png"), RGB: ("RGB", "a.pcx")}[source]
            if source == RGB and width % 2:
                continue  # Pillow pads its rows
            Image.frombytes(mode, (width, height), pixels if source == RGB else swapped(pixels, bytes_of(source))).save(self.path(name))
            for layout in LAYOUTS:
                padding = self.chance.randrange(8)
                expected = rules.frame(source, width, height, 0, pixels, layout, to_width, to_height, padding)
                got = self.read(self.path(name), layout, to_width, to_height, padding)
                self.assertEqual(got, expected, f"{name} {width}x{height} as {layout} {to_width}x{to_height}+{padding}")

    @unittest.skipUnless(rules.numpy, "this machine has no numpy: only the rules in plain Python judge")
    def test_both_forms_of_the_rules_agree(self):
        for layout in LAYOUTS:
            for target in LAYOUTS:
                width, height, to_width, to_height = self.sizes(9)
                shape = (layout, width, height, 3, self.noise(layout, width, height, 3), target, to_width, to_height, 2)
                self.assertEqual(rules.Plain.frame(*shape), rules.Numpy.frame(*shape), shape)


if __name__ == "__main__":
    SUBJECT, PEER = sys.argv.pop(1), sys.argv.pop(1)
    MISSING = [program for program in ("tgatoppm", "bmptopnm", "pcxtoppm", "giftopnm", "djpeg") if shutil.which(program) is None]
    if Image is None:
        MISSING.append("Pillow for " + sys.executable)
    if MISSING:
        print("skipped: not installed here: " + ", ".join(MISSING))
        sys.exit(77)
    unittest.main(verbosity=2)
