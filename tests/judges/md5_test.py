#!/usr/bin/env python3
"""Digests of 1,000 files of 0 to 3 MiB beside md5sum and openssl."""

import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest

SUBJECT = ""
FILES = 1000
BATCH = 100
LARGEST = 3 << 20
EDGES = [0, 1, 55, 56, 57, 63, 64, 65, 119, 120, 127, 128, 129, LARGEST - 1, LARGEST]


def run(arguments, data=""):
    done = subprocess.run(arguments, input=data, capture_output=True, timeout=60, check=False, text=True)
    if done.returncode != 0:
        raise AssertionError(f"{arguments[:2]} gave {done.returncode}: {done.stderr[:500]}")
    return done.stdout


def table(text):
    """Path to digest, of lines 'digest  path' or 'digest *path'."""
    return {line[32:].strip().lstrip("*"): line[:32] for line in text.splitlines()}


def size_of(number, numbers):
    if number < len(EDGES):
        return EDGES[number]
    if number % 10 == 0:
        return numbers.randrange(LARGEST + 1)
    return int(2 ** numbers.uniform(0, 17))


class Md5(unittest.TestCase):
    def judge(self, with_context):
        numbers = random.Random(1)
        judged = 0
        for first in range(0, FILES, BATCH):
            with tempfile.TemporaryDirectory() as folder:
                names = [os.path.join(folder, f"{number}.bin") for number in range(first, first + BATCH)]
                for number, name in enumerate(names, first):
                    with open(name, "wb") as file:
                        file.write(numbers.randbytes(size_of(number, numbers)))
                contexts = [os.path.join(folder, "contexts")] if with_context else []
                ours = table(run([SUBJECT] + contexts, "".join(name + "\n" for name in names)))
                self.assertEqual(len(ours), BATCH)
                self.assertEqual(ours, table(run(["md5sum"] + names)))
                self.assertEqual(ours, table(run(["openssl", "md5", "-r"] + names)))
                judged += len(ours)
        self.assertEqual(judged, FILES)

    def test_files_in_random_pieces(self):
        self.judge(with_context=False)

    def test_files_whose_digest_is_saved_and_taken_up(self):
        self.judge(with_context=True)


if __name__ == "__main__":
    missing = [program for program in ("md5sum", "openssl") if shutil.which(program) is None]
    if missing:
        print("skipped: not installed here: " + ", ".join(missing))
        sys.exit(77)
    SUBJECT = sys.argv.pop(1)
    unittest.main()
