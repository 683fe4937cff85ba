#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that the Settings application, its page included, knows no class of the plug-in by its name.

Usage: check_product_names.py SOURCE_TREE

The classes are found in the sources of the plug-in and of velmora/. None of their names may stand as a word in a file
below settings/, nor in a test of the page but for those that open the real phone (they import real-phone.mjs, at first
hand or through another): the application and its page would know what to do for this plug-in's screens and for no
other bundle's.

Prints one line for each breach; the exit status is 1 when there is one.
"""

import re
import sys
from pathlib import Path

PLUGIN = ("shell", "profile", "conditions", "support", "velmora")
DEFINED = re.compile(r"^(?:class|struct)\s+(\w+)(?:\s+final)?\s*[:{]", re.MULTILINE)
REGISTERED = re.compile(r"\bPLATFORM_(?:REGISTER_)?(?:CELL_)?CLASS\((\w+)")
IMPORT = re.compile(r"""(?:from|import)\s*\(?\s*['"](\.{1,2}/[\w./-]+\.mjs)['"]""")
REAL_PHONE = "real-phone.mjs"
SKIPPED = {"node_modules", "package-lock.json"}


def product_classes(tree):
    names = set()
    for top in PLUGIN:
        for path in (tree / top).rglob("*"):
            if path.suffix in (".h", ".cpp"):
                text = path.read_text(encoding="utf-8")
                names.update(REGISTERED.findall(text))
                if path.suffix == ".h":
                    names.update(DEFINED.findall(text))
    return names


def opens_real_phone(path, imports, seen=()):
    return path.name == REAL_PHONE or any(opens_real_phone(other, imports, (*seen, path))
                                          for other in imports.get(path, ()) if other not in seen)


def page_tests(tree):
    """The files of the page's tests that stay off the real phone."""
    files = sorted((tree / "tests/web").rglob("*.mjs"))
    imports = {path: [(path.parent / other).resolve() for other in IMPORT.findall(path.read_text(encoding="utf-8"))]
               for path in files}
    return [path for path in files if not opens_real_phone(path, imports)]


def application_files(tree):
    for path in sorted((tree / "settings").rglob("*")):
        if path.is_file() and not SKIPPED.intersection(path.parts):
            yield path


def check_tree(tree):
    names = product_classes(tree)
    if len(names) < 2:
        yield f"only {len(names)} classes of the plug-in were found below {tree}"
        return
    word = re.compile(r"\b(" + "|".join(sorted(names)) + r")\b")
    seen = 0
    for path in [*application_files(tree), *page_tests(tree)]:
        try:
            text = path.read_text(encoding="utf-8")
        except UnicodeDecodeError:
            continue
        seen += 1
        for number, line in enumerate(text.splitlines(), 1):
            for name in word.findall(line):
                yield f"{path.relative_to(tree)}:{number}: names the plug-in's class {name}"
    if seen < 2:
        yield f"only {seen} files were looked at below {tree}"


def main():
    breaches = list(check_tree(Path(sys.argv[1]).resolve()))
    for breach in breaches:
        print(breach)
    print(f"{len(breaches)} names of the plug-in's classes outside it")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
