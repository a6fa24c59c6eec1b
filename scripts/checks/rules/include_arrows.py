"""Includes run one way: types.h <- os <- foundation <- streams <- the subsystems, which do not know each other."""

import os
import re

from tree import Finding, includes

PURPOSE = "includes run one way, and no subsystem reaches into another"

# A public header belongs to the subsystem whose sources implement it.
PUBLIC = {
    "base": "types export version",
    "foundation": "string array module factories crc guid float_buffer host host_array host_date host_exception host_file host_geometry "
                  "host_list host_string",
    "streams": "stream_buffer buffer_file text_file unicode_ansi_file",
    "diagnostics": "log trace",
    "text": "xml dictionary registry profile",
    "digest": "md5",
    "system": "path disk identity",
    "netpath": "net_path",
    "image": "image",
    "audio": "audio",
    "numerics": "rounding conversion spline",
    "geometry": "vector2 vector3",
}
OWNER = {name: subsystem for subsystem, names in PUBLIC.items() for name in names.split()}
COMFORT = ("qxv", "interop")  # for applications; nothing of ours leans on them

LOWER = {"base": set(), "os": {"base"}, "foundation": {"base", "os"}, "streams": {"base", "os", "foundation"},
         "jpeg_codec": {"base"}}
ABOVE_STREAMS = {"base", "os", "foundation", "streams"}

# Services that one subsystem gives to others: giver -> (the stems of its headers, who may take them).
SHARED = {
    # streams: the fields of a text file's line are split and joined as everywhere; conversion itself knows no stream
    "numerics": ({"conversion"}, {"diagnostics", "text", "system", "image", "streams"}),
    "system": ({"path"}, {"diagnostics", "text", "image"}),
    "jpeg_codec": ({"jpeg_codec"}, {"image"}),  # a library of its own: only its three functions
}

ROOTS = ("include", "src", "tests", "bench", "fuzz", "tools")


def resolve(tree, path, name):
    """Where a quoted include leads in the tree, or None."""
    for folder in (os.path.dirname(path), ".") + ROOTS:
        for candidate in (os.path.normpath(f"{folder}/{name}"), os.path.normpath(f"{folder}/{name}.in")):
            if tree.exists(candidate):
                return candidate
    return None


def place(path):
    """(subsystem, stem) of a header or source; the subsystem of what stands outside include and src is its top folder."""
    parts = path.split("/")
    stem = re.sub(r"(_win|_posix)?\.(h|cpp|inc)(\.in)?$", "", parts[-1])
    if parts[0] == "include":
        return OWNER.get(stem, "comfort" if stem in COMFORT else "unknown"), stem
    if parts[0] == "src":
        return (parts[1] if len(parts) > 2 else "unknown"), stem
    return parts[0], stem


def refusal(path, target):
    """Why path may not include target; None when it may."""
    top, target_top = path.split("/")[0], target.split("/")[0]
    own, _ = place(path)
    other, stem = place(target)
    if top == "tests":
        return None
    if target_top == "tests":
        # a benchmark may race the reference, a fuzz driver run the model, that a test compares with
        return None if top in ("bench", "fuzz") else "takes a test's header"
    if top == "include":
        if target_top != "include":
            return "a public header takes only public headers and standard ones"
        if own == "base" and other != "base":
            return "types.h, export.h and version.h stand below every other header"
        if other == "comfort" and place(path)[1] != "qxv":
            return f"{stem}.h is for applications, our headers do not lean on it"
        return None
    if top == "tools":
        return None if target_top in ("include", "tools") else "a tool takes public headers only"
    if top in ("bench", "fuzz"):
        return None if target_top in ("include", "src", top) else f"{top} takes public headers, src and its own"
    if target_top not in ("include", "src"):
        return f"the library takes nothing from {target_top}"
    if other == "comfort":
        return f"{stem}.h is for applications, the library does not lean on it"
    if own == other or other in LOWER.get(own, ABOVE_STREAMS):
        return None
    stems, takers = SHARED.get(other, ((), ()))
    if own in takers and stem in stems:
        return None
    return f"{own} must not know {other}"


def check(tree):
    for path in tree.code():
        if place(path)[0] == "unknown":
            yield Finding(path, 1, "belongs to no subsystem: move it into one, or name it in scripts/checks/rules/include_arrows.py")
            continue
        for line, name, quoted in includes(tree.text(path)):
            if not quoted:
                if name.startswith("qxv/"):
                    yield Finding(path, line, f'write "{name}" with quotes')
                continue
            target = resolve(tree, path, name)
            if target is None:
                yield Finding(path, line, f"{name} is not in the tree: name it from include, src or tests on, or use <> for a foreign one")
                continue
            reason = refusal(path, target)
            if reason:
                yield Finding(path, line, f"{name}: {reason}")
