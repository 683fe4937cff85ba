#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""`history` and `restore`: what each change was, and how it is taken back.

    test_history.py PROGRAM SETTINGS_PROGRAM BUNDLE [unittest arguments]
"""
import datetime
import os
import sys
import unittest

from CommandCase import DONE, FAILED, PATIENCE, PREFERENCES, PROFILES, WRONG_USE, CommandTest, main, profile
from Drive import Drive

FOLDER = PREFERENCES + "/.com.velmora.quietrix.profiles.plist.history"
ADDED, CHANGED = (f"com.velmora.Profile{what}Notification" for what in ("Added", "Changed"))
NOTHING = {"added": [], "changed": [], "removed": [], "unchanged": 0, "refused": []}


class HistoryTest(CommandTest):
    def history(self):
        return self.ask("history")

    def numbers(self):
        return [entry["number"] for entry in self.history()]

    def titles(self):
        return sorted(each["title"] for each in self.ask("list"))


class Looking(HistoryTest):
    def test_rootThatIsNotThere_hasNoHistoryAndStaysSo(self):
        self.assertEqual([], self.history())
        ended = self.run_("history")
        self.assertEqual((DONE, "", "quietrix: There have been no profiles yet.\n"),
                         (ended.status, ended.output, ended.errors))
        self.assertIn("There is no state of the number 1", self.refuse(FAILED, "restore", "1"))
        self.assertFalse(os.path.exists(self.root))

    def test_eachChange_isAnEntryTheNewestFirst(self):
        self.give(profile("Work"))
        before = datetime.datetime.now(datetime.timezone.utc)
        self.do("set", "Work", "vibrate=no", "title=Office")
        self.do("delete", "Office", "--yes")
        present, changed, found = self.history()
        self.assertEqual((3, True, True, None), tuple(present[key] for key in ("number", "present", "file", "problem")))
        self.assertEqual([{"identifier": "ID-Work", "title": "Office"}], present["removed"])
        self.assertEqual((2, False, True), (changed["number"], changed["present"], changed["file"]))
        one, = changed["changed"]
        self.assertEqual(("ID-Work", "Office"), (one["identifier"], one["title"]))
        self.assertEqual(["Work", "Office"], one["changes"]["title"])
        self.assertIn("vibrate", one["keys"])
        self.assertEqual([{"identifier": "ID-Work", "title": "Work"}], found["added"])
        times = [datetime.datetime.fromisoformat(each["time"].replace("Z", "+00:00")) for each in (found, changed, present)]
        self.assertEqual(sorted(times), times)
        self.assertLess(abs((times[1] - before).total_seconds()), 3600)

        lines = self.do("history").output.splitlines()
        self.assertEqual(["NUMBER", "TIME", "STATE"], lines[0].split())
        self.assertRegex(lines[1], r'^3 +\d{4}-\d\d-\d\d \d\d:\d\d:\d\d +present; removed "Office"$')
        self.assertRegex(lines[2], r'^2 .*changed "Office" \(.*title.*\)$')
        self.assertRegex(lines[3], r'^1 .*added "Work"$')

    def test_hostileTitles_moveNoCursor(self):
        self.give(profile("a\x1b[2J\nb\u202e"))
        self.assertEqual(2, len(self.do("history").output.splitlines()))
        self.assertNotIn("\x1b", self.do("history").output)

    def test_manyProfilesAtOnce_areCounted(self):
        self.give(*[profile(f"P{i}") for i in range(4)])
        self.assertIn("present; added 4 profiles\n", self.do("history").output)


class Restoring(HistoryTest):
    def test_deletion_isTakenBackAndThatToo(self):
        self.give(profile("Work"), profile("Home"))
        whole = self.read(PROFILES)
        self.do("delete", "Home", "--yes")
        self.assertEqual({**NOTHING, "added": [{"identifier": "ID-Home", "title": "Home"}], "unchanged": 1},
                         self.ask("restore", "1"))
        self.assertEqual(whole, self.read(PROFILES))
        text = self.do("restore", "2").output
        self.assertEqual('removed "Home" (ID-Home)\n0 added, 0 changed, 1 removed, 1 unchanged, 0 refused\n', text)
        self.assertEqual(["Work"], self.titles())
        self.assertEqual([4, 3, 2, 1], self.numbers())

    def test_import_isTakenBackMergedWithNothing(self):
        self.give(profile("Work", unknown=7))
        self.do("import", "-", "--format", "json", "--replace",
                data=b'[{"identifier": "ID-Work", "title": "Other"}, {"identifier": "N", "title": "New"}]')
        self.assertEqual(["New", "Other"], self.titles())
        report = self.ask("restore", "1")
        self.assertEqual((["ID-Work"], ["N"]), tuple([each["identifier"] for each in report[kind]]
                                                     for kind in ("changed", "removed")))
        self.assertEqual(["Other", "Work"], report["changed"][0]["changes"]["title"])
        self.assertEqual([profile("Work", unknown=7)], self.read(PROFILES)["profiles"])

    def test_reset_isTakenBack(self):
        self.give(profile("Work"))
        self.do("reset", "--yes")
        self.assertFalse(os.path.exists(self.path(PROFILES)))
        present, before = self.history()
        self.assertEqual((2, True, False), (present["number"], present["present"], present["file"]))
        self.assertIn('present; no profiles file; removed "Work"\n', self.do("history").output)
        self.do("restore", str(before["number"]))
        self.assertEqual(["Work"], self.titles())
        self.do("restore", "2")
        self.assertFalse(os.path.exists(self.path(PROFILES)))

    def test_presentState_isLeftAndSaid(self):
        self.give(profile("Work"))
        self.do("disable", "Work")
        stamp = os.stat(self.path(PROFILES)).st_mtime_ns
        ended = self.run_("restore", "2")
        self.assertEqual((DONE, "", "quietrix: The profiles are in the state 2 already; nothing was changed.\n"),
                         (ended.status, ended.output, ended.errors))
        self.assertEqual({**NOTHING, "unchanged": 1}, self.ask("restore", "2"))
        self.assertEqual(stamp, os.stat(self.path(PROFILES)).st_mtime_ns)

    def test_wrongNumbers_areRefused(self):
        self.give(profile("Work"))
        self.do("disable", "Work")
        before = self.read(PROFILES)
        for number in ("0", "-1", "x", "1x", "1.5", "", "99999999999999999999"):
            self.refuse(WRONG_USE, "restore", "--", number)
        self.refuse(WRONG_USE, "restore")
        self.assertIn("it has 2, from 1 to 2.", self.refuse(FAILED, "restore", "3"))
        ended = self.run_("--json", "restore", "3")
        self.assertEqual((FAILED, ""), (ended.status, ended.output))
        self.assertIn("There is no state of the number 3", ended.error)
        self.assertEqual(before, self.read(PROFILES))

    def test_damagedState_isRefusedAndNothingChanges(self):
        self.give(profile("Work"))
        self.do("disable", "Work")
        first = os.path.join(self.path(FOLDER), sorted(os.listdir(self.path(FOLDER)))[0])
        with open(first, "r+b") as file:
            file.truncate(20)
        before = self.read(PROFILES)
        self.assertIn("is lost: another program has written over it", self.refuse(FAILED, "restore", "1"))
        self.assertEqual(before, self.read(PROFILES))
        self.assertIn("written over it", self.history()[1]["problem"])
        self.assertIsNone(self.history()[1]["changed"])

    def test_brokenProfilesFile_isReplacedByAnEarlierState(self):
        self.give(profile("Work"))
        self.do("disable", "Work")
        with open(self.path(PROFILES) + ".new", "wb") as file:
            file.write(b"bplist00 broken")
        os.rename(self.path(PROFILES) + ".new", self.path(PROFILES))
        self.assertEqual(FAILED, self.run_("enable", "Work").status)
        self.assertIn("cannot be used", self.history()[0]["problem"])
        # The log tells of the broken file, which is kept.
        self.assertEqual(DONE, self.run_("restore", "2").status)
        self.assertEqual(["Work"], self.titles())
        self.assertEqual([4, 3, 2, 1], self.numbers())


class NotKept(HistoryTest):
    def changed_all_the_same(self):
        self.give(profile("Work"))
        ended = self.run_("disable", "Work")
        self.assertEqual(DONE, ended.status)
        self.assertIs(self.stored()["Work"]["enabled"], False)
        present, = self.history()
        self.assertEqual((None, True), (present["number"], present["present"]))
        self.assertEqual([None] * 4, [present[part] for part in ("added", "changed", "removed", "unchanged")], "nobody knows")
        self.assertIn(present["problem"], self.run_("history").output)
        self.assertIn(present["problem"], ended.errors)
        return present["problem"]

    def test_folderThatIsALink_isNotFollowed(self):
        theirs = os.path.join(self.directory, "theirs")
        os.makedirs(theirs)
        os.makedirs(self.path(PREFERENCES))
        os.symlink(theirs, self.path(FOLDER))
        self.assertIn("Not a directory", self.changed_all_the_same())
        self.assertEqual([], os.listdir(theirs))

    def test_fileInTheFoldersPlace_isLeft(self):
        os.makedirs(self.path(PREFERENCES))
        with open(self.path(FOLDER), "w", encoding="utf-8") as file:
            file.write("mine")
        self.assertIn("Not a directory", self.changed_all_the_same())
        self.assertEqual(4, os.path.getsize(self.path(FOLDER)))

    @unittest.skipIf(os.geteuid() != 0, "only the superuser can give a folder to another user")
    def test_folderOfAnother_isNotUsed(self):
        os.makedirs(self.path(FOLDER))
        os.chown(self.path(FOLDER), 65534, 65534)
        self.assertIn("belongs to another user (65534)", self.changed_all_the_same())
        self.assertEqual([], os.listdir(self.path(FOLDER)))


class OpenScreens(HistoryTest):
    SETTINGS_PROGRAM = ""
    BUNDLE = ""

    def test_screensAndCommands_keepAndShowEachOthersStates(self):
        drive = Drive(self.SETTINGS_PROGRAM, self.BUNDLE, root=self.root)
        self.addCleanup(drive.close)
        self.do("on")
        drive.do("state")
        self.do("add", "Work", "vibrate=no")
        drive.do("wait", event="darwinReceived", name=ADDED, seconds=PATIENCE)
        drive.tap(drive.row(name="Work"))
        drive.set(drive.row(name="Vibrate"), True)
        present, added = self.history()
        self.assertEqual([False, True], present["changed"][0]["changes"]["vibrate"])
        self.do("restore", str(added["number"]))
        drive.do("wait", event="darwinReceived", name=CHANGED, seconds=PATIENCE)
        self.assertIs(False, drive.row(name="Vibrate")["value"])
        # And a screen's own change goes on from there.
        drive.set(drive.row(name="Vibrate"), True)
        self.assertEqual([4, 3, 2, 1], self.numbers())

    def test_resetOfTheScreen_isTakenBackAndSeen(self):
        self.give(profile("Work"), profile("Home"), switch=True)
        drive = Drive(self.SETTINGS_PROGRAM, self.BUNDLE, root=self.root, device={"clock": "2026-11-20T12:00:00"})
        self.addCleanup(drive.close)
        drive.do("state")
        drive.tap(drive.row(name="Miscellaneous"))
        drive.tap(drive.row(identifier="resetProfiles"))
        drive.choose(drive.presented["actions"][0]["title"])
        drive.do("advance", seconds=2)
        gone, before = self.history()
        self.assertEqual((True, False), (gone["present"], gone["file"]))
        drive.back()
        self.assertNotIn("Work", drive.names())
        self.do("restore", str(before["number"]))
        drive.do("wait", event="darwinReceived", name=ADDED, seconds=PATIENCE)
        self.assertLessEqual({"Work", "Home"}, set(drive.names()))


if __name__ == "__main__":
    OpenScreens.SETTINGS_PROGRAM, OpenScreens.BUNDLE = sys.argv[2:4]
    del sys.argv[2:4]
    main()
