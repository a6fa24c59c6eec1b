"""What a built library must be beside its names: what it takes from others, and how the loader protects it."""

import re

from exported_names import output

# Of the C library's wide functions each reads 32-bit units, where our characters have 16.
WIDE = re.compile("_*(isoc99_|isoc23_)?(" + "|".join([
    r"wcs\w+", r"wmem\w+", r"isw\w+", r"wctype(_l)?", r"wctrans(_l)?", r"tow(lower|upper|ctrans)(_l)?",
    r"v?[fs]?w(printf|scanf)(_chk)?",
    r"mbtowc", r"mbrtowc", r"mbs(r|nr)?towcs(_chk)?", r"wctomb(_chk)?", r"wcrtomb(_chk)?", r"btowc", r"wctob",
    r"f?getwc(har)?(_unlocked)?", r"f?putwc(har)?(_unlocked)?", r"fgetws(_unlocked)?(_chk)?", r"fputws(_unlocked)?", r"ungetwc", r"fwide",
]) + ")$")
WIDE_TEXT = re.compile(r"_Z.*(basic_string(_view)?|char_traits|basic_[io]?stream|basic_[a-z]*buf)Iw")

# What every Windows has, and the two libraries of the suite that ours calls by name.
SYSTEM_DLLS = set("""advapi32 bcrypt crypt32 gdi32 iphlpapi kernel32 mpr msvcrt netapi32 ntdll ole32 oleaut32 psapi rpcrt4 secur32
shell32 shlwapi user32 userenv version winmm ws2_32 wsock32""".split())
SUITE_DLLS = {"freeimage", "qxvjpegcodec"}

HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT = 0x0020, 0x0040, 0x0100


def problems(library):
    return windows_problems(library.path) if library.system == "windows" else linux_problems(library.path)


def linux_problems(path):
    for line in output("nm", "-D", "--undefined-only", "--format=posix", path).splitlines():
        name = line.split()[0].split("@")[0]
        if WIDE.match(name):
            yield f"takes the wide function {name} from the C library; characters here have 16 bits"
        elif WIDE_TEXT.match(name):
            yield f"takes wide text from the C++ library: {name}"
    dynamic = output("readelf", "-dW", path)
    segments = output("readelf", "-lW", path)
    if "GNU_RELRO" not in segments:
        yield "has no segment that becomes read-only after relocation: link with -z relro"
    if not re.search(r"\(FLAGS\).*BIND_NOW|\(FLAGS_1\).*NOW", dynamic):
        yield "binds its calls late, so their table stays writable: link with -z now"
    if not re.search(r"GNU_STACK.* RW +0x", segments):
        yield "asks for an executable stack: link with -z noexecstack"
    if "TEXTREL" in dynamic:
        yield "has relocations in its code: compile everything with -fPIC"


def windows_problems(path):
    headers = output("x86_64-w64-mingw32-objdump", "-p", path)
    for name in re.findall(r"^\s*DLL Name: (\S+)", headers, re.MULTILINE):
        if name.lower().removesuffix(".dll") not in SYSTEM_DLLS | SUITE_DLLS:
            yield f"needs {name}, which a Windows machine does not have by itself"
    characteristics = re.search(r"^DllCharacteristics\s+([0-9a-fA-F]+)", headers, re.MULTILINE)
    value = int(characteristics.group(1), 16) if characteristics else 0
    for bit, flag in ((HIGH_ENTROPY_VA, "--high-entropy-va"), (DYNAMIC_BASE, "--dynamicbase"), (NX_COMPAT, "--nxcompat")):
        if not value & bit:
            yield f"lacks a protection of the loader: link with {flag}"
