#!/usr/bin/env python3
"""Drives beside df and /proc/mounts: every mounted file system that df lists becomes a letter."""

import os
import shutil
import subprocess
import sys
import unittest

SUBJECT = ""
NOISE = 64 << 20  # bytes that other programs may write or free between two looks
MEMORY, NETWORK, DISC, REMOVABLE, FIXED = 6, 4, 5, 2, 3
NETWORK_TYPES = {"cifs", "smb3", "nfs", "nfs4", "9p", "ceph", "fuse.sshfs"}


def run(arguments, **more):
    return subprocess.run(arguments, capture_output=True, timeout=60, check=False, text=True, **more).stdout


def df():
    """Mount point to (size, used), of file systems that have blocks."""
    lines = run(["df", "-B1", "--all", "--output=size,used,target"]).splitlines()[1:]
    found = {}
    for line in lines:
        size, used, target = line.split(None, 2)
        if size.isdigit() and used.isdigit() and int(size) > 0 and os.path.isdir(target) and ";" not in target:
            found[target] = int(size), int(used)
    return found


def mounted_type(target):
    """The type of the last mount on that folder."""
    found = ""
    with open("/proc/mounts", encoding="utf-8", errors="surrogateescape") as file:
        for line in file:
            _, folder, kind = line.split()[:3]
            if folder.encode("latin-1", "backslashreplace").decode("unicode_escape") == target:
                found = kind
    return found


def allowed_kinds(kind):
    if kind in ("tmpfs", "ramfs"):
        return {MEMORY}
    if kind in NETWORK_TYPES:
        return {NETWORK}
    if kind == "iso9660":
        return {DISC}
    return {FIXED, REMOVABLE, MEMORY, DISC}


class Disks(unittest.TestCase):
    def test_every_file_system_of_df(self):
        targets = sorted(df())[:25]
        self.assertIn("/", targets)
        letters = dict(zip(targets, "ABCDEFGHIJKLMNOPQRSTUVWXY"))
        drives = ";".join(f"{letter}={target}" for target, letter in letters.items())
        for target, letter in letters.items():
            with self.subTest(target=target):
                total, free, kind = map(int, run([SUBJECT, letter + ":\\"], env=dict(os.environ, QXV_DRIVES=drives)).split())
                size, used = df()[target]
                self.assertEqual(total, size)
                self.assertAlmostEqual(free, size - used, delta=NOISE)
                self.assertIn(kind, allowed_kinds(mounted_type(target)))

    def test_the_root_is_z(self):
        total, _, kind = map(int, run([SUBJECT, "z"]).split())
        self.assertEqual(total, df()["/"][0])
        self.assertIn(kind, allowed_kinds(mounted_type("/")))


if __name__ == "__main__":
    if shutil.which("df") is None or not os.path.exists("/proc/mounts"):
        print("skipped: no df or no /proc/mounts here")
        sys.exit(77)
    SUBJECT = sys.argv.pop(1)
    unittest.main()
