# SPDX-License-Identifier: MIT
"""Runs each command that the README shows, as it stands there, and looks whether CHANGELOG.md tells of this version.

    test_readme.py SOURCE_DIRECTORY BUILD_DIRECTORY

`./run` uses the build directory instead of making one. What a command is shown to answer must come, piece by piece
between its "…". `./test` alone is not run, being what runs this.
"""
import os
import plistlib
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import urllib.request

source = None
build = None


def readme():
    with open(os.path.join(source, "README.md"), encoding="utf-8") as file:
        return file.read()


def commands(text):
    """(command, shown answer) for each command in a block of code: what follows "$ ", or begins with "./"."""
    found = []
    for block in re.findall(r"^```\n(.*?)^```", text, re.MULTILINE | re.DOTALL):
        for line in block.splitlines():
            command = line.removeprefix("$ ").split("  #")[0].strip()
            if line.startswith(("$ ", "./")):
                found.append([command, ""])
            elif found:
                found[-1][1] += line + "\n"
    # In a sentence, with its options at most.
    found += [[command, ""] for command in re.findall(r"`(\./[^`]+ --[a-z-]+)`", text)]
    return found


def pieces(shown):
    return [piece for piece in re.split("…|\n", shown) if piece]


class ReadmeTest(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="quietrix-readme-")
        self.addCleanup(shutil.rmtree, self.directory)

    def environment(self):
        return {**os.environ, "QUIETRIX_BUILD": build, "TMPDIR": self.directory, "HOME": self.directory,
                "XDG_DATA_HOME": os.path.join(self.directory, "data")}

    def serve(self, command):
        """Starts what serves the page, asks for the page at the address it prints, and ends it."""
        process = subprocess.Popen(["bash", "-c", "exec " + command], cwd=source, env=self.environment(),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        try:
            readable, _, _ = select.select([process.stdout], [], [], 120)
            self.assertTrue(readable, "no address was printed")
            line = process.stdout.readline().decode()
            address = re.search(r"http://127\.0\.0\.1:\d+/\S*", line)
            self.assertTrue(address, line + (process.stderr.read().decode() if not line else ""))
            with urllib.request.urlopen(address[0].split("#")[0], timeout=60) as answer:
                self.assertEqual(answer.status, 200)
        finally:
            process.send_signal(signal.SIGTERM)
            _, errors = process.communicate(timeout=120)
        self.assertEqual(process.returncode, 0, errors.decode())

    def test_readme_showsBothCommandsAndAnExampleOfDrive(self):
        shown = [command for command, _ in commands(readme())]
        self.assertIn("./run", shown)
        self.assertIn("./test", shown)
        self.assertTrue([command for command, answer in commands(readme()) if " drive " in command and answer])

    def test_changelog_beginsWithTheProductsVersion(self):
        with open(os.path.join(source, "resources", "Quietrix.plist"), "rb") as file:
            version = plistlib.load(file)["Version"]
        with open(os.path.join(source, "CHANGELOG.md"), encoding="utf-8") as file:
            newest = re.search(r"^## (\S+)", file.read(), re.MULTILINE)
        self.assertEqual(newest[1], version)

    def test_eachCommand_doesWhatTheReadmeShows(self):
        for command, shown in commands(readme()):
            with self.subTest(command=command):
                if command.startswith("./test"):
                    self.assertTrue(os.access(os.path.join(source, "test"), os.X_OK))
                elif command in ("./run", "./run --watch"):
                    self.serve(command)
                else:
                    self.check(command, shown)

    def check(self, command, shown):
        done = subprocess.run(["bash", "-c", command], cwd=source, env=self.environment(), stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=120)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertNotIn('"ok":false', done.stdout)
        position = 0
        for piece in pieces(shown):
            found = done.stdout.find(piece, position)
            self.assertNotEqual(found, -1, f"{piece!r} does not follow in {done.stdout[position:position + 2000]!r}")
            position = found + len(piece)


if __name__ == "__main__":
    build = os.path.abspath(sys.argv.pop(2))
    source = os.path.abspath(sys.argv.pop(1))
    unittest.main()
