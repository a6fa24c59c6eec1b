"""The trees that self_test.py shows to the rules."""

GOOD_HEADER = "#pragma once\n#include <cstdint>\ninline std::int32_t Twice(std::int32_t a) { return a * 2; }\n"
PAIR = {"src/os/CMakeLists.txt": "qxv_os_sources(file)\n", "src/os/file_win.cpp": "", "src/os/file_posix.cpp": ""}
KEPT_TEST = "TEST(PcxKept, PadByteShiftsTheRow) {}\n"
NUMBERED = "Pa" + "rt 4"  # as forbidden_words.py does, so that this file holds none of its words

CASES = {
    "headers-alone": [
        ("a header that brings what it needs", {"include/qxv/a.h": GOOD_HEADER}, []),
        ("a header that needs another one first", {"include/qxv/a.h": "#pragma once\n\nstd::int32_t Twice();\n"}, ["include/qxv/a.h:3"]),
        ("a narrowing conversion", {"include/qxv/a.h": "#pragma once\ninline char Low(int a) {\n  return a;\n}\n"}, ["include/qxv/a.h:3"]),
        ("C++20", {"include/qxv/a.h": "#pragma once\ntemplate <class T>\nconcept Small = sizeof(T) < 4;\n"}, ["include/qxv/a.h:3"]),
    ],
    "include-arrows": [
        ("every arrow that is allowed", {
            "include/qxv/types.h": "", "include/qxv/string.h": '#include "qxv/types.h"\n', "include/qxv/log.h": '#include "qxv/string.h"\n',
            "include/qxv/qxv.h": '#include "qxv/interop.h"\n', "include/qxv/interop.h": '#include "qxv/string.h"\n',
            "include/qxv/path.h": "", "src/os/file.h": '#include "qxv/types.h"\n', "src/os/file_posix.cpp": '#include "os/file.h"\n',
            "src/foundation/string.cpp": '#include "qxv/string.h"\n#include "os/file.h"\n', "src/streams/byte_reader.h": "",
            "src/numerics/conversion.h": "", "src/jpeg_codec/jpeg_codec.h": "", "src/image/own.h": "",
            "src/image/pcx.cpp": '#include "own.h"\n#include "streams/byte_reader.h"\n#include "numerics/conversion.h"\n#include "qxv/path.h"\n'
                                 '#include "jpeg_codec/jpeg_codec.h"\n',
            "tests/image/pcx_test.cpp": '#include "image/own.h"\n#include "qxv/interop.h"\n', "fuzz/fuzz_pcx.cpp": '#include "image/own.h"\n',
            "bench/support/ratio.cpp": '#include "bench/support/ratio.h"\n#include "image/model.h"\n', "bench/support/ratio.h": "",
            "tests/image/model.h": "",
            "tools/qxvtool/main.cpp": '#include "qxv/qxv.h"\n#include "commands.h"\n', "tools/qxvtool/commands.h": "",
        }, []),
        ("arrows that run back or across", {
            "include/qxv/types.h": '#include "qxv/string.h"\n', "include/qxv/string.h": '#include "os/file.h"\n#include "qxv/interop.h"\n',
            "include/qxv/interop.h": "", "include/qxv/log.h": "", "src/os/file.h": '// why\n#include "qxv/string.h"\n',
            "src/foundation/crc.cpp": '#include "streams/byte_reader.h"\n', "src/streams/byte_reader.h": '#include "image/own.h"\n',
            "src/image/own.h": '#include "qxv/log.h"\n#include "numerics/spline.h"\n', "src/numerics/spline.h": '#include "system/path.h"\n',
            "src/system/path.h": '#include "support/text.h"\n', "tests/support/text.h": "", "src/audio/pcm.cpp": '#include "qxv/interop.h"\n',
            "tools/qxvtool/main.cpp": '#include "image/own.h"\n',
        }, ["include/qxv/types.h:1", "include/qxv/string.h:1", "include/qxv/string.h:2", "src/os/file.h:2", "src/foundation/crc.cpp:1",
            "src/streams/byte_reader.h:1", "src/image/own.h:1", "src/image/own.h:2", "src/numerics/spline.h:1", "src/system/path.h:1",
            "src/audio/pcm.cpp:1", "tools/qxvtool/main.cpp:1"]),
        ("names that lead nowhere", {"src/os/file.h": '#include "os/gone.h"\n/*\n#include "os/also_gone.h"\n*/\n', "src/lost.h": "",
                                     "include/qxv/odd.h": ""}, ["src/os/file.h:1", "src/lost.h:1", "include/qxv/odd.h:1"]),
    ],
    "system-headers": [
        ("each where it belongs", {
            "include/qxv/types.h": "#include <windows.h>\n#include <mmreg.h>\n", "include/qxv/host.h": "#include <afxwin.h>\n",
            "src/os/win_api.h": "#include <windows.h>\n", "src/os/file_posix.cpp": "#include <sys/stat.h>\n#include <vector>\n",
            "src/os/xml_dom_posix.cpp": "#include <libxml/parser.h>\n", "src/foundation/crc.cpp": "#include <immintrin.h>\n",
            "src/image/free_image.cpp": "#include <FreeImage.h>\n", "tests/support/guard_new.cpp": "#include <sys/mman.h>\n",
            "tests/os/file_test.cpp": "#include <gtest/gtest.h>\n#include <fcntl.h>\n", "bench/crc_bench.cpp": "#include <isa-l.h>\n",
            "tests/judges/xml_test.cpp": "#include <libxml/parser.h>\n", "tests/jpeg_codec/a_test.cpp": "#include <jpeglib.h>\n",
            "tools/qxvtool/support/arguments.h": "#include <CLI/CLI.hpp>\n", "tools/qxvtool/support/console_posix.cpp": "#include <unistd.h>\n",
        }, []),
        ("each where it does not", {
            "include/qxv/string.h": "#include <unistd.h>\n", "src/os/file_win.cpp": "#include <Windows.h>\n",
            "src/foundation/guid.cpp": "#include <vector>\n#include <sys/random.h>\n", "src/streams/text.cpp": "#include <iconv.h>\n",
            "src/image/png.cpp": "#include <FreeImage.h>\n", "src/text/xml.cpp": "#include <libxml/tree.h>\n",
            "src/audio/wav.cpp": "#include <gtest/gtest.h>\n", "tests/audio/wav_test.cpp": "#include <unistd.h>\n",
            "bench/crc_bench.cpp": "#include <sys/mman.h>\n#include <WinSock2.h>\n",
            "tools/qxvtool/commands/crc.cpp": "#include <CLI/CLI.hpp>\n#include <unistd.h>\n",
        }, ["tools/qxvtool/commands/crc.cpp:1", "tools/qxvtool/commands/crc.cpp:2", "include/qxv/string.h:1", "src/os/file_win.cpp:1", "src/foundation/guid.cpp:2", "src/streams/text.cpp:1",
            "src/image/png.cpp:1", "src/text/xml.cpp:1", "src/audio/wav.cpp:1", "tests/audio/wav_test.cpp:1",
            "bench/crc_bench.cpp:1", "bench/crc_bench.cpp:2"]),
        ("two adapters of one library", {"src/os/registry_posix.cpp": "#include <sqlite3.h>\n", "src/os/store.cpp": "#include <sqlite3.h>\n"},
         ["src/os/store.cpp:1"]),
    ],
    "platform-macros": [
        ("in the places for it, and in words", {"include/qxv/types.h": "#if defined(_WIN32)\n#endif\n", "src/os/a.cpp": "#ifdef _WIN32\n#endif\n",
                                               "src/image/a.cpp": "// no _WIN32 here\nconst char* a = \"_WIN32\";\n#if 1  // _WIN32\n#endif\n"}, []),
        ("elsewhere", {"src/image/a.cpp": "\n#  ifdef _WIN32\n#endif\n", "include/qxv/log.h": "#if 1 && defined(__linux__)\n#endif\n",
                       "tests/image/a_test.cpp": "#ifndef _WIN64\n#endif\n"}, ["src/image/a.cpp:2", "include/qxv/log.h:1", "tests/image/a_test.cpp:1"]),
    ],
    "status-literals": [
        ("named once, written in tests, told in comments", {"src/foundation/status.h": "constexpr unsigned a = 0x89601A15;\n",
                                                            "tests/image/a_test.cpp": "0x89601a15u\n", "src/image/a.cpp": "// 0x89601A15\n/* 0x89601A15 */\n"}, []),
        ("written again", {"src/image/a.cpp": "int a;\nreturn 0x89601a15u;\n", "tools/a.cpp": "0X8960ffff\n", "include/qxv/log.h": "0x89600000\n"},
         ["src/image/a.cpp:2", "tools/a.cpp:1", "include/qxv/log.h:1"]),
    ],
    "kept-marks": [
        ("a mark on one line, one over lines, one for two tests, two in one comment", {
            "src/a.cpp": "// KEPT: wraps (old files). Pinned by PcxKept.PadByteShiftsTheRow.\nint a;  // KEPT: x. Pinned\n//   by AKept.B and AKept.C.\n"
                         "/// KEPT: d. Pinned by AKept.D.\n/// KEPT: e. Pinned by AKept.E.\n",
            "tests/a_test.cpp": KEPT_TEST + "TEST_F(AKept,\n       B) {}\nTEST_P(AKept, C) {}\nTEST(AKept, D) {}\nTEST(AKept, E) {}\nTEST(A, F) {}\n"}, []),
        ("a mark without its test, and one that names none", {"src/a.cpp": "// KEPT: a. Pinned by PcxKept.Gone.\n\n// KEPT: b.\nint Pinned;\n// Pinned by A.B.\n"},
         ["src/a.cpp:1", "src/a.cpp:3"]),
        ("a mark without colon", {"src/a.cpp": "// KEPT a. Pinned by PcxKept.PadByteShiftsTheRow.\n", "tests/a_test.cpp": KEPT_TEST}, ["src/a.cpp:1"]),
        ("a test that no mark names", {"tests/a_test.cpp": "\n" + KEPT_TEST}, ["tests/a_test.cpp:2"]),
        ("a test in a suite of another name", {"src/a.cpp": "// KEPT: a. Pinned by Pcx.B.\n", "tests/a_test.cpp": "TEST(Pcx, B) {}\n"}, ["src/a.cpp:1"]),
    ],
    "listed-sources": [
        ("in its folder, from above, as a pair", dict(PAIR, **{"src/CMakeLists.txt": "qxv_sources(image/a.cpp)\n", "src/image/a.cpp": "",
                                                               "tests/os/CMakeLists.txt": "qxv_add_test(os SOURCES\n  a_test.cpp # first\n  b_test.cpp)\n",
                                                               "tests/os/a_test.cpp": "", "tests/os/b_test.cpp": ""}), []),
        ("forgotten, or only in a comment", {"tests/os/CMakeLists.txt": "# a_test.cpp\nqxv_add_test(os SOURCES bb_test.cpp)\n", "tests/os/a_test.cpp": "",
                                             "tests/os/b_test.cpp": "", "src/os/lock.cpp": ""},
         ["tests/os/a_test.cpp:1", "tests/os/b_test.cpp:1", "src/os/lock.cpp:1"]),
        ("half a pair", {"src/os/CMakeLists.txt": "qxv_os_sources(clock\n  file)\n", "src/os/file_win.cpp": ""}, ["src/os/file_win.cpp:1"]),
    ],
    "formatting": [
        ("as the style has it", {".clang-format": "BasedOnStyle: Google\n", "src/a.cpp": "int a = 1;\n"}, []),
        ("not as the style has it", {".clang-format": "BasedOnStyle: Google\n", "src/a.cpp": "int b;\nint  a=1;\n", "tests/b.h": "int c ;\n"},
         ["src/a.cpp:2", "tests/b.h:1"]),
    ],
    "forbidden-words": [
        ("ordinary words", {"README.md": "Parts of a file; a color map specification; libpng 1.6-2; /workshop\n", "src/a.cpp": "// spectrum\n"}, []),
        ("papers, numbers, folders", {"README.md": f"see {NUMBERED}\n", "docs/a.md": "\nas the sp" + "ec says\n", "scripts/x": "cd /wo" + "rk/x\n",
                                      "src/a.cpp": "int a;\n// 1.1" + "-3: bounds\n", "tests/p" + "art_1_2.cpp": ""},
         ["README.md:1", "docs/a.md:2", "scripts/x:1", "src/a.cpp:2", "tests/p" + "art_1_2.cpp:1"]),
    ],
    "file-length": [
        ("at the limit", {"src/a.cpp": "int a;\n" * 400, "docs/a.md": "a\n" * 900}, []),
        ("above it", {"src/a.cpp": "int a;\n" * 401}, ["src/a.cpp:401"]),
    ],
    "openings": [
        ("as it should be", {"src/os/a.h": "// a.h - what it is.\n// More.\n#pragma once\n", "src/os/a_win.cpp": "// a_win.cpp - it.\n\n#include \"os/a.h\"\n",
                             "include/qxv/b.h": "// b.h - it.\n#pragma once\n", "src/foundation/b.cpp": "// b.cpp - it.\n#include \"qxv/b.h\"\n#include <vector>\n",
                             "bench/c.h": "// c.h - it.\n#pragma once\n", "bench/c.cpp": "// c.cpp - it.\n#include \"bench/c.h\"\n"}, []),
        ("no name, another name, no guard", {"src/os/a.h": "#pragma once\n", "src/os/b.h": "// a.h - it.\n#include <vector>\n#pragma once\n", "src/os/c.h": "// c.h - it.\n"},
         ["src/os/a.h:1", "src/os/b.h:1", "src/os/b.h:2", "src/os/c.h:1"]),
        ("own header late or not at all", {"src/os/a.h": "// a.h - it.\n#pragma once\n", "src/os/a.cpp": "// a.cpp - it.\n#include <vector>\n#include \"os/a.h\"\n",
                                           "src/os/a_win.cpp": "// a_win.cpp - it.\n"}, ["src/os/a.cpp:2", "src/os/a_win.cpp:1"]),
    ],
    "shell-scripts": [
        ("a sound script", {"scripts/a": "#!/usr/bin/env bash\nset -e\necho \"$1\"\n", "scripts/b.py": "if (\n"}, []),
        ("an open quote", {"scripts/a": "#!/usr/bin/env bash\nif true; then\n  echo\n"}, ["scripts/a:4"]),
        ("a piece that others source", {"scripts/lib.sh": "root=/srv\nsay() { echo \"$who\"; }\n"}, []),
        ("what shellcheck sees", {"scripts/a.sh": "#!/bin/sh\nset -e\nrm -r $1/$unset\n"}, ["scripts/a.sh:3"]),
    ],
}
