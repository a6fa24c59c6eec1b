#!/usr/bin/env python3
"""The packages that cpack makes: what is in them, and whether a foreign project builds and runs with nothing else.

    package_test.py linux|windows BUILD-FOLDER CPACK CMAKE COMPILER VERSION [EMULATOR]
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
sys.path.insert(0, os.path.join(ROOT, "tests", "abi"))

from hardening import linux_problems, windows_problems  # noqa: E402  (the folder must be on the path first)

CONSUMER = os.path.join(ROOT, "tests", "consumer")
SYSTEM = BUILD = CPACK = CMAKE = COMPILER = VERSION = ""
EMULATOR = []
LIBRARIES = "usr/lib/x86_64-linux-gnu"


def run(*command, folder=None, **environment):
    done = subprocess.run(command, cwd=folder, env={**os.environ, **environment}, capture_output=True, text=True, timeout=240,
                          check=False)
    if done.returncode != 0:
        raise AssertionError(f"{command} gave {done.returncode}\n{done.stdout[-4000:]}\n{done.stderr[-4000:]}")
    return done.stdout


def files_below(folder):
    return {os.path.relpath(os.path.join(path, name), folder) for path, _, names in os.walk(folder) for name in names}


def public_headers():
    return {"include/qxv/" + name for name in files_below(os.path.join(ROOT, "include", "qxv"))}


class Package(unittest.TestCase):
    """Packs once for all tests of the class; self.root is what a machine has after installing, self.prefix its /usr."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.root = os.path.join(cls.folder.name, "root")
        packages = os.path.join(cls.folder.name, "packages")
        run(CPACK, "-B", packages, folder=BUILD)
        cls.packages = {name: os.path.join(packages, name) for name in os.listdir(packages) if name.endswith((".deb", ".zip"))}
        cls.unpack()

    def build_consumer(self, *options):
        build = os.path.join(self.folder.name, "consumer")
        run(CMAKE, "-S", CONSUMER, "-B", build, "-G", "Ninja", f"-DCMAKE_CXX_COMPILER={COMPILER}", f"-DCMAKE_PREFIX_PATH={self.prefix}",
            "-DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON", *options)
        run(CMAKE, "--build", build)
        return build

    def expect_five_right_answers(self, output):
        self.assertEqual(re.findall(r"^FAILED.*", output, re.MULTILINE), [])
        self.assertEqual(len(re.findall(r"^ok ", output, re.MULTILINE)), 5, output)
        self.assertIn("QXVCommonLibU " + VERSION, output)

    def expect_all_headers(self):
        self.assertLessEqual(public_headers(), files_below(self.prefix))

    def expect_what_install_brings(self, library, libraries):
        """`cmake --install` lays down the same files as the packages together."""
        folder = os.path.join(self.folder.name, "installed")
        run(CMAKE, "--install", BUILD, "--prefix", folder)
        self.assertEqual(files_below(folder), files_below(self.prefix))
        self.assertIn(os.path.join(libraries, library), files_below(folder))


