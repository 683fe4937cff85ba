# SPDX-License-Identifier: MIT
"""The example bundle as its user sees it: test_ringer.py PROGRAM BUNDLE [unittest arguments]."""
import os
import plistlib
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "drive"))
from Drive import Drive  # noqa: E402

SETTINGS = "/var/mobile/Library/Preferences/com.example.ringer.plist"
CHANGED = "com.example.RingerChangedNotification"
PATIENCE = 120


class RingerTest(unittest.TestCase):
    PROGRAM = ""
    BUNDLE = ""

    def open(self, **options):
        drive = Drive(self.PROGRAM, self.BUNDLE, **options)
        self.addCleanup(drive.close)
        drive.do("state")
        return drive

    @staticmethod
    def stored(drive):
        with open(drive.path(SETTINGS), "rb") as file:
            return plistlib.load(file)

    def assertNothingLogged(self, drive):
        self.assertEqual(drive.errors(), "")

    def bells(self, drive):
        return [row["value"] for row in drive.rows if row["get"] == "bellName:"]

    def open_bells(self, drive):
        drive.tap(drive.row(identifier="bells"))
        self.assertEqual(drive.screen["class"], "RingerBellsController")


class FirstScreen(RingerTest):
    def test_newPhone_hasEveryRowWithItsDefault(self):
        drive = self.open()
        self.assertEqual(drive.screen["title"], "Ringer")
        self.assertEqual([(row["name"], row["value"]) for row in drive.rows if row["row"] is not None],
                         [("Ring bells", True), ("Volume", 0.5), ("Greeting", ""), ("Bells", None), ("Times", None),
                          ("Silent during", None), ("Reset", None)])
        self.assertEqual(drive.row(identifier="bells")["detailText"], "0")
        self.assertEqual(drive.row(identifier="greeting")["properties"]["placeholder"], "Good day")
        self.assertFalse(os.path.exists(drive.path(SETTINGS)))
        self.assertNothingLogged(drive)

    def test_pseudoLanguage_leavesOnlyWhatIsNotLocalisedPlain(self):
        bundle = os.path.join(tempfile.mkdtemp(prefix="quietrix-ringer-"), "QuietrixRinger.bundle")
        self.addCleanup(shutil.rmtree, os.path.dirname(bundle))
        shutil.copytree(self.BUNDLE, bundle)
        table = os.path.join(bundle, "en.lproj", "Localizable.strings")
        with open(table, encoding="utf-8") as file:
            texts = file.read()
        with open(table, "w", encoding="utf-8") as file:
            file.write("".join(line for line in texts.splitlines(True) if not line.startswith('"Times"')))
        drive = Drive(self.PROGRAM, bundle, device={"languages": "en-XA"})
        self.addCleanup(drive.close)
        drive.do("state")
        names = [row["name"] for row in drive.rows if row["row"] is not None]
        self.assertEqual([name for name in names if not (name.startswith("[") and name.endswith("]"))], ["Times"])
        self.assertEqual(names[0], "[Ŕîîñĝ ƀééļļš~~]")

    def test_controls_storeWhatTheyWereMovedTo(self):
        drive = self.open()
        for identifier, value in (("enabled", False), ("volume", 0.25), ("greeting", "Hello, you")):
            drive.set(drive.row(identifier=identifier), value)
            self.assertEqual(drive.row(identifier=identifier)["value"], value)
            self.assertEqual(self.stored(drive)[identifier], value)

    def test_keysOfOthers_stay(self):
        drive = self.open()
        with open(drive.path(SETTINGS), "wb") as file:
            plistlib.dump({"later": [1], "volume": "loud"}, file)
        drive.do("state")
        self.assertEqual(drive.row(identifier="volume")["value"], 0.5)
        drive.set(drive.row(identifier="enabled"), False)
        self.assertEqual(self.stored(drive), {"later": [1], "volume": "loud", "enabled": False})

    def test_damagedFile_isToldAndLeftAlone(self):
        drive = self.open()
        with open(drive.path(SETTINGS), "wb") as file:
            file.write(b"garbage")
        drive.set(drive.row(identifier="enabled"), False)
        self.assertEqual(drive.presented["title"], "Not saved")
        self.assertIn(SETTINGS, drive.presented["message"])
        drive.choose("Close")
        self.assertEqual(drive.row(identifier="enabled")["value"], True)
        with open(drive.path(SETTINGS), "rb") as file:
            self.assertEqual(file.read(), b"garbage")

    def test_reset_asksFirst(self):
        drive = self.open()
        drive.set(drive.row(identifier="volume"), 1.0)
        drive.tap(drive.row(identifier="reset"))
        self.assertEqual(drive.presented["message"], "All bells and settings are forgotten.")
        drive.choose("Cancel")
        self.assertEqual(drive.row(identifier="volume")["value"], 1.0)
        drive.tap(drive.row(identifier="reset"))
        drive.choose("Reset")
        self.assertEqual(drive.row(identifier="volume")["value"], 0.5)
        self.assertEqual(self.stored(drive), {})

    def test_icon_comesAtThePhonesScale(self):
        for scale in ("1", "2", "3"):
            drive = self.open(device={"scale": scale})
            self.assertEqual(drive.row(identifier="bells")["properties"]["iconImage"], "Bell")
        self.assertEqual(sorted(name for name in os.listdir(self.BUNDLE) if name.endswith(".png")),
                         ["Bell.png", "Bell@2x.png", "Bell@3x.png"])

    def test_linkedScreen_tellsTheVersion(self):
        drive = self.open()
        self.assertEqual(drive.screen["links"], [{"title": "About Ringer", "class": "RingerAboutController"}])
        drive.do("link", item=0)
        self.assertEqual(drive.names(), ["Version 1.0"])

    def test_storedFile_isShownToTheWorkbench(self):
        drive = self.open()
        drive.set(drive.row(identifier="volume"), 0.75)
        drive.do("files")
        self.assertEqual(drive.answer["files"]["settings"], {"volume": 0.75})


