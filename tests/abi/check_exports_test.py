"""The export check itself: builds small libraries, sound ones and spoiled ones, and looks at what it says about them.

    check_exports_test.py SYSTEM COMPILER       SYSTEM is linux or windows; each build tries its own compiler
"""

import os
import subprocess
import sys
import tempfile
import unittest

from check_exports import differences
from exported_names import Library, merge, pair_up, spell
from hardening import WIDE, WIDE_TEXT, problems

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, "..", "..")
SYSTEM, COMPILER = "linux", "g++"

SAMPLE = """
#include "qxv/export.h"
#include "qxv/types.h"
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>
class QXV_API CSample {
 public:
  CSample(const QXChar* text);
  CSample(const CSample&);
  virtual ~CSample();
  virtual int Count(DWORD, HRESULT, long, unsigned) const;
  void Write(const GUID&, std::size_t, QXInt64, FILETIME*, const QXChar*, va_list);
  int Inline() const { return m_count; }
  static int s_shared;
 private:
  int m_count = 0;
};
class QXV_API CAbstract { public: virtual void Call() = 0; virtual ~CAbstract() = default; };
struct CHidden : CAbstract { void Call() override {} };
QXV_API CAbstract* Make(const std::vector<int>&);
extern "C" QXV_API int Plain(int);
int CSample::s_shared = 1;
CSample::CSample(const QXChar*) {}
CSample::CSample(const CSample&) {}
CSample::~CSample() {}
int CSample::Count(DWORD, HRESULT, long, unsigned) const { return Inline(); }
void CSample::Write(const GUID&, std::size_t, QXInt64, FILETIME*, const QXChar*, va_list) {
  std::map<int, std::string> names{{1, "one"}};
  if (std::make_shared<std::string>(names[1])->empty()) throw std::runtime_error("empty");
}
CAbstract* Make(const std::vector<int>&) { return new CHidden; }
int Plain(int a) { return a; }
int NotForOthers() { return 1; }
"""
TABLE = sorted([
    "CSample::CSample(CSample const&)", "CSample::CSample(QXChar const*)", "CSample::Count(DWORD, HRESULT, long, unsigned int) const",
    "CSample::Write(GUID const&, size_t, long long, FILETIME*, QXChar const*, va_list)", "CSample::s_shared", "CSample::~CSample()",
    "Make(std::vector<int, std::allocator<int> > const&)", "Plain", "vtable for CSample",
])
SOUND = {"linux": [f"-Wl,--version-script={ROOT}/cmake/exports.map,-z,relro,-z,now,-z,noexecstack", "-fPIC"],
         "windows": ["-static", "-Wl,--exclude-all-symbols,--dynamicbase,--high-entropy-va,--nxcompat"]}


