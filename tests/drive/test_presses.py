# SPDX-License-Identifier: MIT
"""Presses that name what they mean, with another process on the phone: test_presses.py PROGRAM BUNDLE [arguments]."""
import os
import sys
import threading

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from QuietrixCase import APPLIED, PATIENCE, PROFILES, SWITCH, QuietrixTest, main, profile  # noqa: E402

PROFILE_FIELDS = ("name", "kind", "identifier", "userInfo")


class PressesTest(QuietrixTest):
    def elsewhere(self, drive, profiles):
        """Puts other profiles into the file, and tells this process of it as the engine does."""
        self.write(drive, PROFILES, {"format": 1, "profiles": profiles})
        drive.do("post", name=APPLIED)

    def stale(self, drive, command, **fields):
        """Sends a command that must be refused as stale and change nothing."""
        before = drive.do("state")
        stored = self.read(drive, PROFILES)
        answer = drive.attempt(command, **fields)
        self.assertEqual((answer["ok"], answer.get("stale")), (False, True), answer)
        self.assertTrue(answer["error"])
        for part in ("screen", "presented", "revision"):
            self.assertEqual(answer["state"][part], before[part])
        self.assertEqual(drive.events, [])
        self.assertEqual(self.read(drive, PROFILES), stored)

    @staticmethod
    def keys(drive):
        return {row["key"]: row for row in drive.rows}

    @staticmethod
    def titles(drive):
        return [row["name"] for row in drive.rows if row["userInfo"]]

    def stored(self, drive):
        return [entry["identifier"] for entry in self.read(drive, PROFILES)["profiles"]]


class Keys(PressesTest):
    """Which rows keep their keys when a screen builds its rows anew."""

    def setUp(self):
        self.profiles = [profile("A"), profile("B"), profile("C", enabled=False), profile("D", enabled=False)]
        self.drive = self.open(self.profiles, switch=True)
        self.first = self.keys(self.drive)
        self.assertEqual(len(self.first), 10)

    def key(self, name):
        return self.drive.row(name=name)["key"]

    def test_everyRow_hasItsOwn(self):
        self.assertEqual(len(self.first), self.drive.screen["count"])

    def test_switchMovedToWhereItStands_keepsAll(self):
        self.drive.set(self.drive.row(identifier=SWITCH), True)
        self.assertIn("reload", [event["event"] for event in self.drive.events])
        self.assertEqual(list(self.keys(self.drive)), list(self.first))

    def test_rebuiltFromTheSameFile_keepsAll(self):
        self.elsewhere(self.drive, self.profiles)
        self.assertEqual(list(self.keys(self.drive)), list(self.first))

    def test_switchOffAndOn_keepsWhatStaysAndNamesTheOthersAnew(self):
        staying = {self.key(name) for name in (None, "Enabled", "About", "Miscellaneous")}
        self.drive.set(self.drive.row(identifier=SWITCH), False)
        self.assertEqual(set(self.keys(self.drive)), staying)
        self.drive.set(self.drive.row(identifier=SWITCH), True)
        self.assertEqual(set(self.keys(self.drive)) & set(self.first), staying)
        self.assertEqual(len(self.keys(self.drive)), 10)

    def test_addedDeletedAndRenamedElsewhere_areFollowed(self):
        a, b, c, d = (self.key(name) for name in "ABCD")
        renamed = {**self.profiles[1], "title": "A"}
        self.elsewhere(self.drive, [profile("New"), renamed, self.profiles[2]])
        now = self.keys(self.drive)
        self.assertEqual((now[b]["name"], now[c]["name"]), ("A", "C"))
        self.assertNotIn(a, now)
        self.assertNotIn(d, now)
        self.assertNotIn(self.key("New"), self.first)
        self.assertEqual(len(set(now) & set(self.first)), 8)
        self.elsewhere(self.drive, self.profiles)
        self.assertNotIn(self.key("A"), (a, b, c, d))

    def test_sameTitleOfAnotherProfile_isAnotherRow(self):
        key = self.key("A")
        self.elsewhere(self.drive, [{**self.profiles[0], "identifier": "ID-other"}, *self.profiles[1:]])
        self.assertEqual(self.titles(self.drive), ["A", "B", "C", "D"])
        self.stale(self.drive, "delete", key=key)
        self.stale(self.drive, "tap", key=key, row=self.drive.row(name="A")["index"])

    def test_movedBetweenSectionsAndReordered_keepsAll(self):
        a, b, c, d = self.profiles
        self.elsewhere(self.drive, [{**d, "enabled": True}, b, {**a, "enabled": False}, c])
        self.assertEqual(self.titles(self.drive), ["D", "B", "A", "C"])
        now = self.keys(self.drive)
        self.assertEqual(set(now), set(self.first))
        for key, row in now.items():
            self.assertEqual([row[field] for field in PROFILE_FIELDS],
                             [self.first[key][field] for field in PROFILE_FIELDS])

    def test_noProfilesTwice_areTwoRowsThatKeepTheirs(self):
        def empty():
            return [(row["section"], row["key"]) for row in self.drive.rows if row["name"] == "No Profiles"]

        self.elsewhere(self.drive, [])
        first = empty()
        self.assertEqual(len({key for _, key in first}), 2)
        self.elsewhere(self.drive, [])
        self.assertEqual(empty(), first)
        self.elsewhere(self.drive, [profile("A")])
        self.assertEqual(empty(), first[1:])
        self.elsewhere(self.drive, [profile("A"), profile("C", enabled=False)])
        self.elsewhere(self.drive, [profile("C", enabled=False)])
        self.assertNotIn(empty()[0], first)

    def test_anotherScreen_hasOtherKeys(self):
        self.drive.tap(self.drive.row(identifier="Miscellaneous"))
        self.assertFalse(set(self.keys(self.drive)) & set(self.first))
        self.drive.back()
        self.assertEqual(list(self.keys(self.drive)), list(self.first))
        self.drive.do("open")
        self.assertFalse(set(self.keys(self.drive)) & set(self.first))