class Bells(RingerTest):
    def test_bells_areAddedRenamedAndDeleted(self):
        drive = self.open()
        self.open_bells(drive)
        for name in ("Tea", "Lunch", "Home"):
            drive.tap(drive.row(identifier="add"))
            drive.set(drive.row(value="New bell"), name)
        self.assertEqual(self.bells(drive), ["Tea", "Lunch", "Home"])
        drive.delete(drive.row(value="Lunch"))
        self.assertEqual(self.bells(drive), ["Tea", "Home"])
        self.assertEqual(self.stored(drive)["bells"],
                         [{"identifier": "1", "name": "Tea"}, {"identifier": "3", "name": "Home"}])
        drive.back()
        self.assertEqual(drive.row(identifier="bells")["detailText"], "2")

    def test_whatIsNoBell_hasNoRowAndStays(self):
        drive = self.open()
        with open(drive.path(SETTINGS), "wb") as file:
            plistlib.dump({"bells": [9, {"identifier": "1", "name": "Tea"}, "bell"]}, file)
        self.open_bells(drive)
        self.assertEqual(self.bells(drive), ["Tea"])
        drive.set(drive.row(value="Tea"), "Coffee")
        drive.tap(drive.row(identifier="add"))
        drive.delete(drive.row(value="New bell"))
        self.assertEqual(self.stored(drive)["bells"], [9, {"identifier": "1", "name": "Coffee"}, "bell"])

    def test_editButton_switchesToDoneAndBack(self):
        drive = self.open()
        self.open_bells(drive)
        drive.tap(drive.row(identifier="add"))
        before = drive.screen["bar"]["right"]
        drive.bar("right")
        self.assertNotEqual(drive.screen["bar"]["right"], before)
        drive.bar("right")
        self.assertEqual(drive.screen["bar"]["right"], before)

    def test_rowThatAdds_cannotBeDeleted(self):
        drive = self.open()
        self.open_bells(drive)
        self.assertFalse(drive.attempt("delete", row=drive.row(identifier="add")["index"])["ok"])

    def test_deletionThatCannotBeStored_putsTheRowBack(self):
        drive = self.open()
        self.open_bells(drive)
        drive.tap(drive.row(identifier="add"))
        drive.do("fault", kind="diskFull")
        drive.delete(drive.row(value="New bell"))
        self.assertEqual(drive.presented["title"], "Not saved")
        self.assertEqual(self.bells(drive), ["New bell"])


