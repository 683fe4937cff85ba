# SPDX-License-Identifier: MIT
"""What came of what, as the drive channel tells it: test_causes.py PROGRAM BUNDLE [arguments]."""
import os
import sys
import threading

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from Drive import Drive  # noqa: E402
from QuietrixCase import APPLIED, CHANGED, DELETED, PATIENCE, QuietrixTest, main, profile  # noqa: E402


class Causes(QuietrixTest):
    def editor(self, **wishes):
        """The editor of one of two profiles; the events from now on are those of what is done."""
        drive = self.open([profile("Work", vibrate=False), profile("Home")], switch=True)
        drive.tap(drive.row(name="Work"))
        drive.do("state", **wishes)
        return drive

    def tree(self, drive):
        """Each event as (kind, what, its cause's place in this list or what the cause is). A cause must stand before."""
        places = {}
        told = []
        for place, event in enumerate(drive.events):
            cause = event["cause"]
            if isinstance(cause, int):
                self.assertIn(cause, places, f"the cause of {event} does not stand before it")
                cause = places[cause]
            places[event["id"]] = place
            what = event.get("selector") or event.get("call") or event.get("name", "").rpartition(".")[2]
            told.append((event["event"], what, cause))
        self.assertEqual(sorted(places), list(places), "the numbers grow")
        return told

    def test_movedSwitch_isOneStory(self):
        drive = self.editor(events="all")
        key = drive.row(name="Vibrate")["key"]
        drive.do("set", key=key, value=True, id="mine")
        self.assertEqual(self.tree(drive), [
            ("call", "setPreferenceValue:specifier:", {"command": len(drive.sent), "id": "mine"}),
            ("store", "update", 0),
            ("write", "", 1),
            ("local", "ProfileChangedNotification", 1),
            ("store", "reload", 3),
            ("darwin", "ProfileChangedNotification", 1),
            ("reload", "", 3),
            ("darwinReceived", "ProfileChangedNotification", 5),
            ("local", "ProfileAppliedStateChangedNotification", 7),
            ("store", "reload", 8),
            ("reload", "", 8),
            ("reload", "", 8),
        ])
        self.assertEqual(drive.events[0]["row"], key)
        self.assertEqual(drive.events[0]["class"], "QuietrixProflePreferencesController")
        for event in drive.events:
            self.assertEqual("ms" in event, event["event"] != "darwin", event)
        update, write = drive.events[1:3]
        self.assertLessEqual(update["at"], write["at"])
        self.assertGreaterEqual(update["ms"], write["ms"])

    def test_withoutCalls_theStoryIsTheSameWithoutThem(self):
        drive = self.editor()
        drive.do("set", key=drive.row(name="Vibrate")["key"], value=True)
        self.assertEqual(self.tree(drive)[:3], [("store", "update", {"command": len(drive.sent)}), ("write", "", 0),
                                                ("local", "ProfileChangedNotification", 0)])

    def test_deletionOnAnotherQueue_comesOfTheButtonThatWasPressed(self):
        drive = self.open([profile("Work")], switch=True, device={"clock": "2026-11-20T09:00:00"})
        drive.delete(drive.row(name="Work"))
        drive.choose("Delete")
        tree = self.tree(drive)
        deletion = tree.index(("store", "delete", {"command": len(drive.sent)}))
        self.assertIn(("local", DELETED.rpartition(".")[2], deletion), tree)

    def test_whatAnotherProcessPosts_hasNoCauseHere(self):
        drive = self.editor()
        with Drive(self.PROGRAM, self.BUNDLE, root=drive.root) as other:
            other.do("post", name=APPLIED)
        drive.do("wait", event="darwinReceived", name=APPLIED, seconds=PATIENCE)
        received = next(event for event in drive.events if event["event"] == "darwinReceived")
        self.assertIsNone(received["cause"])

    def test_twoProcessesAtOnce_causesStandBeforeWhatTheyCaused(self):
        drive = self.editor(events="all")
        with Drive(self.PROGRAM, self.BUNDLE, root=drive.root) as other:
            posting = threading.Thread(target=lambda: [other.do("post", name=name)
                                                       for name in (CHANGED, APPLIED) for _ in range(50)])
            posting.start()
            for turn in range(50):
                drive.do("set", key=drive.row(name="Vibrate")["key"], value=turn % 2 == 0)
                tree = self.tree(drive)
                self.assertEqual(tree.count(("call", "setPreferenceValue:specifier:", {"command": len(drive.sent)})), 1)
            posting.join()


if __name__ == "__main__":
    main()
