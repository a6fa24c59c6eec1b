#!/usr/bin/env python3
"""qxvtool xml, dict and ini."""

import xml.etree.ElementTree

import tool_case
from tool_case import ToolCase

DOCUMENT = '<?xml version="1.0"?>\n<project version="2"><clip name="a &amp; b" start="10"/><bin><clip name="\u4e2d"/></bin></project>'


def tree_of(element):
    return {"name": element.tag, "attributes": dict(element.attrib), "children": [tree_of(child) for child in element]}


class Xml(ToolCase):
    def test_outline(self):
        self.write("a.xml", DOCUMENT)
        self.assertEqual(self.answer("xml", "show", "a.xml"),
                         'project  version="2"\n  clip  name="a & b"  start="10"\n  bin\n    clip  name="\u4e2d"\n')

    def test_json_is_the_tree_that_python_reads(self):
        expected = tree_of(xml.etree.ElementTree.fromstring(DOCUMENT.split("\n", 1)[1]))
        for encoding, mark in (("utf-8", b""), ("utf-8", b"\xef\xbb\xbf"), ("utf-16-le", b"\xff\xfe"), ("utf-16-be", b"\xfe\xff")):
            self.write("a.xml", mark + DOCUMENT.encode(encoding))
            self.assertEqual(self.json("xml", "show", "a.xml"), expected, (encoding, mark))

    def test_as_the_library_writes_it(self):
        self.write("a.xml", DOCUMENT)
        text = self.answer("xml", "show", "a.xml", "--text")
        self.assertTrue(text.startswith('<project version="2">\r\n<clip name="a &amp; b" start="10">\r\n</clip>\r\n'), text)
        self.assertEqual(tree_of(xml.etree.ElementTree.fromstring(text)), tree_of(xml.etree.ElementTree.fromstring(DOCUMENT.split("\n", 1)[1])))

    def test_check(self):
        self.write("a.xml", DOCUMENT)
        self.assertEqual(self.json("xml", "check", "a.xml"), [{"file": "a.xml", "root": "project", "elements": 4, "attributes": 4, "levels": 3}])
        self.assertEqual(self.answer("xml", "check", "a.xml"), "a.xml: good, 4 element(s) and 4 attribute(s) on 3 level(s) below project\n")

    def test_what_is_not_read(self):
        for data, words in ((b"<a/>", "has no declaration; put <?xml"), (b"<?xml version='1.0'?><a>", "is no document"), (b"", "is no document"),
                            (b"<?xml version='1.0'?><!--c--><a/>", "is no document"), (b"<a>\xe9</a>", "in neither UTF-8 nor UTF-16")):
            self.write("a.xml", data)
            self.assertIn(words, self.refusal("xml", "check", "a.xml"), data)
            self.assertIn(words, self.refusal("xml", "show", "a.xml"), data)

    def test_levels(self):
        self.write("a.xml", "<?xml version='1.0'?>" + "<a>" * 200 + "</a>" * 200)
        self.assertEqual(self.json("xml", "check", "a.xml")[0]["levels"], 200)
        self.assertEqual(self.answer("xml", "show", "a.xml").count("\n"), 200)
        if tool_case.IS_WINDOWS:
            return  # Wine's parser makes no tree of more than 256 levels
        self.write("a.xml", "<?xml version='1.0'?>" + "<a>" * 9000 + "</a>" * 9000)
        self.assertEqual(self.json("xml", "check", "a.xml")[0]["levels"], 9000)
        self.assertIn("has more than 500 levels", self.refusal("xml", "show", "a.xml"))
        self.assertEqual(self.answer("xml", "show", "a.xml", "--text").count("\r\n"), 18000)


