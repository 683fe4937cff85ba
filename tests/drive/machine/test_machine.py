# SPDX-License-Identifier: MIT
"""The state machine itself: that it finds a fault, and shortens what shows it: test_machine.py PROGRAM BUNDLE
[arguments]."""
import os
import random
import stat
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from Answers import told  # noqa: E402
from Disk import BROKEN, NO_FILE, SWITCH, Disk  # noqa: E402
from Machine import Failure, Machine  # noqa: E402
from Phone import APPLIED, Phone  # noqa: E402
from Records import AnyOrder, Record, differences  # noqa: E402
from Scripts import command_of, entries_of, script_of  # noqa: E402
from Shrinker import shrink  # noqa: E402
from Sources import Sources  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
PROGRAM = BUNDLE = ""


class PlantedFaults(unittest.TestCase):
    """The whole script on a program that does one thing wrong."""

    def run_script(self, *options, fault=None):
        program = os.path.join(HERE, "faulty_program.py") if fault else PROGRAM
        os.chmod(program, os.stat(program).st_mode | stat.S_IXUSR)
        environment = {**os.environ, "REAL_PROGRAM": PROGRAM, "FAULT": fault or ""}
        result = subprocess.run([sys.executable, "-B", os.path.join(HERE, "state_machine.py"), program, BUNDLE, *options],
                                env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
        return result.returncode, result.stdout, result.stderr

    def test_faults_areFoundShortenedAndReplayed(self):
        for fault in ("drop", "lose", "echo", "shift"):
            with self.subTest(fault):
                status, _, errors = self.run_script("--seed", "7", "--commands", "300", "--shrink", "4", fault=fault)
                self.assertEqual(status, 1, errors)
                self.assertIn("FAILED with --seed 7", errors)
                path = errors.strip().rsplit(" ", 1)[-1]
                self.addCleanup(os.unlink, path)
                began_with = int(errors.split("shortening ")[1].split(" ")[0])
                with open(path, encoding="utf-8") as file:
                    self.assertIn(len(entries_of(file.read())), range(1, began_with + 1), errors)
                self.assertEqual(self.run_script("--replay", path, fault=fault)[0], 1)
                self.assertEqual(self.run_script("--replay", path)[:2], (0, "nothing failed\n"))

    def test_withoutAFault_sameSeedRunsTheSame(self):
        for _ in range(2):
            status, output, errors = self.run_script("--seed", "7", "--commands", "60")
            self.assertEqual((status, "nothing failed" in output), (0, True), errors)


class Shrinking(unittest.TestCase):
    def test_list_isLeftWithWhatMatters(self):
        for seed in range(20):
            wanted = sorted(random.Random(seed).sample(range(200), 3))
            found = shrink(list(range(200)), lambda part: all(each in part for each in wanted), 60)
            self.assertEqual(found, wanted)

    def test_noTime_leavesItAsItIs(self):
        self.assertEqual(shrink([1, 2, 3], lambda _: True, -1), [1, 2, 3])

    def test_script_comesBackAsItWas(self):
        entries = [{"do": "set", "row": 1, "value": "\u2615\u2028\u0001"}, {"line": "no json"}, {"line": '{"do":7}'},
                   {"outside": "kill", "during": {"do": "back"}, "after": 0.001}]
        self.assertEqual(entries_of(script_of(entries, ("a comment", "# another"))), entries)
        self.assertEqual([command_of(entry) for entry in entries[1:3]], [{}, {"do": 7}])


class Model(unittest.TestCase):
    """What the model says of two writers, key by key."""

    def setUp(self):
        self.disk = Disk({SWITCH: True})
        self.entry = {"identifier": "A", "title": "A", "wifiNetworks": ["One", "Two"], "note": [1]}
        self.disk.write({"format": 1, "profiles": [self.entry], "engineState": 3})

    def changed_elsewhere(self, **values):
        self.entry = {**self.entry, **values}
        self.disk.write({**self.disk.root, "profiles": [self.entry]})

    def editor(self):
        phone = Phone(self.disk)
        self.assertTrue(phone.perform({"do": "tap", "row": 3}))
        return phone

    def set(self, phone, identifier, value):
        row = next(i for i, row in enumerate(phone.screen.rows) if row.identifier == identifier)
        return phone.perform({"do": "set", "row": row, "value": value})

    def saved(self):
        return self.disk.root["profiles"][0]

    def test_changeHere_keepsWhatWasChangedElsewhere(self):
        phone = self.editor()
        self.changed_elsewhere(title="B", vibrate=False)
        self.assertTrue(self.set(phone, "dnDEnabled", True))
        self.assertEqual((self.saved()["title"], self.saved()["vibrate"], self.saved()["dnDEnabled"], self.saved()["note"]),
                         ("B", False, True, [1]))
        self.assertEqual(self.disk.root["engineState"], 3)

    def test_lists_areMergedByElement(self):
        record = Record(self.entry)
        record.assign("wifiNetworks", ["Two", "Three"])
        written = record.written_over({**self.entry, "wifiNetworks": ["Four", "One", "Two"]})["wifiNetworks"]
        self.assertEqual((type(written), sorted(written)), (AnyOrder, ["Four", "Three", "Two"]))
        beside = Record({**self.entry, "wifiNetworks": ["One", 7]})
        beside.assign("wifiNetworks", ["Two"])
        self.assertEqual(sorted(map(repr, beside.written_over({"wifiNetworks": ["One", 7]})["wifiNetworks"])),
                         ["'Two'", "7"])
        alone = record.written_over(self.entry)["wifiNetworks"]
        self.assertEqual((type(alone), alone), (list, ["Two", "Three"]))

    def test_goneElsewhere_failsAndStaysGone(self):
        phone = self.editor()
        self.disk.write({"format": 1, "profiles": []})
        self.assertTrue(self.set(phone, "vibrate", False))
        self.assertEqual((phone.presented[-1].kind, self.disk.root["profiles"]), ("alert", []))
        self.assertIn(("store", "update", "A", False), phone.story)
        phone.perform({"do": "choose", "action": "Close"})
        phone.deliver(APPLIED)
        self.assertIsNone(phone.screen.shown)

    def test_failedChange_isWrittenWithTheNext(self):
        phone = self.editor()
        kept = self.disk.root
        self.disk.write(BROKEN)
        self.set(phone, "vibrate", False)
        self.disk.write(kept)
        phone.perform({"do": "choose", "action": "Close"})
        self.set(phone, "wakeUpScreen", False)
        self.assertEqual((self.saved()["vibrate"], self.saved()["wakeUpScreen"]), (False, False))

    def test_files_areComparedKeyByKey(self):
        other = {"identifier": "B", "title": "B"}
        self.disk.write({"format": 1, "profiles": [self.entry, "foreign", other]})
        settings = {SWITCH: True}
        self.assertIsNone(self.disk.compare({"format": 1, "profiles": [{**self.entry, "vibrate": True}, "foreign", other]}, settings))
        for profiles in ([self.entry, "foreign"], [other, "foreign", self.entry], [self.entry, "changed", other],
                         [self.entry, other], [{**self.entry, "vibrate": False}, "foreign", other],
                         [{**self.entry, "note": [True]}, "foreign", other]):
            self.assertTrue(self.disk.compare({"format": 1, "profiles": profiles}, settings), profiles)
        for found in (NO_FILE, BROKEN, {"format": 1, "profiles": [self.entry, "foreign", other], "more": 1}):
            self.assertTrue(self.disk.compare(found, settings))
        for found in ({SWITCH: False}, {SWITCH: 1}, {}, NO_FILE, BROKEN):
            self.assertTrue(self.disk.compare(self.disk.root, found))
        self.assertEqual(differences({"vibrate": True, "ringerVolume": 1.0}, {"ringerVolume": 1}), [])

    def test_resetWithAPeer_takesTheFileAway(self):
        phone = Phone(self.disk)
        for command in ({"do": "tap", "row": len(phone.screen.rows) - 1}, {"do": "tap", "row": 1},
                        {"do": "choose", "action": "OK"}, {"do": "advance", "seconds": 2}):
            self.assertTrue(phone.perform(command), command)
        self.assertEqual((self.disk.root, phone.has_killed_shell, phone.presented), (NO_FILE, True, []))


class Looking(unittest.TestCase):
    def test_killedAtEachMoment_isOldOrNew(self):
        sources = Sources()
        self.addCleanup(sources.remove)
        machine = Machine(PROGRAM, BUNDLE, sources)
        self.addCleanup(machine.close)
        for entry in ({"do": "set", "row": 1, "value": True}, {"do": "bar", "side": "right", "item": 0},
                      {"do": "bar", "side": "right", "item": 0}):
            machine.run(entry)
        for step in range(12):
            machine.run({"do": "tap", "row": 3})
            machine.run({"outside": "kill", "during": {"do": "set", "row": 1, "value": f"Title {step}"},
                         "after": step * 0.0005})
        self.assertEqual(len(machine.worlds), 1)

    def test_unknownProfileInTheFile_isAFailure(self):
        sources = Sources()
        self.addCleanup(sources.remove)
        machine = Machine(PROGRAM, BUNDLE, sources)
        self.addCleanup(machine.close)
        for world in machine.worlds:
            world.disk.write({"format": 1, "profiles": [{"identifier": "A"}]})
        with self.assertRaises(Failure) as caught:
            machine.run({"do": "state"})
        self.assertEqual(caught.exception.rule, "files")

    def test_story_hasRowsScreensAndStore(self):
        events = [{"event": "store", "call": "reload", "identifier": None, "ok": True}, {"event": "reload"},
                  {"event": "store", "call": "update", "identifier": "A", "ok": True},
                  {"event": "insert", "index": 3, "name": "Row", "animated": True}, {"event": "push", "class": "C"}]
        self.assertEqual(told(events), [("store", "update", "A", True), ("insert", 3, "Row"), ("push", "C")])


if __name__ == "__main__":
    PROGRAM, BUNDLE = sys.argv[1:3]
    run = unittest.main(module="__main__", argv=sys.argv[:1] + sys.argv[3:], exit=False)
    sys.exit(0 if run.result.wasSuccessful() and run.result.testsRun else 1)
