#!/usr/bin/env python3
"""qxvtool path, net, reg, disk, who and log."""

import contextlib
import getpass
import os
import re
import socket
import sqlite3
import subprocess
import time

import tool_case
from tool_case import ToolCase


class Path(ToolCase):
    def test_parts(self):
        answer = self.json("path", "C:\\clips\\take.1\\a.mxf")[0]
        expected = {"path": "C:\\clips\\take.1\\a.mxf", "drive_and_folder": "C:\\clips\\take.1\\", "name": "a", "extension": "mxf",
                    "short_name": "a.mxf", "up_to_separator": "C:\\clips\\take.1\\", "behind_separator": "a.mxf", "behind_last_point": "mxf",
                    "as_folder": "C:\\clips\\take.1\\a.mxf\\", "form_of_file": True, "form_of_folder": False, "is_network_path": False}
        self.assertEqual({name: answer[name] for name in expected}, expected)

    def test_what_is_there(self):
        self.write("a.bin", b"12345")
        answer = self.json("path", "a.bin", ".", "none")
        self.assertEqual([(each["exists"], each["is_folder"], each["bytes"]) for each in answer],
                         [(True, False, 5), (True, True, 0), (False, False, 0)])
        self.assertIn("  bytes              5\n", self.answer("path", "a.bin"))

    def test_must_exist(self):
        self.assertEqual(self.refusal("path", "none", "--must-exist"), "qxvtool: none: no such file or folder\n")

    def test_network_path(self):
        self.assertTrue(self.json("path", "\\\\server\\media\\a.mxf")[0]["is_network_path"])


class Net(ToolCase):
    def setUp(self):
        super().setUp()
        if not tool_case.IS_WINDOWS:
            self.write("smb.conf", "[Media]\n  path = /srv/media\n")
            self.write("mounts", f"//10.1.2.3/share {self.folder} cifs rw 0 0\n")
            self.environment.update(QXV_SAMBA_CONFIG=self.path("smb.conf"), QXV_MOUNTS=self.path("mounts"), QXV_DRIVES=f"X={self.folder}",
                                    QXV_REGISTRY=self.path("registry.sqlite"))

    def test_dump(self):
        table = self.json("net", "dump")
        for row in table:
            self.assertEqual(sorted(row), ["address", "local", "network"])
        if tool_case.IS_WINDOWS:
            return  # what Wine shares is not ours to say
        own = "\\\\" + socket.gethostname().split(".")[0]
        self.assertEqual([(row["network"].lower(), row["address"], row["local"]) for row in table],
                         [(f"{own}\\media".lower(), "", "Z:\\srv\\media"), ("", "\\\\10.1.2.3\\share", "X:")])
        self.assertRegex(self.answer("net", "dump"), r"^network +address +local\n-+  -+  -+\n")

    def test_to_local(self):
        if not tool_case.IS_WINDOWS:
            self.assertEqual(self.answer("net", "to-local", "\\\\10.1.2.3\\SHARE\\a.mxf"), "X:\\a.mxf\n")
            own = "\\\\" + socket.gethostname().split(".")[0]
            self.assertEqual(self.json("net", "to-local", own + "\\Media\\b"), [{"path": own + "\\Media\\b", "local": "Z:\\srv\\media\\b"}])
        self.assertEqual(self.answer("net", "to-local", "LOCAL\\D:\\x"), "D:\\x\n")
        self.assertIn("no share or drive of this computer leads there", self.refusal("net", "to-local", "\\\\10.9.9.9\\none\\a"))

    def test_to_unc(self):
        self.assertEqual(self.answer("net", "to-unc", "D:\\x"), "Local\\D:\\x\n")
        if not tool_case.IS_WINDOWS:
            self.assertEqual(self.json("net", "to-unc", "X:\\a.mxf")[0]["network"], "\\\\10.1.2.3\\share\\a.mxf")


