# SPDX-License-Identifier: MIT
"""What was installed and moved, used as its user would: test_installed.py PREFIX SOURCE_TREE BUILD [unittest arguments]."""
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE / "../drive"), str(HERE / "../settings/channels/server")]
from Drive import Drive  # noqa: E402
from loopback_client import EchoServer  # noqa: E402

PREFIX = Path()
TREE = Path()
BUILD = Path()


def elf_files():
    for path in sorted(PREFIX.rglob("*")):
        if path.is_file() and not path.is_symlink() and path.open("rb").read(4) == b"\x7fELF":
            yield path


class InstalledTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="quietrix-installed-")
        self.addCleanup(directory.cleanup)
        self.root = os.path.join(directory.name, "phone")

    def test_drive_opensTheBundleThatWasInstalled(self):
        # What was built stays where it is, and must not be what is found.
        with Drive(PROGRAM, None, root=self.root) as phone:
            self.assertEqual(phone.screen["class"], "QuietrixPreferencesController")
            link = Path(phone.root, "Library/PreferenceBundles/QuietrixPreferences.bundle")
            self.assertEqual(link.resolve(), PREFIX / "lib/quietrix/QuietrixPreferences.bundle")
            started = [event for event in phone.state["events"] if event["event"] == "process"]
            self.assertEqual([(event["name"], event["state"]) for event in started], [("SpringBoard", "started")])
            mapped = Path(f"/proc/{phone.process.pid}/maps").read_text(encoding="utf-8")
            self.assertIn(f"{PREFIX}/lib/quietrix/libvelmora.so.", mapped)
            self.assertNotIn(f" {BUILD}/platform", mapped)
            self.assertNotIn(f" {BUILD}/velmora", mapped)

    def test_serve_givesThePageThatWasInstalled(self):
        if not (BUILD / "share/page").is_dir():
            self.skipTest("built without the page")
        server = EchoServer(PROGRAM, "serve", "--root", self.root)
        self.addCleanup(server.clean)
        for name in ("index.html", "app.js", "app.css"):
            answer = server.get("/" + name)
            self.assertEqual((answer.status, answer.body), (200, (PREFIX / "share/quietrix/page" / name).read_bytes()))

    def test_code_isFoundFromItsOwnPlace(self):
        found = list(elf_files())
        self.assertGreaterEqual(len(found), 5)
        for path in found:
            listing = subprocess.run(["readelf", "-d", path], check=True, capture_output=True, text=True).stdout
            ways = re.findall(r"R(?:UN)?PATH\).*\[(.*)\]", listing)
            self.assertTrue(all(way.startswith("$ORIGIN") for way in ways), f"{path}: {ways}")

    def test_headers_areThoseOfTheTwoLibraries(self):
        for room in ("platform", "velmora"):
            here = {path.relative_to(TREE).as_posix() for path in (TREE / room).rglob("*.h")}
            there = {path.relative_to(PREFIX / "include/quietrix").as_posix()
                     for path in (PREFIX / "include/quietrix" / room).rglob("*") if path.is_file()}
            self.assertEqual(here, there)

    def test_cmakePackage_namesNoPlaceOfTheBuild(self):
        for path in (PREFIX / "lib/cmake/QuietrixPlatform").iterdir():
            text = path.read_text(encoding="utf-8")
            self.assertNotIn(str(BUILD), text, path)
            self.assertNotIn(str(TREE), text, path)


if __name__ == "__main__":
    PREFIX, TREE, BUILD = (Path(sys.argv.pop(1)).resolve() for _ in range(3))
    PROGRAM = str(PREFIX / "bin/quietrix-settings")
    unittest.main()