class EditorKeys(PressesTest):
    def setUp(self):
        self.drive = self.open([profile("A", playAlert=True, allDay=True), profile("B")], switch=True)
        self.drive.tap(self.drive.row(name="A"))

    def test_eachSwitch_renamesNoRowThatStays(self):
        for identifier in ("vibrate", "playAlert", "playAlert", "allDay", "allDay", "enabled", "enabled"):
            before = {row["key"]: (row["name"], row["identifier"]) for row in self.drive.rows}
            row = self.drive.row(identifier=identifier)
            self.drive.set(row, not row["value"])
            now = {row["key"]: (row["name"], row["identifier"]) for row in self.drive.rows}
            for key in set(before) & set(now):
                self.assertEqual(before[key], now[key])
            new = [now[key] for key in now if key not in before]
            gone = [before[key] for key in before if key not in now]
            self.assertEqual([row for row in new if row in gone and row != (None, None)], [], identifier)
            if identifier == "vibrate":
                self.assertEqual((new, gone), ([], []))

    def test_changedElsewhere_keepsAllKeysAndShowsTheValues(self):
        before = list(self.keys(self.drive))
        title = self.drive.row(identifier="title")
        self.elsewhere(self.drive, [profile("A", playAlert=True, allDay=True), profile("B")])
        self.elsewhere(self.drive, [{**profile("A", playAlert=True, allDay=True), "title": "Renamed"}])
        self.assertEqual(list(self.keys(self.drive)), before)
        self.assertEqual(self.drive.row(key=title["key"])["value"], "Renamed")

    def test_calendarAddedMeanwhile_leavesTheRowWhatItIs(self):
        row = self.drive.row(identifier="calendarIdentifiers")
        folder = self.drive.path("/var/mobile/Library/Calendars/Home/garden")
        os.makedirs(folder)
        with open(os.path.join(folder, "displayname"), "w", encoding="utf-8") as file:
            file.write("Garden\n")
        self.drive.do("post", name=APPLIED)
        self.assertEqual(self.drive.row(identifier="calendarIdentifiers")["key"], row["key"])


