"""Compares a built library with the table of exported names, and looks at how it was linked.

    check_exports.py check TABLE LIBRARY [OBJECTS]      LIBRARY is a .so or a .dll; exits with 1 when anything differs
    check_exports.py write TABLE SO DLL [OBJECTS]       writes the table anew; the two must export the same

OBJECTS is a file that names the object files of the DLL, one a line (build/windows/tests/abi/objects.txt).
"""

import sys

from exported_names import Library, pair_up, spell
from hardening import problems

HEADING = """# Exported names, the same on both systems: QXChar is wchar_t or char16_t, and where the systems spell a type differently
# (DWORD, GUID, size_t, va_list ...) the header's word stands here. Constructors and destructors count once; of what the compiler
# makes for itself only the vtables of exported classes are listed. Written anew by tests/abi/check_exports.py write.
"""


def read_table(path):
    with open(path, encoding="utf-8") as file:
        return [line.rstrip("\n") for line in file if line.strip() and not line.startswith("#")]


def differences(table, library):
    """Lines to print, none when library exports exactly what table lists."""
    if table != sorted(set(table)):
        yield "the table is not sorted, or has a line twice: write it anew, or sort it bytewise"
    expected = {}
    for line in table:
        spelled = spell(line, library.system)
        if spelled in expected:
            yield f"two lines mean the same on {library.system}: {expected[spelled]} / {line}"
        expected[spelled] = line
    for spelled, line in expected.items():
        if spelled not in library.names and spelled not in library.optional:
            yield f"- {line}    (listed, but not exported" + (f"; sought as {spelled})" if spelled != line else ")")
    for name in sorted(library.names - set(expected)):
        yield f"+ {name}    (exported, but not listed)"
    for name in library.foreign:
        yield f"+ {name}    (a name of the C++ library or of our inside: it must not be exported)"


def check(table_path, library_path, objects_path=None):
    library = Library(library_path, read_objects(objects_path))
    found = list(differences(read_table(table_path), library)) + list(problems(library))
    for line in found:
        print(line)
    print(f"{library_path}: {len(library.names)} exported names for {library.system}, {len(found)} problems")
    return 1 if found else 0


def write(table_path, so_path, dll_path, objects_path=None):
    linux, windows = Library(so_path), Library(dll_path, read_objects(objects_path))
    lines, left, right = pair_up(linux.names, windows.names)
    # What became inline stays listed while both still hand it out: programs built before look for it there.
    lines |= {line for line in read_table(table_path)
              if spell(line, "linux") in linux.optional and spell(line, "windows") in windows.optional}
    for system, names in (("Linux", left), ("Windows", right)):
        for name in sorted(names):
            print(f"only {system} exports {name}")
    if left or right:
        return 1
    with open(table_path, "w", encoding="utf-8") as file:
        file.write(HEADING + "".join(line + "\n" for line in sorted(lines)))
    return 0


def read_objects(path):
    if path is None:
        return []
    with open(path, encoding="utf-8") as file:
        return [line.strip() for line in file if line.strip().endswith((".o", ".obj"))]


def main(arguments):
    if len(arguments) in (3, 4) and arguments[0] == "check":
        return check(*arguments[1:])
    if len(arguments) in (4, 5) and arguments[0] == "write":
        return write(*arguments[1:])
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