class Build(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def library(self, source, flags, optimise="-O2"):
        stem = os.path.join(self.folder.name, "sample")
        with open(stem + ".cpp", "w", encoding="utf-8") as file:
            file.write(source)
        subprocess.run([COMPILER, "-std=c++20", optimise, "-fPIC", "-fvisibility=hidden", "-DQXV_BUILDING", f"-I{ROOT}/include", "-c",
                        stem + ".cpp", "-o", stem + ".o"], check=True)
        subprocess.run([COMPILER, "-shared", stem + ".o", "-o", stem + ".library", *flags], check=True)
        return Library(stem + ".library", [stem + ".o"])

    def test_sound_library_gives_nothing_to_say_with_and_without_optimising(self):
        for optimise in ("-O0", "-O2"):
            library = self.library(SAMPLE, SOUND[SYSTEM], optimise)
            self.assertEqual(library.system, SYSTEM)
            self.assertEqual(list(differences(TABLE, library)), [], optimise)
            self.assertEqual(list(problems(library)), [], optimise)

    def test_missing_and_unlisted_names_are_told(self):
        library = self.library(SAMPLE.replace("int Plain(int", "int Other(int").replace("Count(DWORD", "Count(QXInt64"), SOUND[SYSTEM])
        found = [line.split("    ")[0] for line in differences(TABLE, library)]
        self.assertEqual(len(found), 4, found)
        self.assertIn("- CSample::Count(DWORD, HRESULT, long, unsigned int) const", found)
        self.assertIn("- Plain", found)
        self.assertIn("+ Other", found)

    def test_internal_name_with_the_export_mark_is_told(self):
        library = self.library(SAMPLE + "namespace qxv { QXV_API int Inner() { return 1; } }\n", SOUND[SYSTEM])
        self.assertEqual([line.split()[1] for line in differences(TABLE, library)], ["_ZN3qxv5InnerEv"])

    def test_table_out_of_order_is_told(self):
        library = self.library(SAMPLE, SOUND[SYSTEM])
        self.assertEqual(len(list(differences(TABLE[::-1], library))), 1)

    @unittest.skipUnless(sys.argv[1:2] == ["linux"], "reads a .so")
    def test_library_without_the_version_script_leaks_the_standard_library(self):
        library = self.library(SAMPLE, ["-Wl,-z,relro,-z,now,-z,noexecstack"])
        self.assertTrue(any("_ZNSt" in line for line in differences(TABLE, library)))

    @unittest.skipUnless(sys.argv[1:2] == ["linux"], "reads a .so")
    def test_careless_linking_is_told(self):
        found = list(problems(self.library(SAMPLE, ["-Wl,-z,norelro,-z,lazy,-z,execstack"])))
        self.assertEqual(len(found), 3, found)

    @unittest.skipUnless(sys.argv[1:2] == ["linux"], "reads a .so")
    def test_wide_function_is_told(self):
        library = self.library(SAMPLE + "#include <cwchar>\nQXV_API std::size_t L(const wchar_t* t) { return std::wcslen(t); }\n", SOUND[SYSTEM])
        self.assertEqual([line.split()[4] for line in problems(library)], ["wcslen"])

    @unittest.skipUnless(sys.argv[1:2] == ["windows"], "reads a .dll")
    def test_shared_run_time_and_missing_protections_are_told(self):
        flags = ["-Wl,--exclude-all-symbols,--disable-dynamicbase,--disable-high-entropy-va,--disable-nxcompat"]
        found = " ".join(problems(self.library(SAMPLE, flags)))
        for word in ("libstdc++-6.dll", "--high-entropy-va", "--dynamicbase", "--nxcompat"):
            self.assertIn(word, found)


class Names(unittest.TestCase):
    def test_each_line_is_spelled_as_its_system_does(self):
        line = "F(QXChar const*, DWORD, GUID const&, size_t, va_list, QX_GUID&)"
        self.assertEqual(spell(line, "linux"), "F(char16_t const*, unsigned int, GUID const&, unsigned long, __va_list_tag*, QX_GUID&)")
        self.assertEqual(spell(line, "windows"), "F(wchar_t const*, unsigned long, _GUID const&, unsigned long long, char*, QX_GUID&)")

    def test_merging_finds_the_headers_word(self):
        self.assertEqual(merge("F(unsigned int, int, char*)", "F(unsigned long, int, char*)"), ("F(DWORD, int, char*)", 1))
        self.assertIsNone(merge("F(int)", "F(long long)"))
        self.assertIsNone(merge("F(int)", "G(int)"))

    def test_overloads_find_their_partners(self):
        lines, left, right = pair_up({"F(int)", "F(long)", "F(unsigned int)", "G()"}, {"F(int)", "F(long)", "F(unsigned long)", "H()"})
        self.assertEqual(lines, {"F(int)", "F(long)", "F(DWORD)"})
        self.assertEqual((left, right), ({"G()"}, {"H()"}))

    def test_wide_functions_are_known_by_name(self):
        for name in ("wcslen", "wcstombs", "wcsrtombs", "swprintf", "__swprintf_chk", "vswprintf", "__isoc99_swscanf", "mbstowcs", "mbsrtowcs",
                     "mbrtowc", "wcrtomb", "towlower", "iswspace", "fgetws", "fputwc", "wmemcpy", "__wcstol_internal", "btowc", "wprintf"):
            self.assertTrue(WIDE.match(name), name)
        for name in ("strlen", "mbrtoc16", "printf", "write", "towupperbound", "memcpy", "fgets", "fputs", "wait", "mbsinit", "swab", "__snprintf_chk"):
            self.assertFalse(WIDE.match(name), name)
        self.assertTrue(WIDE_TEXT.match("_ZNSt7__cxx1112basic_stringIwSt11char_traitsIwESaIwEE9_M_createERmm"))
        self.assertFalse(WIDE_TEXT.match("_ZNSt7__cxx1112basic_stringIDsSt11char_traitsIDsESaIDsEE9_M_createERmm"))


if __name__ == "__main__":
    SYSTEM, COMPILER = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1], verbosity=2)