class Reg(ToolCase):
    def setUp(self):
        super().setUp()
        self.key = f"SOFTWARE\\QxvToolTest{os.getpid()}"
        self.environment["QXV_REGISTRY"] = self.path("registry.sqlite")
        if tool_case.IS_WINDOWS:
            self.addCleanup(subprocess.run, [*tool_case.PROGRAM[:-1], "reg", "delete", "HKLM\\" + self.key, "/f"], capture_output=True, check=False)

    def set_and_get(self, kind, *values):
        self.assertEqual(self.answer("reg", "set", self.key, kind, *values, "--type", kind), "")
        return self.json("reg", "get", self.key, kind, "--type", kind)["value"]

    def test_every_type(self):
        self.assertEqual(self.set_and_get("string", "r\u00f6t"), "r\u00f6t")
        self.assertEqual(self.set_and_get("int", "-7"), -7)
        self.assertEqual(self.set_and_get("strings", "a.avi", "", "b"), ["a.avi", "", "b"])
        self.assertEqual(self.set_and_get("point", "3", "-4"), [3, -4])
        self.assertEqual(self.set_and_get("rectangle", "1", "2", "3", "4"), [1, 2, 3, 4])
        self.assertEqual(self.answer("reg", "get", self.key, "string"), "r\u00f6t\n")
        self.assertEqual(self.json("reg", "get", self.key, "int"), {"key": self.key, "name": "int", "type": "int", "value": -7})
        self.assertIn("is a record: say with --type", self.refusal("reg", "get", self.key, "point"))

    def test_sqlite_reads_the_store(self):
        if tool_case.IS_WINDOWS:
            self.skipTest("Windows has a registry of its own")
        self.answer("reg", "set", self.key, "Count", "258", "--type", "int")
        with contextlib.closing(sqlite3.connect(self.path("registry.sqlite"))) as store:
            self.assertEqual(store.execute("SELECT name, type, hex(data) FROM value").fetchall(), [("Count", 4, "02010000")])

    def test_refusals(self):
        self.answer("reg", "set", self.key, "Colour", "red")
        for arguments, words in ((["get", self.key, "None"], 'None": no such value'), (["get", "SOFTWARE\\None\\None", "x"], "no such key"),
                                 (["get", self.key, "Colour", "--type", "int"], "the value has another type")):
            self.assertIn(words, self.refusal("reg", *arguments), arguments)
        for arguments in (["x", "--type", "int"], ["1", "2", "--type", "int"], ["1", "--type", "point"], ["a", "b"], ["1", "--type", "none"]):
            self.refusal("reg", "set", self.key, "Wrong", *arguments, code=2)
        self.refusal("reg", "get", self.key, "Wrong")


class Disk(ToolCase):
    def test_root(self):
        row = self.json("disk", "Z:\\")[0]
        root = os.statvfs("/")
        self.assertEqual(row["drive"], "Z:\\")
        self.assertEqual(row["total_bytes"], root.f_blocks * root.f_frsize)
        self.assertGreater(row["total_bytes"], row["free_bytes"])

    def test_all_drives(self):
        self.assertIn("Z:\\", [row["drive"] for row in self.json("disk")])
        self.assertRegex(self.answer("disk"), r"^drive +kind +total +free +used\n")

    def test_no_such_drive(self):
        self.environment["QXV_DRIVES"] = ""
        self.assertIn("Q:\\: no such drive", self.run_tool("disk", "Q:\\", code=1)[1])


class Who(ToolCase):
    def test_user_and_computer(self):
        answer = self.json("who")
        self.assertEqual(answer["user"], getpass.getuser())
        self.assertEqual(answer["computer"].lower(), socket.gethostname().split(".")[0].lower()[:15 if tool_case.IS_WINDOWS else None])
        self.assertIn(answer["administrator"], (True, False))
        self.assertRegex(self.answer("who"), r"(?m)^primary_language +\d+$")

    def test_hosts(self):
        self.assertEqual(self.json("who", "--host", "localhost"), {"host": "localhost", "address": "127.0.0.1"})
        self.assertIn("no-such-host.invalid: no such host", self.refusal("who", "--host", "no-such-host.invalid"))


class Log(ToolCase):
    def test_written_and_read(self):
        date = time.strftime("%Y%m%d")
        for number in range(12):
            path = self.answer("log", "write", f"line {number} \u00e9", "--name", "job").strip()
        self.assertEqual(path, f"./job_{date}.txt")
        data = self.read(f"job_{date}.txt")
        self.assertEqual(data[:2], b"\xff\xfe")
        lines = data[2:].decode("utf-16-le").split("\r\n")
        self.assertRegex(lines[0], r"^version=")
        self.assertRegex(lines[-2], r"^\[\d{4}\.\d\d\.\d\d .{10,12}\]line 11 \u00e9$")
        answer = self.json("log", "tail", "--name", "job", "--lines", "3")
        self.assertEqual(answer["lines"], lines[-4:-1])
        self.assertEqual(len(re.findall("line ", self.answer("log", "tail", "--name", "job"))), 10)
        self.assertEqual(self.json("log", "tail", "--name", "job", "--lines", "100", "--date", date)["lines"], lines[:-1])

    def test_refusals(self):
        self.assertIn("lies below the write level 100", self.refusal("log", "write", "x", "--level", "99"))
        self.answer("log", "write", "x", "--level", "20", "--threshold", "10")
        self.assertIn("the line could not be written", self.refusal("log", "write", "x", "--folder", "none"))
        self.assertIn("nothing was logged on that day", self.refusal("log", "tail", "--date", "20010101"))
        self.assertFalse(os.path.exists(self.path("qxvtool_20010101.txt")))
        self.refusal("log", "tail", "--lines", "0", code=2)


if __name__ == "__main__":
    tool_case.main()