class Stale(PressesTest):
    def test_rowDeletedByTheOtherProcess_isNoOtherRow(self):
        drive = self.open([profile("A"), profile("B")], switch=True)
        row = drive.row(name="A")
        other = self.start(root=drive.root)
        other.do("delete", key=other.row(name="A")["key"])
        other.choose("Delete")
        drive.do("wait", event="reload", seconds=PATIENCE)
        self.assertEqual(self.titles(drive), ["B"])
        self.assertEqual(drive.rows[row["index"]]["name"], "B")
        self.stale(drive, "delete", key=row["key"], row=row["index"])
        self.stale(drive, "tap", key=row["key"])
        self.stale(drive, "set", key=row["key"], value=True)

    def test_screenThatWasReplaced_isNotActedOn(self):
        drive = self.open([profile("A")], switch=True)
        root, switch = drive.screen["id"], drive.row(identifier=SWITCH)
        drive.do("tap", key=drive.row(name="A")["key"], screen=root)
        editor = drive.screen["id"]
        self.assertNotEqual(editor, root)
        self.stale(drive, "set", row=switch["index"], value=False, screen=root)
        self.stale(drive, "set", key=switch["key"], value=False)
        self.stale(drive, "bar", side="right", item=0, screen=root)
        drive.do("back", screen=editor)
        self.stale(drive, "back", screen=editor)
        self.assertEqual(drive.screen["id"], root)

    def test_sheetThatWasReplaced_isNotPressed(self):
        drive = self.open([profile("A"), profile("B")], switch=True)
        drive.delete(drive.row(name="A"))
        asked = drive.presented_id
        drive.do("choose", action="Cancel", presented=asked, screen=drive.screen["id"])
        self.stale(drive, "choose", action="Delete", presented=asked)
        drive.delete(drive.row(name="B"))
        self.stale(drive, "choose", action="Delete", presented=asked)
        drive.do("choose", action="Delete", presented=drive.presented_id)
        self.assertEqual(self.stored(drive), ["ID-A"])


