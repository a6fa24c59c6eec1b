"""Only src/os knows the operating system, and each foreign library is known to one source."""

import re

from tree import Finding, includes

PURPOSE = "system headers only in src/os; a foreign library only in the one source that adapts it"

STANDARD = set("""
algorithm any array atomic barrier bit bitset charconv chrono codecvt compare complex concepts condition_variable coroutine deque
exception execution filesystem format forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream
iterator latch limits list locale map memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio
regex scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string
string_view syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant
vector version cassert cctype cerrno cfenv cfloat cinttypes climits clocale cmath csetjmp csignal cstdarg cstddef cstdint cstdio
cstdlib cstring ctime cuchar cwchar cwctype assert.h ctype.h errno.h fenv.h float.h inttypes.h limits.h locale.h math.h setjmp.h
signal.h stdarg.h stddef.h stdint.h stdio.h stdlib.h string.h time.h uchar.h wchar.h wctype.h
""".split())

# The compiler's own, for kernels; which processor runs is asked in src/os/cpu only.
INTRINSICS = re.compile(r"[a-z0-9]*intrin\.h|arm_neon\.h|arm_acle\.h")

# Foreign libraries: header -> the sources that may include it; among them one does.
ADAPTERS = [
    (re.compile(r"FreeImage\.h"), re.compile(r"src/image/free_?image\w*\.(h|cpp)"), "the FreeImage adapter in src/image"),
    (re.compile(r"libxml/.*"), re.compile(r"src/os/\w+\.(h|cpp)"), "the XML source in src/os"),
    (re.compile(r"sqlite3\.h"), re.compile(r"src/os/\w+\.(h|cpp)"), "the registry source in src/os"),
    (re.compile(r"j(peglib|error|config|morecfg)\.h|turbojpeg\.h"), re.compile(r"src/jpeg_codec/\w+\.(h|cpp)"), "src/jpeg_codec"),
    (re.compile(r"CLI/.*"), re.compile(r"tools/qxvtool/support/arguments\.h"), "tools/qxvtool/support/arguments.h"),
]
PEERS = re.compile(r"bench/.*|tests/.*")  # measured beside, or compared with, any library

OPERATING_SYSTEM = re.compile(r"""(?x) (sys|net|netinet|arpa|linux|asm|bits)/.* | (unistd|fcntl|dirent|pthread|dlfcn|pwd|grp|iconv|
    langinfo|nl_types|utmpx?|mntent|netdb|poll|sched|semaphore|spawn|termios|glob|fnmatch|ftw|syslog|malloc|alloca|aio|cpuid|io|
    direct|process|tchar|conio|strings|monetary|wordexp|libgen|elf|link|execinfo)\.h |
    (?i:(win\w*|ws2\w*|mmreg|mmsystem|shl\w*|shellapi|obj\w*|ole\w*|msxml\w*|rpc\w*|lm\w*|psapi|iphlpapi|tlhelp32|io|dbghelp|ntdef|
    ntstatus|fileapi|handleapi|processthreadsapi|synchapi|sysinfoapi|comdef|unknwn|bcrypt|versionhelpers)\.h)""")

WINDOWS = re.compile(r"(?i)windows\.h")
WINDOWS_IN = ("src/os/win_api.h", "include/qxv/types.h")
PUBLIC_EXCEPTIONS = {"include/qxv/types.h": re.compile(r"windows\.h|mmreg\.h|afxwin\.h"), "include/qxv/host.h": re.compile(r"(?i)(afx|atl)\w*\.h")}
SYSTEM_FOLDERS = re.compile(r"src/os/.*|tests/(support|os|abi)/.*|tools/qxvtool/support/console_(posix|win)\.cpp")


def refusal(path, name):
    """Why path may not include <name>; None when it may."""
    if name in STANDARD:
        return None
    if WINDOWS.fullmatch(name):
        return None if path in WINDOWS_IN else 'include "os/win_api.h" (in src/os) instead'
    if path in PUBLIC_EXCEPTIONS and PUBLIC_EXCEPTIONS[path].fullmatch(name):
        return None
    if path.startswith("include/"):
        return "a public header takes only public headers and standard ones"
    if INTRINSICS.fullmatch(name):
        return None
    if PEERS.fullmatch(path) and not OPERATING_SYSTEM.fullmatch(name):
        return None
    for header, sources, where in ADAPTERS:
        if header.fullmatch(name):
            return None if sources.fullmatch(path) else f"only {where} includes it"
    if SYSTEM_FOLDERS.fullmatch(path):
        return None
    return "the system and foreign libraries are reached through src/os (a tool: its console): call what it offers or add it there"


def check(tree):
    first_user = {}
    for path in tree.code():
        for line, name, quoted in includes(tree.text(path)):
            if quoted:
                continue
            reason = refusal(path, name)
            if reason:
                yield Finding(path, line, f"<{name}>: {reason}")
            for header, sources, where in ADAPTERS:
                if header.fullmatch(name) and sources.fullmatch(path) and first_user.setdefault(where, path) != path:
                    yield Finding(path, line, f"<{name}>: {first_user[where]} has it already; one source adapts a library")
