# SPDX-License-Identifier: MIT
"""Chooses the tests that a change can break, for ./test --changed.

    changed_tests.py SOURCE BUILD CHANGED_FILE…

Prints one name of a test a line, nearest to the change first, and on standard error what was left out and why. BUILD is
a build directory that is up to date: what an executable or a page is made of is asked of its build system, so that nothing
has to be kept by hand. A test of a script sees the script, what that imports, and the files and folders that it names.
"""
import argparse
import json
import math
import os
import re
import subprocess
import sys
from collections import defaultdict

# What the program needs when it runs, beside what it is linked with.
RUNTIME_FOLDERS = ("share", "libexec")
# Of these nobody knows what they see, and they are over at once.
ALWAYS = {"architecture", "resources", "scripts"}
UNKNOWN_SECONDS = 20.0
IMPORT = re.compile(r"""^\s*(?:import\s+(\w+)|from\s+(\w+)\s+import|.*?(?:from|import)\s*\(?\s*['"]([^'"]+)['"])""", re.M)


class Build:
    """What the outputs of a build directory are made of, as paths below the source directory."""

    def __init__(self, source, directory):
        self.source = source
        self.directory = directory
        self.outputs = [line.rsplit(":", 1)[0] for line in self._ninja("-t", "targets", "all").splitlines()]
        self.headers = self._headers()
        self._inputs = {}

    def _ninja(self, *arguments):
        return subprocess.run(("ninja", "-C", self.directory, *arguments), check=True, capture_output=True, text=True,
                              errors="replace").stdout

    def _headers(self):
        """The sources that each object was compiled from, headers included."""
        found = defaultdict(set)
        output = ""
        for line in self._ninja("-t", "deps").splitlines():
            if line[:1] not in (" ", ""):
                output = line.split(":", 1)[0]
            elif line.startswith("    "):
                found[output].add(self.source_path(line.strip()))
        return found

    def source_path(self, path):
        return os.path.relpath(os.path.join(self.directory, path), self.source)

    def sources_of(self, output):
        """All files that an output, or a directory of outputs, is made of."""
        if output not in self._inputs:
            targets = [output] if output in self.outputs else [each for each in self.outputs if each.startswith(output + "/")]
            paths = self._ninja("-t", "inputs", *targets).splitlines() if targets else []
            sources = set()
            for path in paths + targets:
                sources.add(self.source_path(path))
                sources |= self.headers.get(path, set())
            self._inputs[output] = sources
        return self._inputs[output]


class Scripts:
    """What the scripts of the tests import, from one another's text."""

    def __init__(self, source, files):
        self.source = source
        self.files = set(files)
        self.by_name = defaultdict(list)
        for path in files:
            self.by_name[os.path.splitext(os.path.basename(path))[0]].append(path)
        self._texts = {}

    def text(self, path):
        if path not in self._texts:
            try:
                with open(os.path.join(self.source, path), encoding="utf-8") as file:
                    self._texts[path] = file.read()
            except (OSError, UnicodeDecodeError):
                self._texts[path] = ""
        return self._texts[path]

    def imported(self, path):
        """The script itself and all that it imports, directly or not."""
        found, waiting = set(), [path]
        while waiting:
            script = waiting.pop()
            if script in found:
                continue
            found.add(script)
            for names in IMPORT.findall(self.text(script)):
                name = os.path.splitext(os.path.basename(next(filter(None, names), "")))[0]
                waiting += self.by_name.get(name, [])
        return found

    def names(self, scripts, changed):
        """Whether one of the scripts names the file, or the folder that it is in."""
        parts = changed.split("/")
        wanted = {parts[-1]} | {"/".join(parts[:count]) for count in range(2, len(parts))}
        return any(each in self.text(script) for script in scripts for each in wanted)


def needed_of(test, build, scripts):
    """The files that a test is made of, and the scripts among them."""
    properties = {each["name"]: each["value"] for each in test.get("properties", [])}
    folder = properties.get("WORKING_DIRECTORY", build.directory)
    words = list(test.get("command", []))
    for setting in properties.get("ENVIRONMENT", []):
        words.append(setting.split("=", 1)[1])
    files, own = set(), set()
    for word in words:
        path = os.path.realpath(os.path.join(folder, word))
        if path.startswith(build.directory + os.sep):
            output = os.path.relpath(path, build.directory)
            files |= build.sources_of(output)
            if os.path.basename(output) == "quietrix-settings":
                for each in RUNTIME_FOLDERS:
                    files |= build.sources_of(each)
        elif path.startswith(build.source + os.sep):
            own |= scripts.imported(os.path.relpath(path, build.source))
    return files | own, own


def labels_of(test):
    for each in test.get("properties", []):
        if each["name"] == "LABELS":
            return set(each["value"])
    return set()


def affected(tests, changed, build, scripts):
    """The names of the tests that a changed file can break, each with how far it is from the change: its own script is
    nearest, then what is named like the changed file, then what is made of the fewest files."""
    found = {}
    stems = {os.path.basename(each).split(".")[0].lower() for each in changed}
    for test in tests:
        needed, own = needed_of(test, build, scripts)
        if own & set(changed):
            found[test["name"]] = (0, 0)
        elif needed & set(changed) or labels_of(test) & ALWAYS or any(scripts.names(own, each) for each in changed):
            is_namesake = bool(stems & set(test["name"].split("-")))
            found[test["name"]] = (1 if is_namesake else 2, len(needed))
    return found


def known_seconds(directory):
    """What each test took when it last ran here."""
    seconds = {}
    try:
        with open(os.path.join(directory, "Testing", "Temporary", "CTestCostData.txt"), encoding="utf-8") as file:
            for line in file:
                words = line.split()
                if len(words) != 3:
                    break
                seconds[words[0]] = float(words[2])
    except OSError:
        pass
    return seconds


def chosen(found, seconds, budget):
    """Nearest first, as many as the budget in seconds has room for; and those for which there is none."""
    kept, left, spent = [], [], 0.0
    for name in sorted(found, key=lambda each: (found[each], seconds.get(each, UNKNOWN_SECONDS), each)):
        cost = seconds.get(name, UNKNOWN_SECONDS)
        if kept and spent + cost > budget:
            left.append(name)
        else:
            kept.append(name)
            spent += cost
    return kept, left


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("source")
    parser.add_argument("build")
    parser.add_argument("changed", nargs="+")
    parser.add_argument("--budget", type=float, default=math.inf, help="seconds that the tests may take one after another")
    arguments = parser.parse_args()
    source, directory = os.path.realpath(arguments.source), os.path.realpath(arguments.build)
    listing = subprocess.run(("ctest", "--test-dir", directory, "--show-only=json-v1"), check=True, capture_output=True, text=True)
    tests = json.loads(listing.stdout)["tests"]
    files = subprocess.run(("git", "-C", source, "ls-files", "-co", "--exclude-standard", "--", "tests"), check=True,
                           capture_output=True, text=True).stdout.splitlines()
    found = affected(tests, arguments.changed, Build(source, directory), Scripts(source, files))
    kept, left = chosen(found, known_seconds(directory), arguments.budget)
    print("\n".join(kept))
    unseen = len(tests) - len(found)
    print(f"Left out: {unseen} of {len(tests)} tests, which see nothing of what has changed.", file=sys.stderr)
    if left:
        print(f"Left out for time, farthest from the change: {' '.join(left)}.", file=sys.stderr)


if __name__ == "__main__":
    main()