class SheetOpen(PressesTest):
    """What happens elsewhere while the sheet asks whether to delete."""

    def setUp(self):
        self.profiles = [profile("A"), profile("B"), profile("C")]
        self.drive = self.open(self.profiles, switch=True)
        self.drive.delete(self.drive.row(name="B"))

    def confirm(self):
        """Presses Delete; the names of the rows that the framework took away for it."""
        self.drive.choose("Delete")
        return [event["name"] for event in self.drive.events_of("remove")]

    def test_nothing_losesTheRow(self):
        self.assertEqual(self.confirm(), ["B"])

    def test_deleted_takesNoOtherRowWithIt(self):
        self.elsewhere(self.drive, [self.profiles[0], self.profiles[2]])
        self.assertEqual(self.titles(self.drive), ["A", "C"])
        self.assertEqual(self.confirm(), [])
        self.assertEqual(self.titles(self.drive), ["A", "C"])
        self.assertIn("ID-B", self.drive.presented["message"])
        self.assertFalse(self.drive.screen["editing"])
        self.drive.choose("Close")
        self.assertEqual(self.stored(self.drive), ["ID-A", "ID-C"])

    def test_deletedAndAnotherOfItsNameThere_takesThatOneNeither(self):
        self.elsewhere(self.drive, [self.profiles[0], {**profile("B"), "identifier": "ID-other"}, self.profiles[2]])
        self.assertEqual(self.confirm(), [])
        self.drive.choose("Close")
        self.assertEqual(self.stored(self.drive), ["ID-A", "ID-other", "ID-C"])

    def test_renamedReorderedAndMoved_losesThatRow(self):
        for change in ([{**profile("B"), "title": "Renamed"}, self.profiles[0], self.profiles[2]],
                       [self.profiles[2], self.profiles[0], self.profiles[1]],
                       [profile("New"), *self.profiles],
                       [self.profiles[0], self.profiles[2], profile("B", enabled=False)]):
            with self.subTest([entry["title"] for entry in change]):
                drive = self.drive = self.open(self.profiles, switch=True)
                drive.delete(drive.row(name="B"))
                self.elsewhere(drive, change)
                row = [row for row in drive.rows if (row["userInfo"] or {}).get("identifier") == "ID-B"][0]
                self.assertEqual(self.confirm(), [row["name"]])
                self.assertEqual(self.stored(drive), [entry["identifier"] for entry in change
                                                      if entry["identifier"] != "ID-B"])
                self.assertIsNone(drive.presented)

    def test_refusedDeletion_bringsTheRowBackWithTheNextRefresh(self):
        with open(self.drive.path(PROFILES), "rb") as file:
            good = file.read()
        with open(self.drive.path(PROFILES), "wb") as file:
            file.write(b"no list")
        self.assertEqual(self.confirm(), ["B"])
        self.assertEqual(self.drive.presented["title"], "Error")
        with open(self.drive.path(PROFILES), "wb") as file:
            file.write(good)
        self.drive.choose("Close")
        self.assertEqual(self.titles(self.drive), ["A", "C"])
        self.drive.do("post", name=APPLIED)
        self.assertEqual(self.titles(self.drive), ["A", "B", "C"])

    def test_otherProcess_deletesItFirst(self):
        other = self.start(root=self.drive.root)
        other.delete(other.row(name="B"))
        other.choose("Delete")
        self.drive.do("wait", event="reload", seconds=PATIENCE)
        self.assertEqual(self.confirm(), [])
        self.assertEqual(self.titles(self.drive), ["A", "C"])


class Traffic(PressesTest):
    def test_deletionsByKey_meetTheirProfilesWhileTheOtherProcessMovesThem(self):
        """One process switches profiles on and off as fast as it can, which moves rows between the sections; the
        other deletes by the keys that it has seen."""
        titles = [f"P{number:02}" for number in range(24)]
        staying = [f"S{number}" for number in range(6)]
        drive = self.open([profile(title) for title in titles + staying], switch=True)
        other = self.start(root=drive.root)
        over, failures = threading.Event(), []

        def move():
            try:
                turn = 0
                while not over.is_set() or turn < 2 * len(staying):
                    name = staying[turn % len(staying)]
                    turn += 1
                    other.do("state")
                    other.do("tap", key=other.row(name=name)["key"], screen=other.screen["id"])
                    enabled = other.row(identifier="enabled")
                    other.do("set", key=enabled["key"], value=not enabled["value"])
                    other.back()
            except Exception as failure:  # pylint: disable=broad-except
                failures.append(failure)

        mover = threading.Thread(target=move)
        mover.start()
        try:
            self.delete_all(drive, titles)
        finally:
            over.set()
            mover.join()
        self.assertEqual(failures, [])
        self.assertEqual(sorted(self.stored(drive)), [f"ID-{title}" for title in staying])

    def delete_all(self, drive, titles):
        drive.do("state")
        for title in titles:
            # Seen once, and pressed without another look, however often the rows have moved since.
            row = drive.row(name=title)
            screen = drive.screen["id"]
            drive.attempt("wait", event="reload", seconds=0.05)
            drive.do("delete", key=row["key"], row=row["index"], screen=screen)
            self.assertIn(f"'{title}'", drive.presented["message"])
            sheet = drive.presented_id
            drive.attempt("wait", event="reload", seconds=0.05)
            drive.do("choose", action="Delete", presented=sheet)
            self.assertIsNone(drive.presented)
            self.assertNotIn(f"ID-{title}", self.stored(drive))


if __name__ == "__main__":
    main()
