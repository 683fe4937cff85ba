# SPDX-License-Identifier: MIT
"""What the end-to-end tests of the plug-in share: a phone with the real program and bundle, and its files.

A test file ends with `main()`, which takes PROGRAM BUNDLE [unittest arguments] from the command line.
"""
import os
import plistlib
import sys
import unittest

from Drive import Drive

SETTINGS = "/var/mobile/Library/Preferences/com.velmora.quietrix.plist"
PROFILES = "/var/mobile/Library/Preferences/com.velmora.quietrix.profiles.plist"
SWITCH = "com.velmora.quietrix.enabled"
APPLIED = "com.velmora.ProfileAppliedStateChangedNotification"
CHANGED = "com.velmora.ProfileChangedNotification"
DELETED = "com.velmora.ProfileDeletedNotification"
# Seconds that a test waits for another process: only what hangs takes longer, on a slow machine too.
PATIENCE = 120


def profile(title, enabled=True, **values):
    return {"identifier": f"ID-{title}", "title": title, "enabled": enabled, **values}


class QuietrixTest(unittest.TestCase):
    PROGRAM = ""
    BUNDLE = ""

    def version_notice(self):
        """What the footers begin with: the version that the bundle tells, and the product's name."""
        with open(os.path.join(self.BUNDLE, "Quietrix.plist"), "rb") as file:
            return f"Version {plistlib.load(file)['Version']}. Quietrix Go "

    def start(self, **options):
        """A phone as it is found at its root."""
        drive = Drive(self.PROGRAM, self.BUNDLE, **options)
        self.addCleanup(drive.close)
        drive.do("state")
        return drive

    def open(self, profiles=None, switch=None, **options):
        """A phone with these profiles and the switch so; the first screen is up."""
        drive = self.start(**options)
        if profiles is not None:
            self.write(drive, PROFILES, {"format": 1, "profiles": profiles})
            drive.do("post", name=APPLIED)
        if switch is not None:
            self.write(drive, SETTINGS, {SWITCH: switch, "other": ["kept"]})
            drive.do("open")
        drive.do("state")
        return drive

    @staticmethod
    def write(drive, path, value):
        """Writes a property list in one piece, as another process does."""
        temporary = drive.path(path) + ".new"
        with open(temporary, "wb") as file:
            plistlib.dump(value, file, fmt=plistlib.FMT_BINARY)
        os.rename(temporary, drive.path(path))

    @staticmethod
    def read(drive, path):
        with open(drive.path(path), "rb") as file:
            return plistlib.load(file)


def main():
    QuietrixTest.PROGRAM, QuietrixTest.BUNDLE = sys.argv[1:3]
    run = unittest.main(module="__main__", argv=sys.argv[:1] + sys.argv[3:], exit=False)
    sys.exit(0 if run.result.wasSuccessful() and run.result.testsRun else 1)
