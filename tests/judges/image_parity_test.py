#!/usr/bin/env python3
"""The Windows library and the Linux one read the same pictures of every test file and every frame."""

import os
import subprocess
import sys
import unittest

WINDOWS = []  # the program, behind what runs it
LINUX = []
DATA = ""
EXTENSIONS = (".bmp", ".gif", ".jpg", ".pcx", ".png", ".tga", ".tif", ".yuv")
MOST_FRAMES = 8


def answers(program, lines):
    done = subprocess.run(program, input="".join(line + "\n" for line in lines), capture_output=True, timeout=100, check=True,
                          text=True)
    return done.stdout.splitlines()


class Parity(unittest.TestCase):
    def test_every_file_and_frame(self):
        files = sorted(os.path.join(folder, name) for folder, _, names in os.walk(DATA) for name in names
                       if name.lower().endswith(EXTENSIONS))
        self.assertGreater(len(files), 40)
        lines = [f"info {file}" for file in files]
        lines += [f"digest {frame} {file}" for file in files for frame in range(MOST_FRAMES if file.endswith("gif") else 1)]
        windows = [line.replace(DATA, "Z:" + DATA).replace("/", "\\") for line in lines]
        ours, theirs = answers(LINUX, lines), answers(WINDOWS, windows)
        self.assertEqual(len(ours), len(lines))
        self.assertEqual(len(theirs), len(lines))
        self.assertEqual([(line, w, l) for line, w, l in zip(lines, theirs, ours) if w != l], [], "line, Windows, Linux")
        decoded = [answer for answer in ours[len(files):] if answer.startswith("00000000 ")]
        self.assertGreater(len(decoded), 40)


if __name__ == "__main__":
    LINUX, WINDOWS, DATA = [sys.argv[1]], sys.argv[4:] + [sys.argv[2]], sys.argv[3]
    if not os.path.exists(LINUX[0]):
        print(f"skipped: {LINUX[0]} is not built")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1], verbosity=2)
