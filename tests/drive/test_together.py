# SPDX-License-Identifier: MIT
"""Several processes on one root, and what else happens to the profiles file meanwhile, through the drive channel:
test_together.py PROGRAM BUNDLE [arguments]."""
import json
import os
import signal
import sys
import threading

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from QuietrixCase import APPLIED, PROFILES, QuietrixTest, main, profile  # noqa: E402

NETWORKS = "/var/mobile/Library/Preferences/known-networks.plist"
NO_LOCK = "could not be locked within"


class Editor:
    """The editor of the one profile in a process of its own; its changes are checked as soon as they are told to be
    stored."""

    def __init__(self, test, drive):
        self.test = test
        self.drive = drive
        self.expected = {}
        self.begun = None
        self.rows = {row["identifier"]: row["index"] for row in drive.rows if row["identifier"]}

    def begin(self, key, value):
        """Sends a change without waiting for its answer."""
        self.drive.send(json.dumps({"do": "set", "row": self.rows[key], "value": value, "count": 0}).encode() + b"\n")
        self.begun = key, value

    def end(self):
        """Takes the answer; the change is stored then."""
        key, value = self.begun
        answer = self.drive.receive()
        self.test.assertTrue(answer["ok"], answer.get("error"))
        if self.drive.presented is None:
            self.expected[key] = value
            return
        # On a machine that is busy enough a lock may not be had in time; the user then tries once more.
        self.test.assertIn(NO_LOCK, self.drive.presented["message"])
        self.drive.choose("Close")
        self.change(key, value)

    def change(self, key, value):
        self.begin(key, value)
        self.end()
        self.check()

    def check(self):
        found = self.test.stored(self.drive)
        lost = {key: (value, found.get(key)) for key, value in self.expected.items() if found.get(key) != value}
        self.test.assertEqual(lost, {}, "told to be stored, and taken back by the other process")


class Together(QuietrixTest):
    def stored(self, drive):
        return self.read(drive, PROFILES)["profiles"][0]

    def editors(self, count=2, **values):
        """So many processes on one root, each with the editor of its one profile open."""
        first = self.open([profile("Work", playAlert=True, **values)], switch=True)
        drives = [first] + [self.start(root=first.root) for _ in range(count - 1)]
        for drive in drives:
            drive.tap(drive.row(name="Work"))
            self.assertEqual(drive.screen["class"], "QuietrixProflePreferencesController")
        return [Editor(self, drive) for drive in drives]


class Changes(Together):
    def test_differentKeysTurnByTurn_areBothStored(self):
        one, other = self.editors()
        for turn in range(60):
            # Neither knows of the other's change when it makes its own.
            one.begin(("vibrate", "title")[turn % 2], (turn % 4 == 0, f"Turn {turn}")[turn % 2])
            other.begin(("wakeUpScreen", "playBackVolume")[turn % 2], (turn % 4 == 0, turn / 64)[turn % 2])
            one.end()
            other.end()
            one.check()
            other.check()

    def test_differentKeysAtFullSpeed_loseNone(self):
        editors = self.editors()
        keys = (("vibrate", "ringerVolume", "title"), ("wakeUpScreen", "playBackVolume", "vibrateAlert"))
        failures = []

        def work(editor, own):
            try:
                for turn in range(400):
                    key = own[turn % len(own)]
                    made = {"title": f"Turn {turn}", "ringerVolume": turn / 512, "playBackVolume": turn / 512}
                    editor.change(key, made.get(key, turn % 2 == 0))
            except BaseException as error:  # pylint: disable=broad-except
                failures.append(error)

        workers = [threading.Thread(target=work, args=pair) for pair in zip(editors, keys)]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()
        if failures:
            raise failures[0]
        for editor in editors:
            editor.check()
            editor.drive.do("state")
        seen = [{row["identifier"]: row["value"] for row in editor.drive.rows if row["identifier"] in editor.rows}
                for editor in editors]
        self.assertEqual(seen[0]["title"], seen[1]["title"])

    def test_sameKey_theLaterChangeStands(self):
        one, other = self.editors()
        for turn in range(10):
            one.drive.set(one.rows["title"], f"one {turn}")
            self.assertEqual(self.stored(one.drive)["title"], f"one {turn}")
            other.drive.set(other.rows["title"], "Work")
            self.assertEqual(self.stored(one.drive)["title"], "Work", "back to what it was at first")

    def test_stoppedAndContinued_takesNothingBack(self):
        one, other = self.editors()
        for turn in range(15):
            pid = other.drive.process.pid
            os.kill(pid, signal.SIGSTOP)
            os.waitid(os.P_PID, pid, os.WSTOPPED)
            one.change("title", f"Turn {turn}")
            one.change("ringerVolume", turn / 16)
            # Its command is there before it can learn of anything.
            other.begin("vibrate", turn % 2 == 0)
            os.kill(pid, signal.SIGCONT)
            other.end()
            one.check()
            other.check()


