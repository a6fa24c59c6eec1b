"""The files that the rules look at, and how a rule says what it found."""

import os
import re
import subprocess
from typing import NamedTuple

CODE_FOLDERS = ("include", "src", "tests", "bench", "fuzz", "tools")
CODE_SUFFIXES = (".h", ".cpp", ".inc")


class Finding(NamedTuple):
    path: str
    line: int
    advice: str

    def __str__(self):
        return f"{self.path}:{self.line}: {self.advice}"


class Tree:
    """A source tree: paths relative to its root with '/' between folders, and the text of each file, read once."""

    def __init__(self, root):
        self.root = os.path.abspath(root)
        self.paths = sorted(self._git_paths() or self._walked_paths())
        self._texts = {}

    def _git_paths(self):
        """Tracked files and new ones that git does not ignore; nothing when the root is not a repository's own."""
        if not os.path.exists(os.path.join(self.root, ".git")):
            return []
        listed = subprocess.run(["git", "-C", self.root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                                capture_output=True, check=True).stdout.decode().split("\0")
        return {path for path in listed if path and os.path.isfile(os.path.join(self.root, path))}

    def _walked_paths(self):
        for folder, folders, names in os.walk(self.root):
            folders[:] = [name for name in folders if name not in (".git", ".cache", "build", "__pycache__")]
            for name in names:
                yield os.path.relpath(os.path.join(folder, name), self.root).replace(os.sep, "/")

    def text(self, path):
        if path not in self._texts:
            with open(os.path.join(self.root, path), "rb") as file:
                data = file.read()
            self._texts[path] = "" if b"\0" in data else data.decode("utf-8", errors="replace")
        return self._texts[path]

    def lines(self, path):
        return self.text(path).split("\n")

    def under(self, *folders):
        return [path for path in self.paths if path.split("/")[0] in folders]

    def code(self, *folders):
        """C++ headers and sources of these top folders (of all, when none is named)."""
        return [path for path in self.under(*(folders or CODE_FOLDERS)) if path.endswith(CODE_SUFFIXES)]

    def public_headers(self):
        return [path for path in self.paths if re.fullmatch(r"include/qxv/[^/]+\.h", path)]

    def exists(self, path):
        return path in self._path_set

    @property
    def _path_set(self):
        if not hasattr(self, "_set"):
            self._set = set(self.paths)
        return self._set


_TOKEN = re.compile(r"""//(?:[^\n\\]|\\.|\\\n)*
                      | /\*.*?\*/
                      | (?<![A-Za-z0-9_])(?:u8|[uUL])?R"(?P<tag>[^()\s\\]{0,16})\(.*?\)(?P=tag)"
                      | "(?:[^"\\\n]|\\.)*"
                      | (?<![0-9A-Fa-f])'(?:[^'\\\n]|\\.)+'""", re.DOTALL | re.VERBOSE)


def without_comments(text, strings_too=False):
    """The code with its comments blanked (and its text literals, when asked); every line keeps its number."""

    def blank(match):
        token = match.group(0)
        if token.startswith(("//", "/*")) or strings_too:
            return re.sub(r"[^\n]", " ", token)
        return token

    return _TOKEN.sub(blank, text)


def includes(text):
    """(line number, name, quoted) of every #include that is not commented out."""
    for number, line in enumerate(without_comments(text).split("\n"), 1):
        match = re.match(r'\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)', line)
        if match:
            yield number, match.group(1) or match.group(2), match.group(1) is not None