class Dict(ToolCase):
    def setUp(self):
        super().setUp()
        self.write("d/a.ini", "\ufeff[DICTIONARY_MAINID]=7\r\n[Open]=\u00d6ffnen\r\n[Save]=Sichern\r\n")
        self.write("d/sub/b.ini", b"\xff\xfe" + "[Close]=Schlie\u00dfen\r\n".encode("utf-16-le"))

    def test_load(self):
        rows = self.json("dict", "load", "d")
        slash = "\\" if tool_case.IS_WINDOWS else "/"
        self.assertEqual([(row["file"].replace("\\", "/"), row["encoding"], row["main_id"], row["entries"]) for row in rows],
                         [("./d/a.ini", "UTF-8", "7", 2), (f"./d/sub{slash}b.ini".replace("\\", "/"), "UTF-16", "", 1)])
        self.assertIn("entries", self.answer("dict", "load", "d"))

    def test_load_without_any(self):
        self.write("empty/a.txt", b"")
        self.assertIn("empty: no file with the extension ini is there", self.refusal("dict", "load", "empty"))
        self.assertIn("none: no such folder", self.refusal("dict", "load", "none"))

    def test_lookup(self):
        self.assertEqual(self.answer("dict", "lookup", "d", "Open", "Close"), "\u00d6ffnen\nSchlie\u00dfen\n")
        self.assertEqual(self.json("dict", "lookup", "d/", "Save", "--id", "7"), [{"text": "Save", "translation": "Sichern"}])
        self.assertIn("Close: has no translation under the identifier 7", self.refusal("dict", "lookup", "d", "Close", "--id", "7"))
        self.assertIn("open: has no translation", self.refusal("dict", "lookup", "d", "open"))

    def test_lookup_in_a_chinese_folder(self):
        self.write("04_02/a.ini", b"[Open]=" + "\u6253\u5f00".encode("gbk") + b"\r\n")
        self.assertEqual(self.answer("dict", "lookup", "04_02", "Open"), "\u6253\u5f00\n")
        self.assertEqual(self.json("dict", "load", "04_02")[0]["encoding"], "936")

    def test_missing(self):
        self.assertEqual(self.answer("dict", "missing", "d", "Zoom", "Open", "Alt", "Zoom", code=1), "Alt\nZoom\n")
        self.assertEqual(self.json("dict", "missing", "d", "Open"), [])
        self.write("texts", "Open\r\n\nNeu\u00df\nSave")
        self.assertEqual(self.json("dict", "missing", "d", "--list", "texts", code=1), ["Neu\u00df"])
        self.refusal("dict", "missing", "d", code=2)

    def test_lint_of_good_files(self):
        self.assertEqual(self.answer("dict", "lint", "d"), "2 file(s), nothing found\n")
        self.assertEqual(self.json("dict", "lint", "d"), [])

    def test_lint(self):
        self.write("bad/a.ini", "\ufeff; a remark\r\n[A]\r\n[B]=x\r\n[C]=\r\n[D]=d  \r\n[]=e\r\n[f[]=f\r\n[G\r\n[H]=1\r\n[H]=2\r\n[dictionary_mainid]=7x\r\n[I]?=i\r\n")
        self.write("bad/b.ini", "\ufeff[B]=y\n")
        self.write("bad/c.INI", "\ufeff[J]=j\n")
        self.write("bad/d.ini", "[K]=\u00e9\n")
        found = [(row["file"][-5:], row["line"]) for row in self.json("dict", "lint", "bad", code=1)]
        self.assertEqual(found, [("a.ini", line) for line in (2, 4, 5, 6, 7, 8, 10, 11, 12)] + [("b.ini", 1), ("c.INI", 0), ("d.ini", 0)])
        text = self.answer("dict", "lint", "bad", code=1)
        self.assertIn("a.ini:2: no equals sign: the key takes the translation of a line that follows", text)
        self.assertIn("a.ini:10: the key stands in line 9 already; the last one counts", text)

    def test_lint_takes_no_second_byte_for_a_bracket(self):
        self.write("04_02/a.ini", b"[\x81\x5d]=a\r\n[\x81\x5b]=b\r\n")  # two characters of page 936 that end in ] and [
        self.assertEqual(self.answer("dict", "lint", "04_02"), "1 file(s), nothing found\n")


class Ini(ToolCase):
    def setUp(self):
        super().setUp()
        self.write("a.ini", "[Window]\r\nTitle = \" two words \"\r\nWidth=640 pixels\r\nEmpty=\r\n")

    def test_get(self):
        self.assertEqual(self.answer("ini", "get", "a.ini", "WINDOW", "title"), " two words \n")
        self.assertEqual(self.json("ini", "get", "a.ini", "Window", "Width", "--int"),
                         {"file": "a.ini", "section": "Window", "key": "Width", "value": 640})
        self.assertEqual(self.json("ini", "get", "a.ini", "Window", "Width")["value"], "640 pixels")

    def test_missing(self):
        for section, key in (("Window", "Height"), ("Door", "Title"), ("Window", "Empty")):
            self.assertEqual(self.refusal("ini", "get", "a.ini", section, key), f"qxvtool: a.ini: has no value for {key} in [{section}]\n")


if __name__ == "__main__":
    tool_case.main()
