"""The names that a built library really exports, and how a line of the table is spelled on each system.

A line of the table names types as our headers do. Where the two systems write a type differently, SYMBOLS knows both forms.
"""

import re
import subprocess

# Word of the table -> (how Linux spells it, how Windows spells it). When a table is written, the first fit of a pair is taken.
SYMBOLS = {
    "QXChar": ("char16_t", "wchar_t"),
    "DWORD": ("unsigned int", "unsigned long"),
    "HRESULT": ("int", "long"),
    "size_t": ("unsigned long", "unsigned long long"),
    "time_t": ("long", "long long"),
    "ptrdiff_t": ("long", "long long"),
    "va_list": ("__va_list_tag*", "char*"),
    "GUID": ("GUID", "_GUID"),
    "FILETIME": ("FILETIME", "_FILETIME"),
    "SYSTEMTIME": ("SYSTEMTIME", "_SYSTEMTIME"),
    "POINT": ("POINT", "tagPOINT"),
    "RECT": ("RECT", "tagRECT"),
}
SYSTEMS = ("linux", "windows")

# What the compiler makes for itself. Vtables are handled apart: a class that applications link to needs them.
COMPILER_MADE = re.compile(r"(typeinfo|typeinfo name|VTT|guard variable|construction vtable|(non-)?virtual thunk|"
                           r"covariant return thunk|reference temporary.*|TLS (init|wrapper) function) (for|to) ")
STANDARD_LIBRARY = re.compile(r"_Z(?:GV|T[VTISC]|T[hv][n0-9_]*_|Z)*(?:N[VKrRO]*)?(?:S[a-zA-Z]|9__gnu_cxx|10__cxxabiv)")
# mingw exports the type information that a catch or throw of a standard exception makes, whatever the linker is told. It is data that
# every program has its own copy of, so it harms nobody.
TYPE_INFORMATION_OF_STD = re.compile(r"_ZT[IS]St\w+$")
INTERNAL = re.compile(r"_Z(?:GV|T[VTISC]|T[hv][n0-9_]*_|Z)*N[VKrRO]*3qxv[0-9CD]")


class Library:
    """names: what the table must know. optional: inline members and the like, which applications compile for themselves;
    whether a library holds them too is the compiler's choice. foreign: mangled names that should not have got out."""

    def __init__(self, path, objects=()):
        with open(path, "rb") as file:
            self.system = "windows" if file.read(2) == b"MZ" else "linux"
        self.path = path
        strong, weak = read_windows(path, objects) if self.system == "windows" else read_linux(path)
        mangled = sorted(strong | weak)
        readable = dict(zip(mangled, demangle(mangled)))
        if self.system == "windows":
            mangled = [name for name in mangled if not TYPE_INFORMATION_OF_STD.match(name)]
        self.foreign = [name for name in mangled if STANDARD_LIBRARY.match(name) or INTERNAL.match(name)]
        own = [name for name in mangled if name not in self.foreign and not COMPILER_MADE.match(readable[name])]
        tables = {readable[name] for name in own if readable[name].startswith("vtable for ")}
        self.names = {readable[name] for name in own if name in strong} - tables
        self.names |= {table for table in tables if any(name.startswith(table[len("vtable for "):] + "::") for name in self.names)}
        self.optional = {readable[name] for name in own} - self.names


def output(*command):
    return subprocess.run(command, check=True, text=True, capture_output=True).stdout


def demangle(names):
    """Readable forms in the same order; constructors and destructors of all kinds fall together here."""
    if not names:
        return []
    done = subprocess.run(["c++filt"], input="\n".join(names) + "\n", check=True, text=True, capture_output=True)
    return done.stdout.split("\n")[:-1]


def read_linux(path):
    """(strong, weak) names. A weak name is an inline function, or a template of which each user has a copy."""
    strong, weak = set(), set()
    for line in output("nm", "-D", "--defined-only", "--format=posix", path).splitlines():
        name, kind = line.split()[:2]
        (weak if kind in "WwVvu" else strong).add(name.split("@")[0])
    return strong, weak


def read_windows(path, objects):
    """The same of a DLL. Its table does not tell the two apart, but the objects that it was linked from do: what each user may
    have a copy of stands there in a section of its own, .text$name."""
    names, inside = set(), False
    for line in output("x86_64-w64-mingw32-objdump", "-p", path).splitlines():
        if line.startswith("[Ordinal/Name Pointer] Table"):
            inside = True
        elif inside:
            match = re.match(r"\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+[0-9a-f]+\s+)?(\S+)$", line)
            if not match:
                inside = False
            else:
                names.add(match.group(1))
    shared = set()
    for start in range(0, len(objects), 50):
        listing = output("x86_64-w64-mingw32-nm", "--format=sysv", *objects[start:start + 50])
        shared |= set(re.findall(r"^(\S+)\s*\|[^|]*\|\s*[A-Z]\s*\|.*\|\s*\.[a-z]+\$\1\s*$", listing, re.MULTILINE))
    return names - shared, names & shared


def spell(line, system):
    """A line of the table as this system's tools print it."""
    index = SYSTEMS.index(system)
    return re.sub(r"[A-Za-z_]\w*", lambda word: SYMBOLS[word.group(0)][index] if word.group(0) in SYMBOLS else word.group(0), line)


_TOKEN = re.compile(r"unsigned (?:long long|long|int)\b|long long\b|__va_list_tag\*|char\*|\w+|.")


def merge(linux, windows):
    """(the line of the table that both names are spellings of, how many words differed); None when there is no such line."""
    left, right = _TOKEN.findall(linux), _TOKEN.findall(windows)
    if len(left) != len(right):
        return None
    line, changes = [], 0
    for pair in zip(left, right):
        word = next((symbol for symbol, forms in SYMBOLS.items() if forms == pair), None)
        if word is None and pair[0] != pair[1]:
            return None
        line.append(word or pair[0])
        changes += pair[0] != pair[1]
    return "".join(line), changes


# Every form of every word, the longest first; pointers (char*) have no word boundary behind them.
_FORMS = sorted({form for forms in SYMBOLS.values() for form in forms} | {"unsigned long long"}, key=len, reverse=True)
_ANY_FORM = re.compile("|".join(r"\b" + re.escape(form) + ("" if form.endswith("*") else r"\b") for form in _FORMS))


def shape(name):
    """What stays of a name whichever system spells it: the key by which partners are sought."""
    return _ANY_FORM.sub("#", name)


def pair_up(linux, windows):
    """(lines of the table, names that only Linux has, names that only Windows has)"""
    by_shape = {}
    for name in windows:
        by_shape.setdefault(shape(name), []).append(name)
    candidates = []
    for name in linux:
        for other in by_shape.get(shape(name), []):
            merged = merge(name, other)
            if merged:
                candidates.append((merged[1], merged[0], name, other))
    lines, left, right = set(), set(linux), set(windows)
    for _, line, name, other in sorted(candidates):  # fewest differing words first: f(int) meets f(int) before f(long)
        if name in left and other in right:
            lines.add(line)
            left.remove(name)
            right.remove(other)
    return lines, left, right