class Times(RingerTest):
    def test_pane_storesTheTimeOfTheRowThatWasTapped(self):
        drive = self.open()
        drive.tap(drive.row(identifier="times"))
        self.assertEqual(drive.screen["pane"]["rows"], ["First bell at 9:00 AM", "Last bell at 5:00 PM"])
        drive.do("pickTime", time="8:15 AM")
        drive.do("pickTimeRow", row=1)
        self.assertEqual(drive.screen["pane"]["time"], "5:00 PM")
        drive.do("pickTime", time="6:30 PM")
        self.assertEqual(drive.screen["pane"]["rows"], ["First bell at 8:15 AM", "Last bell at 6:30 PM"])
        self.assertEqual(drive.screen["pane"]["selected"], 1)
        self.assertEqual(self.stored(drive), {"firstBell": "8:15 AM", "lastBell": "6:30 PM"})


class Calendars(RingerTest):
    def test_calendars_areSwitchedOnAndOff(self):
        drive = self.open()
        drive.tap(drive.row(identifier="silentCalendars"))
        rows = [row for row in drive.rows if row["row"] is not None]
        self.assertGreaterEqual(len(rows), 2)
        self.assertIsNone(drive.screen["missing"])
        for row in rows:
            drive.set(row, True)
        self.assertEqual(self.stored(drive)["silentCalendars"], [row["identifier"] for row in rows])
        drive.set(rows[0], False)
        self.assertEqual(self.stored(drive)["silentCalendars"], [row["identifier"] for row in rows[1:]])

    def test_phoneWithoutCalendars_tellsWhatIsMissing(self):
        with tempfile.TemporaryDirectory() as empty:
            drive = self.open(device={"calendars": empty})
            drive.tap(drive.row(identifier="silentCalendars"))
            self.assertEqual(drive.screen["missing"], "calendars")


class German(RingerTest):
    def test_everyScreen_isInGerman(self):
        drive = self.open(device={"languages": "de-AT,en"})
        self.assertEqual([row["name"] for row in drive.rows],
                         ["Geläut", "Läuten", "Lautstärke", "Gruß", "Wann und was", "Glocken", "Zeiten",
                          "Still während", None, "Zurücksetzen"])
        self.assertEqual(drive.screen["links"][0]["title"], "Über Ringer")
        self.open_bells(drive)
        drive.tap(drive.row(name="Glocke hinzufügen"))
        self.assertEqual(self.bells(drive), ["Neue Glocke"])
        drive.back()
        drive.tap(drive.row(name="Zeiten"))
        self.assertEqual(drive.screen["pane"]["rows"][0], "Erste Glocke um 9:00 AM")
        drive.back()
        drive.tap(drive.row(name="Still während"))
        self.assertEqual(drive.rows[0]["name"], "Kalender")


class TwoProcesses(RingerTest):
    def setUp(self):
        directory = tempfile.mkdtemp(prefix="quietrix-ringer-")
        self.addCleanup(shutil.rmtree, directory, ignore_errors=True)
        self.root = os.path.join(directory, "phone")

    def test_secondProcess_findsWhatTheFirstStored(self):
        first = self.open(root=self.root)
        first.set(first.row(identifier="greeting"), "Kept")
        first.close()
        self.assertEqual(self.open(root=self.root).row(identifier="greeting")["value"], "Kept")

    def test_changesOfTheOther_showByThemselves(self):
        first, second = self.open(root=self.root), self.open(root=self.root)
        self.open_bells(first)
        self.open_bells(second)
        second.tap(second.row(identifier="add"))
        first.do("wait", event="darwinReceived", name=CHANGED, seconds=PATIENCE)
        self.assertEqual(self.bells(first), ["New bell"])
        second.back()
        first.delete(first.row(value="New bell"))
        while second.row(identifier="bells")["detailText"] != "0":
            second.do("wait", event="local", name=CHANGED, seconds=PATIENCE)
        self.assertEqual(self.stored(second)["bells"], [])

    def test_bothAdd_noneIsLost(self):
        first, second = self.open(root=self.root), self.open(root=self.root)
        self.open_bells(first)
        self.open_bells(second)
        first.tap(first.row(identifier="add"))
        # The list may have grown since it was looked at.
        second.do("tap", key=second.row(identifier="add")["key"])
        self.assertEqual([bell["identifier"] for bell in self.stored(first)["bells"]], ["1", "2"])


if __name__ == "__main__":
    RingerTest.PROGRAM, RingerTest.BUNDLE = sys.argv[1:3]
    run = unittest.main(argv=sys.argv[:1] + sys.argv[3:], exit=False)
    sys.exit(0 if run.result.wasSuccessful() and run.result.testsRun else 1)