class LinuxPackages(Package):
    @classmethod
    def unpack(cls):
        for path in cls.packages.values():
            run("dpkg-deb", "--extract", path, cls.root)
        cls.prefix = os.path.join(cls.root, "usr")

    def field(self, package, name):
        return run("dpkg-deb", "--field", self.packages[f"{package}_{VERSION}_amd64.deb"], name).strip()

    def contents(self, package):
        listing = run("dpkg-deb", "--contents", self.packages[f"{package}_{VERSION}_amd64.deb"])
        return {line.split()[5][2:] for line in listing.splitlines() if not line.startswith("d")}

    def test_the_library_package_holds_what_programs_load_and_no_more(self):
        self.assertEqual(self.contents("libqxvcommonlibu0"), {
            f"{LIBRARIES}/libQXVCommonLibU.so.0",
            f"{LIBRARIES}/libQXVCommonLibU.so.{VERSION}",
            f"{LIBRARIES}/libQXVJpegCodec.so",
        })

    def test_the_library_package_needs_the_libraries_that_are_loaded(self):
        needs = {entry.split()[0] for entry in self.field("libqxvcommonlibu0", "Depends").split(", ")}
        self.assertEqual(needs, {"libc6", "libfreeimage3", "libgcc-s1", "libjpeg62-turbo", "libsqlite3-0", "libstdc++6", "libtiff6",
                                 "libxml2"})

    def test_the_dev_package_needs_the_library_of_its_version(self):
        self.assertEqual(self.field("libqxvcommonlibu-dev", "Depends"), f"libqxvcommonlibu0 (= {VERSION})")
        self.expect_all_headers()

    def test_the_library_is_named_by_its_major_version(self):
        dynamic = run("readelf", "-dW", os.path.join(self.root, LIBRARIES, "libQXVCommonLibU.so"))
        self.assertIn("Library soname: [libQXVCommonLibU.so.0]", dynamic)

    def test_what_is_packed_is_protected(self):
        for name in ("libQXVCommonLibU.so", "libQXVJpegCodec.so"):
            self.assertEqual(list(linux_problems(os.path.join(self.root, LIBRARIES, name))), [], name)

    def test_install_brings_the_same_files(self):
        self.expect_what_install_brings("libQXVCommonLibU.so." + VERSION, "lib/x86_64-linux-gnu")

    def test_a_foreign_cmake_project_builds_and_runs(self):
        build = self.build_consumer()
        self.expect_five_right_answers(run("./consumer", folder=build))

    def test_a_makefile_author_builds_and_runs_by_pkg_config(self):
        folder = os.path.join(self.root, LIBRARIES)
        words = run("pkg-config", "--cflags", "--libs", "qxvcommonlibu", PKG_CONFIG_PATH=os.path.join(folder, "pkgconfig")).split()
        program = os.path.join(self.folder.name, "by_pkg_config")
        run(COMPILER, "-std=c++17", os.path.join(CONSUMER, "consumer.cpp"), "-o", program, *words)
        self.expect_five_right_answers(run(program, folder=self.folder.name, LD_LIBRARY_PATH=folder))


class WindowsPackage(Package):
    @classmethod
    def unpack(cls):
        (path,) = cls.packages.values()
        with zipfile.ZipFile(path) as archive:
            archive.extractall(cls.root)
        (name,) = os.listdir(cls.root)
        cls.prefix = os.path.join(cls.root, name)

    def test_the_archive_holds_every_library_that_a_machine_lacks(self):
        expected = {"bin/FreeImage.dll", "bin/QXVCommonLibU.dll", "bin/QXVJpegCodec.dll"}
        if os.path.exists(os.path.join(BUILD, "bin", "qxvtool.exe")):
            expected.add("bin/qxvtool.exe")
        self.assertEqual({name for name in files_below(self.prefix) if name.startswith("bin/")}, expected)
        self.expect_all_headers()

    def test_the_archive_holds_the_terms_of_all_that_is_linked_in(self):
        self.assertEqual({name for name in files_below(self.prefix) if name.startswith("licences/")}, {
            f"licences/{package}/copyright" for package in (
                "freeimage", "g++-mingw-w64-x86-64-posix", "libjpeg-turbo", "libpng1.6", "libz-mingw-w64-dev", "mingw-w64-x86-64-dev",
                "tiff")})

    def test_what_is_packed_is_protected(self):
        for name in ("FreeImage.dll", "QXVCommonLibU.dll", "QXVJpegCodec.dll"):
            self.assertEqual(list(windows_problems(os.path.join(self.prefix, "bin", name))), [], name)

    def test_install_brings_the_same_files(self):
        self.expect_what_install_brings("QXVCommonLibU.dll", "bin")

    def test_a_foreign_cmake_project_builds_and_runs(self):
        build = self.build_consumer("-DCMAKE_SYSTEM_NAME=Windows", "-DCMAKE_EXE_LINKER_FLAGS=-static")
        # As it would be delivered: beside the package's libraries and nothing else.
        delivered = os.path.join(self.folder.name, "delivered")
        shutil.copytree(os.path.join(self.prefix, "bin"), delivered)
        shutil.copy(os.path.join(build, "consumer.exe"), delivered)
        self.expect_five_right_answers(run(*EMULATOR, os.path.join(delivered, "consumer.exe"), folder=delivered))


if __name__ == "__main__":
    SYSTEM, BUILD, CPACK, CMAKE, COMPILER, VERSION, *EMULATOR = sys.argv[1:]
    wanted = LinuxPackages if SYSTEM == "linux" else WindowsPackage
    result = unittest.TextTestRunner(verbosity=2).run(unittest.defaultTestLoader.loadTestsFromTestCase(wanted))
    sys.exit(0 if result.wasSuccessful() else 1)
