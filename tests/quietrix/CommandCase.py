# SPDX-License-Identifier: MIT
"""What the tests of the command share: runs of the program on a root of the test's own.

A test file ends with `main()`, which takes PROGRAM [unittest arguments] from the command line.
"""
import json
import os
import plistlib
import shutil
import subprocess
import sys
import tempfile
import unittest

DONE, FAILED, WRONG_USE, NO_SUCH_PROFILE, NOT_CONFIRMED = range(5)
PREFERENCES = "var/mobile/Library/Preferences"
PROFILES = PREFERENCES + "/com.velmora.quietrix.profiles.plist"
SETTINGS = PREFERENCES + "/com.velmora.quietrix.plist"
SWITCH = "com.velmora.quietrix.enabled"
# Seconds that a test waits for another process: only what hangs takes longer, on a slow machine too.
PATIENCE = 120


def profile(title, **values):
    return {"identifier": f"ID-{title}", "title": title, **values}


class Ended:
    """How a run of the program ended."""

    def __init__(self, process):
        self.status = process.returncode
        self.output = process.stdout.decode()
        self.errors = process.stderr.decode()

    @property
    def json(self):
        return json.loads(self.output)

    @property
    def error(self):
        return json.loads(self.errors)["error"]


class CommandTest(unittest.TestCase):
    PROGRAM = ""

    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="quietrix-command-")
        self.addCleanup(shutil.rmtree, self.directory, ignore_errors=True)
        self.root = os.path.join(self.directory, "phone")

    def path(self, name):
        return os.path.join(self.root, name)

    def arguments(self, *words):
        return [self.PROGRAM, "--root", self.root, *words]

    def start(self, *words, **options):
        return subprocess.Popen(self.arguments(*words), **options)

    def run_(self, *words, data=b"", environment=None):
        """Runs the command to its end, on no terminal."""
        # No sound themes but a test's own.
        environment = {**os.environ, "XDG_DATA_HOME": os.path.join(self.directory, "data"),
                       "XDG_DATA_DIRS": os.path.join(self.directory, "share"), **(environment or {})}
        return Ended(subprocess.run(self.arguments(*words), input=data, capture_output=True, env=environment,
                                    timeout=PATIENCE))

    def do(self, *words, **options):
        """The same for a command that must succeed and say nothing on standard error."""
        ended = self.run_(*words, **options)
        self.assertEqual((DONE, ""), (ended.status, ended.errors), words)
        return ended

    def ask(self, *words, **options):
        """The document that a command prints."""
        return self.do("--json", *words, **options).json

    def refuse(self, status, *words, **options):
        """The one line of a command that must do nothing but say why."""
        ended = self.run_(*words, **options)
        self.assertEqual((status, ""), (ended.status, ended.output), (words, ended.errors))
        self.assertTrue(ended.errors.startswith("quietrix: "), ended.errors)
        self.assertEqual(1, ended.errors.count("\n"), ended.errors)
        return ended.errors

    def write(self, path, value):
        """A property list in one piece, as another process writes it."""
        os.makedirs(os.path.dirname(self.path(path)), exist_ok=True)
        with open(self.path(path) + ".new", "wb") as file:
            plistlib.dump(value, file, fmt=plistlib.FMT_BINARY)
        os.rename(self.path(path) + ".new", self.path(path))

    def give(self, *profiles, switch=None):
        """A root with these profiles, and the product's switch so; without a settings file for None."""
        self.write(PROFILES, {"format": 1, "profiles": list(profiles)})
        if switch is not None:
            self.write(SETTINGS, {SWITCH: switch, "other": ["kept"]})

    def read(self, path):
        with open(self.path(path), "rb") as file:
            return plistlib.load(file)

    def stored(self):
        """The profiles in the file, by their titles."""
        return {each["title"]: each for each in self.read(PROFILES)["profiles"]}


def main():
    CommandTest.PROGRAM = sys.argv[1]
    run = unittest.main(module="__main__", argv=sys.argv[:1] + sys.argv[2:], exit=False)
    sys.exit(0 if run.result.wasSuccessful() and run.result.testsRun else 1)
