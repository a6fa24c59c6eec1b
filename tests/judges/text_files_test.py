#!/usr/bin/env python3
"""Text files beside iconv, file(1) and Python's codecs: what we write they read, what they write we read."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

SUBJECT = ""
LATIN = ["caf\u00e9", "", "\u20ac 12,50 \u2013 \u201cquoted\u201d", "a\tb", "x" * 100_000, "\u00ff" * 5000]
UNICODE = LATIN + ["\u4e2d\u56fd", "\U0001f3b5 music", "\u0416\u03a9\u05d0", "\ufeff mark inside"]
PAGES = {  # ANSI page: what it can hold beside ASCII
    "1250": ["\u0159\u017e\u0141"], "1251": ["\u0416\u044f"], "1252": LATIN, "1253": ["\u03a9"], "1254": ["\u011f\u0130"],
    "874": ["\u0e01\u0e02"], "932": ["\u65e5\u672c\uff76"], "936": ["\u4e2d\u56fd\u20ac"], "949": ["\ud55c\uae00"],
    "950": ["\u4e2d\u570b"],
}


def run(arguments, data=b"", **more):
    done = subprocess.run(arguments, input=data, capture_output=True, timeout=60, check=False, **more)
    if done.returncode != 0:
        raise AssertionError(f"{arguments} gave {done.returncode}: {done.stderr.decode(errors='replace')}")
    return done.stdout


def iconv(data, source, target="UTF-8"):
    return run(["iconv", "-f", source, "-t", target], data)


def subject(mode, how, path, lines=(), page="1252"):
    data = "".join(line + "\n" for line in lines).encode()
    return run([SUBJECT, mode, how, path], data, env=dict(os.environ, QXV_ACP=page)).decode()


def crlf(lines):
    return "".join(line + "\r\n" for line in lines)


def utf16(lines):
    return b"\xff\xfe" + crlf(lines).encode("utf-16-le")


class TextFiles(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = os.path.join(self.folder.name, "lines.txt")

    def write(self, data):
        with open(self.path, "wb") as file:
            file.write(data)

    def read(self):
        with open(self.path, "rb") as file:
            return file.read()

    def kind(self):
        return run(["file", "--brief", self.path]).decode().lower()

    def test_unicode_files_that_we_write(self):
        for how in ("lines", "unicode", "adopt"):
            with self.subTest(how=how):
                self.write(b"\xff\xfe")
                subject("write", how, self.path, UNICODE)
                self.assertEqual(iconv(self.read(), "UTF-16").decode(), crlf(UNICODE))
                for word in ("utf-16", "little-endian", "crlf"):
                    self.assertIn(word, self.kind())

    def test_ansi_files_that_we_write(self):
        for page, lines in PAGES.items():
            for how in ("lines", "ansi"):
                with self.subTest(page=page, how=how):
                    self.write(b"")
                    subject("write", how, self.path, lines, page)
                    self.assertEqual(iconv(self.read(), "CP" + page).decode(), crlf(lines))

    def test_ascii_files_that_we_write(self):
        self.write(b"")
        subject("write", "lines", self.path, ["one", "two"])
        self.assertIn("ascii text, with crlf line terminators", self.kind())

    def test_unicode_files_that_others_write(self):
        for name, data in (("python", utf16(UNICODE)), ("iconv", iconv(("\ufeff" + crlf(UNICODE)).encode(), "UTF-8", "UTF-16LE"))):
            for how in ("lines", "unicode", "adopt"):
                with self.subTest(written_by=name, how=how):
                    self.write(data)
                    expected = "\n".join(UNICODE) + "\n" if how == "lines" else crlf(UNICODE)
                    self.assertEqual(subject("read", how, self.path), expected)
                    self.assertEqual(self.read(), data)

    def test_ansi_files_that_others_write(self):
        for page, lines in PAGES.items():
            for how in ("lines", "ansi", "adopt"):
                with self.subTest(page=page, how=how):
                    self.write(iconv(crlf(lines).encode(), "UTF-8", "CP" + page))
                    expected = "\n".join(lines) + "\n" if how == "lines" else crlf(lines)
                    self.assertEqual(subject("read", how, self.path, page=page), expected)

    def test_files_that_are_converted_where_they_are(self):
        for page, lines in PAGES.items():
            with self.subTest(page=page):
                ansi = iconv(crlf(lines).encode(), "UTF-8", "CP" + page)
                self.write(ansi)
                self.assertEqual(subject("read", "unicode", self.path, page=page), crlf(lines))
                self.assertEqual(self.read(), utf16(lines))
                self.assertEqual(subject("read", "ansi", self.path, page=page), crlf(lines))
                self.assertEqual(self.read(), ansi)


if __name__ == "__main__":
    missing = [program for program in ("iconv", "file") if shutil.which(program) is None]
    if missing:
        print("skipped: not installed here: " + ", ".join(missing))
        sys.exit(77)
    SUBJECT = sys.argv.pop(1)
    unittest.main()
