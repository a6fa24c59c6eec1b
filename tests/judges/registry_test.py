#!/usr/bin/env python3
"""Registry values beside programs of others: the sqlite3 shell over the Linux store, Wine's reg over the Windows registry.

usage: registry_test.py subject          native: the store
       registry_test.py subject wine...  cross-built: what comes before a Windows program to run it
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SUBJECT = []
WINE = []
TYPES = {1: "REG_SZ", 3: "REG_BINARY", 4: "REG_DWORD"}
WRITTEN = {  # by the subject; texts as hexadecimal UTF-16 units
    "Number": ("REG_DWORD", "FEFFFFFF"),
    "Text": ("REG_SZ", "630061006600E900"),
    "Texts": ("REG_BINARY", "02000000" "02000000" "41004200" "01000000" "2D4E"),
    "Words": ("REG_BINARY", "02000000" "0100" "FFFF"),
    "Point": ("REG_BINARY", "02000000" "03000000" "FCFFFFFF"),
    "Rectangle": ("REG_BINARY", "04000000" "01000000" "02000000" "03000000" "04000000"),
}
OTHERS = {  # what the judge writes, and what the subject must read
    "Number": ("REG_DWORD", "07000000", "7"),
    "Text": ("REG_SZ", "61006200", "ab"),
    "Texts": ("REG_BINARY", "01000000" "03000000" "780079007A00", "xyz;"),
    "Words": ("REG_BINARY", "03000000" "0A00" "0B00" "0C00", "10;11;12;"),
    "Point": ("REG_BINARY", "03000000" "010000000200000003000000", "code 2304776775"),  # 0x89601A47
    "Rectangle": ("REG_BINARY", "04000000" "05000000" "06000000" "07000000" "FFFFFFFF", "5,6,7,-1"),
}


def run(arguments, **more):
    done = subprocess.run(arguments, stdin=subprocess.DEVNULL, capture_output=True, timeout=60, check=False, **more)
    if done.returncode != 0:
        raise AssertionError(f"{arguments} gave {done.returncode}: {done.stdout!r} {done.stderr!r}")
    return done.stdout


class Store:
    """The sqlite3 shell over a store of its own."""

    def __init__(self, test):
        folder = tempfile.TemporaryDirectory()
        test.addCleanup(folder.cleanup)
        self.path = os.path.join(folder.name, "registry.sqlite")
        self.key = "Software\\Judge"

    def subject(self, mode):
        return run([*SUBJECT, mode, self.key], env=dict(os.environ, QXV_REGISTRY=self.path)).decode()

    def sql(self, text):
        return run(["sqlite3", "-batch", "-bail", self.path, text]).decode().splitlines()

    def values(self):
        rows = self.sql("SELECT value.name, type, hex(data) FROM value JOIN key ON key.id = value.key"
                        " JOIN key AS above ON above.id = key.parent WHERE key.name = 'Judge' AND above.name = 'Software'")
        return {name: (TYPES[int(kind)], data) for name, kind, data in (row.split("|") for row in rows)}

    def write(self, name, kind, data):
        number = next(number for number, text in TYPES.items() if text == kind)
        self.sql(f"UPDATE value SET type = {number}, data = x'{data}' WHERE name = '{name}'")

    def check(self, test):
        test.assertEqual(self.sql("PRAGMA integrity_check"), ["ok"])
        test.assertEqual(self.sql("PRAGMA foreign_key_check"), [])


class Registry:
    """Wine's reg over a key that is deleted afterwards. Its query hides whether a text was stored with a terminator, which the unit
    tests ask for; its export takes one for granted and drops the last character of a text without."""

    def __init__(self, test):
        self.key = f"Software\\QXVCommonLibU judge {os.getpid()}"
        test.addCleanup(lambda: self.reg("delete", "/f"))

    def subject(self, mode):
        return run([*SUBJECT, mode, self.key]).decode().replace("\r\n", "\n")

    def reg(self, verb, *arguments):
        return run([*WINE, "reg", verb, "HKLM\\" + self.key, *arguments]).decode("cp437")  # the console's page

    def values(self):
        found = {}
        for line in self.reg("query").splitlines():
            match = re.fullmatch(r"    (\w+)    (REG_\w+)    (.*)", line)
            if match:
                name, kind, data = match.groups()
                if kind == "REG_DWORD":
                    data = int(data, 16).to_bytes(4, "little").hex().upper()
                elif kind == "REG_SZ":
                    data = data.encode("utf-16-le").hex().upper()
                found[name] = (kind, data)
        return found

    def write(self, name, kind, data):
        if kind == "REG_DWORD":
            data = str(int.from_bytes(bytes.fromhex(data), "little"))
        elif kind == "REG_SZ":
            data = bytes.fromhex(data).decode("utf-16-le")
        self.reg("add", "/v", name, "/t", kind, "/d", data, "/f")

    def check(self, test):
        pass


class RegistryValues(unittest.TestCase):
    def setUp(self):
        self.judge = Registry(self) if WINE else Store(self)
        self.judge.subject("write")

    def test_values_that_we_write(self):
        self.assertEqual(self.judge.values(), WRITTEN)
        self.judge.check(self)

    def test_values_that_others_write(self):
        for name, (kind, data, _) in OTHERS.items():
            self.judge.write(name, kind, data)
        expected = "".join(f"{name}={shown}\n" for name, (_, _, shown) in OTHERS.items())
        self.assertEqual(self.judge.subject("read"), expected)
        self.judge.check(self)


if __name__ == "__main__":
    WINE = sys.argv[2:]
    SUBJECT = [*WINE, sys.argv[1]]
    if not WINE and shutil.which("sqlite3") is None:
        print("skipped: not installed here: sqlite3")
        sys.exit(77)
    del sys.argv[1:]
    unittest.main()
