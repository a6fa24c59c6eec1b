#!/usr/bin/env python3
"""A digest that is saved by the Windows program and taken up by the Linux one, and back, ends as Python's hashlib says."""

import hashlib
import os
import random
import subprocess
import sys
import tempfile
import unittest

WINDOWS = []  # the program, behind what runs it
LINUX = []


def run(program, folder, upto, what):
    drive_form = "Z:" + folder.replace("/", "\\")
    done = subprocess.run(program + [drive_form, str(upto), what], capture_output=True, timeout=60, check=False, text=True)
    if done.returncode != 0:
        raise AssertionError(f"{program} gave {done.returncode}: {done.stderr[:500]}")
    return done.stdout.split()


class Md5Carry(unittest.TestCase):
    def carry(self, first, second, cuts, size):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "carried.MD5frag")
            before = 0
            for number, cut in enumerate(cuts):
                self.assertEqual(run(second if number % 2 else first, folder, cut, "save"), [str(before)])
                self.assertEqual(os.path.getsize(path), 96)
                before = cut
            expected = hashlib.md5(bytes(i & 0xFF for i in range(size))).hexdigest()
            self.assertEqual(run(second if len(cuts) % 2 else first, folder, size, "end"), [str(before), expected])
            self.assertFalse(os.path.exists(path))

    def test_from_windows_to_linux(self):
        self.carry(WINDOWS, LINUX, [100], 200)

    def test_from_linux_to_windows(self):
        self.carry(LINUX, WINDOWS, [100], 200)

    def test_there_and_back_at_random_places(self):
        numbers = random.Random(2)
        for _ in range(4):
            size = numbers.randrange(200, 5000)
            self.carry(WINDOWS, LINUX, sorted(numbers.sample(range(1, size), 4)), size)

    def test_both_write_the_same_bytes(self):
        files = []
        for program in (WINDOWS, LINUX):
            with tempfile.TemporaryDirectory() as folder:
                run(program, folder, 1000, "save")
                with open(os.path.join(folder, "carried.MD5frag"), "rb") as file:
                    files.append(file.read())
        self.assertEqual(files[0], files[1])


if __name__ == "__main__":
    LINUX = [sys.argv.pop(1)]
    WINDOWS = sys.argv[2:] + [sys.argv[1]]
    del sys.argv[1:]
    if not os.path.exists(LINUX[0]):
        print("skipped: the Linux program is not built: " + LINUX[0])
        sys.exit(77)
    unittest.main()
