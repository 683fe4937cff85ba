# SPDX-License-Identifier: MIT
"""Goes the steps of docs/write-your-own-bundle.md in an empty folder: test_steps.py PREFIX SOURCE_TREE.

PREFIX is where the programs, the headers and the CMake package are installed.

A step's files are those that it links to below examples/. Its commands ("sh") are run by bash as they stand there, and what
they print must hold the pieces of the block behind them ("text"), in their order.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

STEP = re.compile(r"^## (\d)\. (.+)$", re.MULTILINE)
FILE = re.compile(r"\]\(\.\./examples/ringer/([^)]+)\)")
BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
PATIENCE = 500
# Of no use in a bundle.
NOT_IN_STEPS = {"draw-images"}


def steps(page):
    parts = STEP.split(page)[1:]
    return [(number, title, body) for number, title, body in zip(parts[::3], parts[1::3], parts[2::3])]


class Steps(unittest.TestCase):
    PREFIX = Path()
    TREE = Path()

    def setUp(self):
        directory = tempfile.mkdtemp(prefix="quietrix-steps-")
        self.addCleanup(shutil.rmtree, directory, ignore_errors=True)
        self.folder = Path(directory) / "ringer"
        self.folder.mkdir()

    def bring(self, name):
        target = self.folder / name
        target.parent.mkdir(exist_ok=True)
        shutil.copyfile(self.TREE / "examples/ringer" / name, target)

    def run_commands(self, commands):
        done = subprocess.run(["bash", "-euo", "pipefail", "-c", commands], cwd=self.folder, capture_output=True,
                              text=True, timeout=PATIENCE, check=False,
                              env={**os.environ, "QUIETRIX": str(self.PREFIX)})
        self.assertEqual(done.returncode, 0, f"{commands}\n{done.stderr}")
        return done.stdout

    def assertShows(self, output, expected):
        place = 0
        for piece in map(str.strip, expected.split("…")):
            found = output.find(piece, place)
            self.assertGreaterEqual(found, 0, f"{piece!r} is not there (any more) in {output}")
            place = found + len(piece)

    def test_steps_endInTheExampleAsItIs(self):
        page = (self.TREE / "docs/write-your-own-bundle.md").read_text(encoding="utf-8")
        all_steps = steps(page)
        self.assertEqual([number for number, _, _ in all_steps], list("1234567"))
        shown = 0
        for number, title, body in all_steps:
            with self.subTest(f"{number}. {title}"):
                for name in FILE.findall(body):
                    self.bring(name)
                output = ""
                for kind, text in BLOCK.findall(body):
                    if kind == "sh":
                        output = self.run_commands(text)
                    else:
                        self.assertEqual(kind, "text")
                        self.assertShows(output, text)
                        shown += 1
        self.assertGreaterEqual(shown, 6)
        whole = {path.relative_to(self.TREE / "examples/ringer").as_posix()
                 for path in (self.TREE / "examples/ringer").rglob("*") if path.is_file()}
        brought = {path.relative_to(self.folder).as_posix() for path in self.folder.rglob("*") if path.is_file()}
        self.assertEqual(whole - brought, NOT_IN_STEPS)


if __name__ == "__main__":
    Steps.PREFIX, Steps.TREE = Path(sys.argv[1]), Path(sys.argv[2])
    run = unittest.main(argv=sys.argv[:1] + sys.argv[3:], exit=False)
    sys.exit(0 if run.result.wasSuccessful() and run.result.testsRun else 1)
