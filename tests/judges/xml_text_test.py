#!/usr/bin/env python3
"""XML that we write, read by xmllint and by Python's parser (expat); and what they write, read by us."""

import os
import random
import shutil
import subprocess
import sys
import unittest
import xml.etree.ElementTree as ElementTree

SUBJECT = ""
DECLARATION = '<?xml version="1.0"?>'
VALUES = ["", "plain", "1 & 2", "<'\">", "&amp;", "a  b ", "caf\u00e9", "\u4e2d\u56fd", "\U0001f3b5", "]]>", "x" * 100_000]


def run(arguments, text):
    done = subprocess.run(arguments, input=text.encode(), capture_output=True, timeout=60, check=False,
                          env=dict(os.environ, XMLLINT_INDENT=""))
    if done.returncode != 0:
        raise AssertionError(f"{arguments} gave {done.returncode}: {done.stderr.decode(errors='replace')}")
    return done.stdout.decode()


def items(element):
    """The lines in which the subject takes and gives a tree."""
    lines = ["<" + element.tag]
    for name, value in element.attrib.items():
        lines += ["@" + name, "=" + value]
    for child in element:
        lines += items(child)
    return lines + [">"]


def tree(source, depth=0):
    """A tree of random shape; every value stands in it."""
    element = ElementTree.Element("e%d" % depth)
    for number, value in enumerate(VALUES if depth == 0 else source.sample(VALUES[:-1], 3)):
        element.set("a%d" % number, value)
    if depth < 5:
        element.extend(tree(source, depth + 1) for _ in range(source.randrange(1, 4)))
    return element


def lined(element):
    return "".join(line + "\n" for line in items(element))


class XmlText(unittest.TestCase):
    def setUp(self):
        self.trees = [tree(random.Random(seed)) for seed in range(10)]

    def test_python_reads_what_we_write(self):
        for element in self.trees:
            written = run([SUBJECT, "write"], lined(element))
            self.assertEqual(items(ElementTree.fromstring(DECLARATION + written)), items(element))

    def test_xmllint_accepts_what_we_write_and_means_the_same(self):
        for element in self.trees:
            written = run([SUBJECT, "write"], lined(element))
            canonical = run(["xmllint", "--nonet", "--c14n", "-"], DECLARATION + written)
            again = run(["xmllint", "--nonet", "--c14n", "-"], ElementTree.tostring(element, encoding="unicode"))
            self.assertEqual(canonical.replace("\n", ""), again.replace("\n", ""))

    def test_we_read_what_python_writes(self):
        for element in self.trees:
            written = ElementTree.tostring(element, encoding="unicode")
            self.assertEqual(run([SUBJECT, "read"], DECLARATION + written), lined(element))

    def test_we_read_what_xmllint_writes(self):
        for element in self.trees:
            for how in (["--format"], ["--noblanks"]):
                formatted = run(["xmllint", "--nonet", "--encode", "UTF-8", *how, "-"], ElementTree.tostring(element, encoding="unicode"))
                self.assertEqual(run([SUBJECT, "read"], formatted), lined(element))

    def test_texts_that_the_judges_refuse_give_no_tree(self):
        for text in ("<a>", "<a/><b/>", "<a x='1' x='2'/>", "<a x='<'/>", "<a x='&u;'/>", "<a></b>", "<a x=1/>", "<1/>"):
            with self.subTest(text=text):
                with self.assertRaises(ElementTree.ParseError):
                    ElementTree.fromstring(text)
                self.assertEqual(run([SUBJECT, "read"], DECLARATION + text), "<\n>\n")


if __name__ == "__main__":
    if shutil.which("xmllint") is None:
        print("skipped: not installed here: xmllint")
        sys.exit(77)
    SUBJECT = sys.argv.pop(1)
    unittest.main()
