#!/usr/bin/env python3
"""qxvtool as somebody meets it who does not know it: help, examples, mistakes and exit codes."""

import re

import tool_case
from tool_case import ToolCase

COMMANDS = {
    "image": ["info", "convert", "frames"], "wav": ["info", "convert", "resample", "plot"], "md5": [], "crc": [], "guid": [],
    "xml": ["show", "check"], "dict": ["load", "lookup", "missing", "lint"], "path": [], "net": ["dump", "to-local", "to-unc"],
    "reg": ["get", "set"], "ini": ["get"], "disk": [], "who": [], "log": ["write", "tail"], "round": [], "spline": [],
    "geometry": ["lines", "foot", "pierce", "turn"],
}
LEAVES = [(name, *([below] if below else [])) for name, all_below in COMMANDS.items() for below in all_below or [None]]


class Usage(ToolCase):
    def test_help_names_every_family(self):
        text = self.answer("--help")
        for name in COMMANDS:
            self.assertRegex(text, rf"(?m)^  {name} ", name)
        self.assertIn("Exit codes: 0 all is well, 1 not found or different, 2 wrong use.", text)

    def test_help_of_every_command_has_examples_of_it(self):
        for leaf in LEAVES:
            text = self.answer(*leaf, "--help")
            self.assertIn(f"Examples:\n  qxvtool {' '.join(leaf)}", text, leaf)
            self.assertNotRegex(text, r"(?m)^  [A-Z]+ TEXT ", leaf)  # the parser's own name of a kind

    def test_help_of_every_group_names_its_commands(self):
        for name, below in COMMANDS.items():
            text = self.answer(name, "--help")
            for each in below:
                self.assertRegex(text, rf"(?m)^  {each} ", (name, each))

    def test_every_command_but_reg_set_can_answer_programs(self):
        for leaf in LEAVES:
            self.assertEqual("--json" in self.answer(*leaf, "--help"), leaf != ("reg", "set"), leaf)

    def test_version(self):
        self.assertRegex(self.answer("--version"), r"^qxvtool \d+\.\d+\.\d+\n$")

    def test_wrong_use_is_2_and_names_the_help(self):
        for arguments, help_of, words in [
            ([], "qxvtool", "subcommand is required"),
            (["image"], "qxvtool image", "subcommand is required"),
            (["nonsense"], "qxvtool", "nonsense is no command"),
            (["image", "nonsense"], "qxvtool image", "nonsense is no command"),
            (["crc", "--nonsense"], "qxvtool crc", "--nonsense"),
            (["image", "info"], "qxvtool image info", "FILE is required"),
            (["wav", "resample", "a.wav", "b.wav"], "qxvtool wav resample", "--rate is required"),
            (["geometry", "lines", "0,0", "1,1"], "qxvtool geometry lines", "POINT"),
        ]:
            text = self.refusal(*arguments, code=2)
            self.assertIn(words, text, arguments)
            self.assertTrue(text.endswith(f"{help_of} --help tells how it is used\n"), text)

    def test_failures_name_the_file_and_the_reason(self):
        for arguments in (["crc", "missing.bin"], ["md5", "missing.bin"], ["image", "info", "missing.bmp"], ["wav", "info", "missing.wav"],
                          ["xml", "show", "missing.xml"], ["ini", "get", "missing.ini", "a", "b"], ["image", "convert", "missing.bmp", "b.tga"],
                          ["wav", "plot", "missing.wav", "b.bmp"]):
            self.assertRegex(self.refusal(*arguments), r"^qxvtool: missing\.\w+: no such file\n$", arguments)

    def test_folder_that_is_missing_is_told_from_the_file(self):
        self.assertEqual(self.refusal("crc", "none/a.bin"), "qxvtool: none/a.bin: no such folder or drive\n")
        self.assertEqual(self.refusal("crc", "."), "qxvtool: .: is a folder\n")

    def test_names_beyond_ascii(self):
        name = self.write("gr\u00fc\u00df \u4e2d.bin", b"123456789")
        self.assertEqual(self.answer("crc", name), f"0376e6e7  {name}\n")

    def test_a_list_goes_on_behind_a_failure(self):
        self.write("a.bin", b"123456789")
        out, err = self.run_tool("crc", "none.bin", "a.bin", code=1)
        self.assertEqual(out, "0376e6e7  a.bin\n")
        self.assertEqual(err, "qxvtool: none.bin: no such file\n")
        self.assertEqual(self.json("crc", "none.bin", "a.bin", code=1),
                         [{"file": "none.bin", "error": "none.bin: no such file"}, {"file": "a.bin", "crc": "0376e6e7"}])

    def test_the_debugger_is_silent_unless_asked_for(self):
        self.write("a.bin", b"abc")
        self.assertEqual(self.run_tool("md5", "a.bin", "--resume", "job")[1], "")
        _, err = self.run_tool("--debug", "md5", "a.bin", "--resume", "job")
        self.assertEqual(bool(re.search("CQXVMD5Ctx", err)), not tool_case.IS_WINDOWS, err)


if __name__ == "__main__":
    tool_case.main()
