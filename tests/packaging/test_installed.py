# SPDX-License-Identifier: MIT
"""What was installed and moved, used as its user would: test_installed.py PREFIX SOURCE_TREE BUILD [unittest arguments]."""
import os
import re
import shutil
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
        if path.is_file() and not path.is_symlink() and path.read_bytes()[:4] == b"\x7fELF":
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

    def test_bundles_holdJustWhatTheSourcesHave(self):
        def listed(directory, *patterns):
            return {path.relative_to(directory).as_posix() for pattern in patterns for path in directory.glob(pattern) if path.is_file()}

        self.assertEqual(listed(PREFIX / "lib/quietrix/QuietrixPreferences.bundle", "**/*"),
                         listed(TREE / "resources", "*.plist", "*.png", "*.lproj/*.strings") | {"QuietrixPreferences"})
        self.assertEqual(listed(PREFIX / "share/quietrix/Settings", "**/*"),
                         listed(TREE / "settings/resources", "**/*.plist", "**/*.strings", "root/**/*"))
        if (BUILD / "share/page").is_dir():
            self.assertEqual(listed(PREFIX / "share/quietrix/page", "**/*"), listed(BUILD / "share/page", "**/*"))
        for gone in ("lib/quietrix/QuietrixPreferences.bundle/xx.lproj", "share/quietrix/page/old"):
            self.assertFalse((PREFIX / gone).exists(), "a folder that an older installation had")
        if (BUILD / "web").is_dir():
            self.assertEqual(*(listed(directory, "src/**/*", "styles/**/*") for directory in (BUILD / "web", TREE / "settings/web")))

    def test_resourceThatIsTakenAway_leavesTheBundleThatOthersBuild(self):
        directory = Path(self.root).parent
        shutil.copytree(TREE / "examples/ringer", directory / "ringer")
        extra = [directory / "ringer" / name for name in ("Extra.png", "fr.lproj/Localizable.strings")]
        extra[1].parent.mkdir()
        for path, like in zip(extra, ("Bell.png", "en.lproj/Localizable.strings")):
            shutil.copy(directory / "ringer" / like, path)
        [cmake] = re.findall(r"^CMAKE_COMMAND:INTERNAL=(.*)$", (BUILD / "CMakeCache.txt").read_text(encoding="utf-8"), re.MULTILINE)
        [generator] = re.findall(r"^CMAKE_GENERATOR:INTERNAL=(.*)$", (BUILD / "CMakeCache.txt").read_text(encoding="utf-8"), re.MULTILINE)
        bundle = directory / "build/Ringer.bundle"

        def build():
            subprocess.run([cmake, "--build", directory / "build", "--target", "QuietrixRinger-resources"], check=True, capture_output=True)
            return {path.relative_to(bundle).as_posix() for path in bundle.rglob("*")}

        subprocess.run([cmake, "-G", generator, "-S", directory / "ringer", "-B", directory / "build", f"-DCMAKE_PREFIX_PATH={PREFIX}"],
                       check=True, capture_output=True)
        before = build()
        self.assertLessEqual({"Extra.png", "fr.lproj/Localizable.strings"}, before)
        (bundle / "Other").write_text("somebody else's", encoding="utf-8")
        for path in extra:
            path.unlink()
        self.assertEqual(build(), before - {"Extra.png", "fr.lproj/Localizable.strings", "fr.lproj"} | {"Other"})
        shutil.copy(directory / "ringer/Bell.png", extra[0])
        self.assertIn("Extra.png", build())

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
