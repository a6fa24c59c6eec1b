#!/usr/bin/env python3
"""WAV files beside libsndfile's programs, sox and Python's wave module: what we write they read, what they write we read."""

import array
import os
import random
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import wave

SUBJECT = ""
SCALE = {1: 128.0, 2: 32768.0, 3: 8388608.0}


def run(arguments, data=b""):
    done = subprocess.run(arguments, input=data, capture_output=True, timeout=60, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{arguments} gave {done.returncode}: {done.stderr.decode(errors='replace')}")
    return done.stdout


def floats(data):
    values = array.array("f")
    values.frombytes(data)
    return values.tolist()


def integers(count, width, seed):
    """Samples as whole numbers, the extreme ones among them."""
    source = random.Random(seed)
    limit = 1 << (8 * width - 1)
    values = [-limit, limit - 1, 0, 1, -1][:count]
    return values + [source.randrange(-limit, limit) for _ in range(count - len(values))]


def packed(values, width):
    if width == 1:
        return bytes(value + 128 for value in values)
    return b"".join((value & (1 << 8 * width) - 1).to_bytes(width, "little") for value in values)


class WavFiles(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.ours = os.path.join(folder.name, "ours.wav")
        self.theirs = os.path.join(folder.name, "theirs.wav")

    def read(self, path):
        head, data = run([SUBJECT, "read", path]).split(b"\n", 1)
        return [int(word) for word in head.split()], floats(data)

    def test_python_reads_what_we_write(self):
        for channels in (1, 2, 5):
            for width in (2, 3):
                values = integers(channels * 400, width, channels * width)
                data = array.array("f", (value / SCALE[width] for value in values)).tobytes()
                run([SUBJECT, "write", self.ours, str(channels), "44100", str(width), "400"], data)
                with wave.open(self.ours) as file:
                    self.assertEqual((file.getnchannels(), file.getframerate(), file.getsampwidth(), file.getnframes()),
                                     (channels, 44100, width, 400))
                    self.assertEqual(file.readframes(400), packed(values, width))

    def test_we_read_what_python_writes(self):
        for channels in (1, 2, 6):
            for width in (1, 2, 3):
                values = integers(channels * 300, width, channels + width)
                with wave.open(self.theirs, "wb") as file:
                    file.setnchannels(channels)
                    file.setsampwidth(width)
                    file.setframerate(48000)
                    file.writeframes(packed(values, width))
                head, samples = self.read(self.theirs)
                self.assertEqual(head, [channels, 48000, channels * width, 300])
                self.assertEqual(samples, [value / SCALE[width] for value in values])
                part = floats(run([SUBJECT, "range", self.theirs, "100", "50"]))
                self.assertEqual(part, samples[100 * channels:150 * channels])

    def test_sox_reads_what_we_write(self):
        for width, encoding in ((2, "signed-integer"), (3, "signed-integer"), (4, "floating-point")):
            values = [value / 32768.0 for value in integers(600, 2, 7)]
            run([SUBJECT, "write", self.ours, "2", "48000", str(width), "300"], array.array("f", values).tobytes())
            self.assertEqual(run(["soxi", "-s", self.ours]).strip(), b"300")
            raw = run(["sox", "-D", self.ours, "-t", "raw", "-e", "floating-point", "-b", "32", "-L", "-"])
            self.assertEqual(floats(raw), values, encoding)

    def test_we_read_what_sox_writes(self):
        values = [value / 32768.0 for value in integers(600, 2, 8)]
        raw = array.array("f", values).tobytes()
        source = ["-t", "raw", "-e", "floating-point", "-b", "32", "-L", "-c", "2", "-r", "48000", "-"]
        for bits, encoding in ((16, "signed-integer"), (24, "signed-integer"), (32, "floating-point")):
            # 24 bits and floats come in an extensible format of 40 bytes.
            run(["sox", "-D"] + source + ["-b", str(bits), "-e", encoding, self.theirs], raw)
            head, samples = self.read(self.theirs)
            self.assertEqual(head, [2, 48000, bits // 4, 300])
            self.assertEqual(samples, values, f"{bits} bits")

    def test_libsndfile_converts_what_we_write(self):
        values = [value / 32768.0 for value in integers(400, 2, 9)]
        run([SUBJECT, "write", self.ours, "2", "32000", "2", "200"], array.array("f", values).tobytes())
        for option, width in (("-pcm24", 3), ("-float32", 4)):
            run(["sndfile-convert", option, self.ours, self.theirs])
            head, samples = self.read(self.theirs)
            self.assertEqual(head, [2, 32000, 2 * width, 200])
            self.assertEqual(samples, values, option)

    def test_libsndfile_reads_24_bits(self):
        values = integers(400, 3, 10)
        run([SUBJECT, "write", self.ours, "1", "96000", "3", "400"], array.array("f", (v / SCALE[3] for v in values)).tobytes())
        run(["sndfile-convert", "-pcm24", self.ours, self.theirs])
        with wave.open(self.theirs) as file:
            self.assertEqual(file.readframes(400), packed(values, 3))

    def test_straight_lines_in_exact_numbers(self):
        values = [value / 32768.0 for value in integers(500, 2, 11)]
        for source, target in ((48000, 44100), (44100, 48000), (22050, 44100), (96000, 8000)):
            samples = floats(run([SUBJECT, "resample", str(source), str(target)], array.array("f", values).tobytes()))
            self.assertEqual(len(samples), len(values) * target // source)
            for i, sample in enumerate(samples):
                position = float(i) * source / target
                k = int(position)
                s0 = values[k]
                s1 = values[k + 1] if k + 1 < len(values) else 0.0
                expected = (position - k) * s1 + (k + 1 - position) * s0
                self.assertEqual(sample, struct.unpack("f", struct.pack("f", expected))[0], (source, target, i))


if __name__ == "__main__":
    missing = [program for program in ("sox", "soxi", "sndfile-convert") if shutil.which(program) is None]
    if missing:
        print("skipped: not installed here: " + ", ".join(missing))
        sys.exit(77)
    SUBJECT = sys.argv.pop(1)
    unittest.main()
