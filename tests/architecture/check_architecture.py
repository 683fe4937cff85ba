#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the architecture from the include lines and from the linked libraries.

Usage: check_architecture.py SOURCE_TREE SHARED_OBJECT...
       check_architecture.py --sources SOURCE_TREE

1. The plug-in, velmora/ and platform/ include nothing but their own headers, the C++ standard library's and POSIX's,
   and their shared objects need nothing but each other and the compiler's run time.
2. settings/ includes no header of the plug-in or of velmora/.
3. The plug-in includes no header of the operating system: it reaches the machine through platform/.
4. examples/ is what somebody else would write: an example includes its own headers, those of platform/ and the C++
   standard library's.
5. quietrix/, the command, stands on the store's library and device/: it includes no screen, nothing of velmora/ and
   nothing of settings/.
6. Nothing depends upwards, and there are no cycles between files or between folders. The rooms of settings/ and the
   screens of the plug-in depend on each other only as far as the tables below say.

Prints one line for each breach; the exit status is 1 when there is one.
"""

import re
import subprocess
import sys
from pathlib import Path

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')

# From the bottom. A folder may include its own headers and those of the folders that stand before it, as far as SCREENS
# and its row in MAY_INCLUDE allow.
LAYERS = (
    "platform/foundation", "platform/uikit", "platform/preferences", "platform/eventkit", "platform/tonekit",
    "platform/messageui", "platform/social", "velmora",
    "shell/base", "profile/model", "support/sharing", "shell/chrome", "profile/cells",
    "profile/hours", "profile/editor", "conditions", "conditions/calendars", "conditions/eventstatus",
    "conditions/networks", "conditions/tone", "support/misc", "shell/root",
    "device", "springboard", "json", "usage",
    "settings/application", "settings/commands", "settings/state", "settings/channels/server", "settings/channels",
    "settings/checking", "settings/recording", "settings/exploring", "settings/watching", "settings/program",
    "quietrix",
)
PLUGIN = ("shell/", "profile/", "conditions/", "support/")
CORE = PLUGIN + ("velmora/", "platform/")
EXAMPLES = "examples/"
# Folders of one height: screens, which open each other by name only, the editor's four pickers among them. What the
# pickers share stands in the folder around theirs.
SCREENS = ("profile/hours", "profile/editor", "conditions", "conditions/calendars", "conditions/eventstatus",
           "conditions/networks", "conditions/tone", "support/misc")
# What these may include beside their own headers and those of platform/: of each other, the plug-in and velmora/ no more
# than this.
MAY_INCLUDE = {
    "device": (),
    "springboard": ("device",),
    "json": (),
    "usage": (),
    "settings/application": ("device",),
    "settings/commands": ("device", "settings/application"),
    "settings/state": ("settings/application",),
    "settings/channels/server": (),
    "settings/channels": ("device", "json", "settings/application", "settings/commands", "settings/state",
                          "settings/channels/server"),
    "settings/checking": ("settings/application", "settings/channels"),
    "settings/recording": ("device", "springboard", "settings/application", "settings/commands", "settings/channels",
                           "settings/channels/server"),
    "settings/exploring": ("device", "settings/application", "settings/channels", "settings/recording"),
    "settings/watching": ("device", "settings/channels", "settings/channels/server"),
    "settings/program": ("device", "settings/application", "settings/channels", "settings/checking",
                         "settings/channels/server", "settings/exploring", "settings/recording", "settings/watching", "usage"),
    "quietrix": ("shell/base", "profile/model", "device", "json", "usage"),
}

CPP_HEADERS = set("""
algorithm any array atomic bit bitset charconv chrono cmath compare complex concepts condition_variable cstddef cstdint
cstdio cstdlib cstring ctime deque exception expected filesystem fstream functional future initializer_list iomanip ios
iosfwd iostream istream iterator latch limits list locale map memory mutex new numbers numeric optional ostream queue
random ranges ratio regex scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept
stop_token streambuf string string_view strstream system_error thread tuple type_traits typeindex typeinfo
unordered_map unordered_set utility valarray variant vector version cassert cctype cerrno cfenv cfloat cinttypes
climits clocale csetjmp csignal cstdarg cuchar cwchar cwctype
""".split())
POSIX_HEADERS = set("""
arpa/inet.h dirent.h dlfcn.h errno.h fcntl.h fnmatch.h locale.h poll.h pthread.h signal.h spawn.h sys/file.h sys/mman.h
sys/random.h sys/socket.h sys/stat.h sys/time.h sys/types.h sys/un.h sys/wait.h time.h unistd.h wctype.h
""".split())
RUNTIME_LIBRARIES = re.compile(r"^(libstdc\+\+|libc|libm|libgcc_s|ld-linux.*|libasan|libubsan|libtsan)\.so")


def layer_of(path):
    matching = [layer for layer in LAYERS if path.startswith(layer + "/")]
    return max(matching, key=len) if matching else None


def sources(tree):
    for top in ("platform", "velmora", "shell", "profile", "conditions", "support", "device", "springboard", "json", "usage", "settings",
                "quietrix", "examples"):
        for path in sorted((tree / top).rglob("*")):
            if path.suffix in (".h", ".cpp") and "node_modules" not in path.parts:
                yield path.relative_to(tree).as_posix()


def includes(tree, source):
    text = (tree / source).read_text(encoding="utf-8")
    for number, line in enumerate(text.splitlines(), 1):
        if match := INCLUDE.match(line):
            yield number, match.group(1), match.group(2)


def check_system_header(source, where, header):
    if not source.startswith(CORE) or header in CPP_HEADERS:
        return
    if header not in POSIX_HEADERS:
        yield f"{where}: <{header}> is neither of the C++ standard library nor of POSIX"
    elif source.startswith(PLUGIN):
        yield f"{where}: the plug-in includes the operating system's <{header}>"


def check_example(tree, source, where, own, system):
    if system and system not in CPP_HEADERS:
        yield f"{where}: <{system}> is not of the C++ standard library"
    is_sibling = own and "/" not in own and ((tree / source).parent / own).is_file()
    if own and not is_sibling and not own.startswith("platform/"):
        yield f'{where}: an example includes "{own}", which is neither its own nor of platform/'


def may_depend(own, other):
    if own in MAY_INCLUDE:
        return other.startswith("platform/") or other in MAY_INCLUDE[own]
    if own in SCREENS and other in SCREENS and not own.startswith(other + "/"):
        return False
    return LAYERS.index(other) < LAYERS.index(own)


def check_own_header(tree, source, where, header):
    if not (tree / header).is_file():
        yield f'{where}: "{header}" is no file of this tree'
        return
    if source.startswith("settings/") and header.startswith(PLUGIN + ("velmora/",)):
        yield f'{where}: settings/ includes "{header}" of the plug-in'
        return
    own, other = layer_of(source), layer_of(header)
    if other is None:
        yield f'{where}: "{header}" is in no layer'
    elif own != other and not may_depend(own, other):
        yield f'{where}: {own} may not depend on {other} ("{header}")'


def cycle_in(graph):
    """A list of nodes that form a cycle, or None."""
    done, path = set(), []

    def visit(node):
        if node in path:
            return path[path.index(node):] + [node]
        if node in done:
            return None
        path.append(node)
        for following in sorted(graph.get(node, ())):
            if found := visit(following):
                return found
        path.pop()
        done.add(node)
        return None

    for start in sorted(graph):
        if found := visit(start):
            return found
    return None


def check_tree(tree):
    files, folders, seen = {}, {}, 0
    for source in sources(tree):
        seen += 1
        if source.startswith(EXAMPLES):
            for number, own, system in includes(tree, source):
                yield from check_example(tree, source, f"{source}:{number}", own, system)
            continue
        if layer_of(source) is None:
            yield f"{source}: is in no layer"
            continue
        for number, own, system in includes(tree, source):
            where = f"{source}:{number}"
            if system:
                yield from check_system_header(source, where, system)
                continue
            yield from check_own_header(tree, source, where, own)
            files.setdefault(source, set()).add(own)
            here, there = str(Path(source).parent), str(Path(own).parent)
            if here != there:
                folders.setdefault(here, set()).add(there)
    for kind, graph in (("files", files), ("folders", folders)):
        if found := cycle_in(graph):
            yield f"cycle between {kind}: " + " -> ".join(found)
    if seen < 20:
        yield f"only {seen} sources were found below {tree}"


def check_library(path, known):
    listing = subprocess.run(["readelf", "-d", path], check=True, capture_output=True, text=True).stdout
    needed = re.findall(r"\(NEEDED\).*\[(.+)\]", listing)
    if not needed:
        yield f"{path}: needs no library at all, which cannot be"
    for library in needed:
        if not RUNTIME_LIBRARIES.match(library) and library not in known:
            yield f"{Path(path).name}: needs {library}"


def main():
    # "--sources" looks at nothing built; without it a call that names no library is one that forgot them.
    only_sources = sys.argv[1:2] == ["--sources"]
    tree, *objects = sys.argv[2:] if only_sources else sys.argv[1:]
    breaches = list(check_tree(Path(tree)))
    known = {Path(path).name for path in objects}
    for path in objects:
        breaches += check_library(path, known)
    for breach in breaches:
        print(breach)
    print(f"{len(breaches)} breaches of the architecture")
    return 1 if breaches or not (objects or only_sources) else 0


if __name__ == "__main__":
    sys.exit(main())