class File(Together):
    def open_root(self, **values):
        drive = self.open([profile("Work", **values)], switch=True)
        self.assertIn("Work", drive.names())
        return drive

    def rename_elsewhere(self, drive, title):
        """As a program does that tells nobody."""
        value = self.read(drive, PROFILES)
        value["profiles"][0]["title"] = title
        self.write(drive, PROFILES, value)

    def test_renamedWhileNoListWasOpen_showsItsNewNameAndKeepsIt(self):
        drive = self.open_root()
        drive.back()
        self.rename_elsewhere(drive, "Night")
        drive.do("open")
        self.assertIn("Night", drive.names())
        self.assertEqual([event for event in drive.events_of("store") if event["call"] == "reload"], [])
        drive.tap(drive.row(name="Night"))
        self.rename_elsewhere(drive, "Later")
        drive.set(drive.row(identifier="vibrate"), False)
        self.assertEqual((self.stored(drive)["title"], self.stored(drive)["vibrate"]), ("Later", False))

    def test_networksChosenElsewhere_areMergedOneByOne(self):
        drive = self.open_root(wifiNetworks=["Home", "Elsewhere"])
        self.write(drive, NETWORKS, [{"SSID": name} for name in ("Home", "Office", "Train")])
        drive.tap(drive.row(name="Work"))
        drive.tap(drive.row(identifier="wifiNetworks"))
        value = self.read(drive, PROFILES)
        value["profiles"][0]["wifiNetworks"] = ["Attic", "Elsewhere", "Home"]
        self.write(drive, PROFILES, value)
        drive.set(drive.row(name="Home"), False)
        self.assertEqual(self.stored(drive)["wifiNetworks"], ["Attic", "Elsewhere"])
        drive.set(drive.row(name="Train"), True)
        self.assertEqual(self.stored(drive)["wifiNetworks"], ["Attic", "Elsewhere", "Train"])

    def test_badElementOfTheCalendars_outlivesSavingAnotherKey(self):
        chosen = ["Home/family", 5, "Work/meetings"]
        drive = self.open_root(calendarIdentifiers=chosen)
        drive.tap(drive.row(name="Work"))
        for value in (False, True):
            drive.set(drive.row(identifier="vibrate"), value)
            self.assertEqual((self.stored(drive)["vibrate"], self.stored(drive)["calendarIdentifiers"]), (value, chosen))
        self.assertEqual(drive.errors().count("calendarIdentifiers"), 1, drive.errors())

    def test_fileThatCannotBeLookedAt_isNotTakenForMissing(self):
        drive = self.open_root()
        place = drive.path(PROFILES)
        os.rename(place, place + ".away")
        os.symlink(os.path.basename(place), place)
        for _ in range(3):
            drive.do("post", name=APPLIED)
        drive.do("open")
        self.assertIn("Work", drive.names())
        drive.tap(drive.row(name="Work"))
        drive.set(drive.row(identifier="vibrate"), False)
        self.assertIn("Too many levels of symbolic links", drive.presented["message"])
        drive.choose("Close")
        self.assertTrue(os.path.islink(place))
        self.assertEqual(drive.errors().count("could not be looked at"), 1, drive.errors())

        os.rename(place + ".away", place)
        drive.set(drive.row(identifier="vibrate"), False)
        self.assertIsNone(drive.presented)
        self.assertEqual((self.stored(drive)["title"], self.stored(drive)["vibrate"]), ("Work", False))

    def test_largeFile_isReadAndNamedInTheLog(self):
        drive = self.open_root()
        value = {"format": 1, "profiles": [profile("Work", note="x" * (65 << 20))]}
        self.write(drive, PROFILES, value)
        drive.do("open")
        self.assertIn("Work", drive.names())
        self.assertEqual(drive.errors().count("more than 64 MiB"), 1, drive.errors())
        drive.tap(drive.row(name="Work"))
        drive.set(drive.row(identifier="vibrate"), False)
        self.assertIs(self.stored(drive)["vibrate"], False)


if __name__ == "__main__":
    main()
