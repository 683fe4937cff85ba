# SPDX-License-Identifier: MIT
"""The command "check" with the fixture bundles, and with those that have to be clean:
test_check.py PROGRAM FIXTURES SOURCE_TREE OWN_BUNDLE RINGER [unittest arguments]."""
import json
import os
import plistlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree as XML

PATIENCE = 200
DETAIL = "PSDetailController/FaultyPane"
# Kind, screen, row, subject: each mistake of the faulty bundle.
PLANTED = {
    ("missingClass", "FaultyController", "absentScreen", "FaultyAbsentController"),
    ("missingClass", "FaultyController", "absentPane", "FaultyAbsentPane"),
    ("missingClass", "FaultyController", "absentCell", "FaultyAbsentCell"),
    ("missingClass", "FaultyController", "", "FaultyAbsentLinkedController"),
    ("missingSetter", "FaultyController", "noSetter", "setter"),
    ("missingGetter", "FaultyController", "noGetter", "getter"),
    ("missingAction", "FaultyController", "noAction", "action"),
    ("missingAction", "FaultyController", "onlyInTheDark", "action"),
    ("missingAction", "FaultyController", "onlyOnAPad", "action"),
    ("missingAction", "FaultyLinkedController", "Idle", "action"),
    ("duplicateIdentifier", "FaultyController", "twice", "twice"),
    ("missingTranslation", "FaultyController", "", "Only in English"),
    ("differentPlaceholders", "", "", "%@ of %@"),
    ("cutLabel", "FaultyController", "cut",
     "Ein Name, der in dieser Sprache viel länger ist, als eine Zeile breit sein kann"),
    ("cutLabel", DETAIL, "", "Some words that need more lines than there is room for"),
    ("smallTarget", "FaultyController", "low", "a row"),
    ("smallTarget", DETAIL, "", "a UISwitch"),
    ("missingImage", "", "", "Glow@2x"),
    ("missingImage", "", "", "Lamp"),
    ("missingImage", "", "", "Lamp@3x"),
    ("missingImage", "FaultyController", "", "NoLamp"),
    ("screenStays", "FaultyKeptController", "", "screen"),
    ("observerStays", "FaultyWatchedController", "", "FaultyNotification"),
}


class CheckTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="quietrix-check-test-")
        self.addCleanup(directory.cleanup)
        self.directory = directory.name
        # Where the program's own directory comes and goes.
        self.scratch = os.path.join(self.directory, "scratch")
        os.mkdir(self.scratch)

    def check(self, *arguments):
        return subprocess.run([PROGRAM, "check", *arguments], capture_output=True, text=True, timeout=PATIENCE,
                              check=False, env={**os.environ, "TMPDIR": self.scratch})

    def found(self, *arguments):
        done = self.check(*arguments, "--json")
        self.assertEqual(done.returncode, 1, done.stderr)
        return json.loads(done.stdout)

    def file(self, name, content):
        path = os.path.join(self.directory, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        return path

    @staticmethod
    def identities(findings):
        return {(each["kind"], each["screen"], each["row"], each["subject"]) for each in findings}


class Faulty(CheckTest):
    def faulty(self):
        return os.path.join(FIXTURES, "Faulty.bundle")

    def test_eachPlantedMistake_isToldAndNothingElse(self):
        found = self.found(self.faulty())
        self.assertEqual(self.identities(found["findings"]), PLANTED)
        self.assertEqual(len(found["findings"]), len(PLANTED))
        self.assertEqual(found["tours"], 8)
        self.assertEqual(os.listdir(self.scratch), [])

    def test_languages_areThoseInWhichItWasFound(self):
        languages = {each["subject"]: each["languages"] for each in self.found(self.faulty())["findings"]}
        self.assertEqual(languages["Only in English"], ["de"])
        self.assertEqual(languages["%@ of %@"], ["de"])
        self.assertEqual(languages["twice"], ["de", "en"])

    def test_existingData_areLookedAtAndLeftAlone(self):
        data = self.file("phone/var/mobile/Library/Preferences/faulty.plist", b"anything")
        root = os.path.join(self.directory, "phone")
        found = self.found(self.faulty(), "--root", root)
        self.assertEqual(self.identities(found["findings"]) - PLANTED,
                         {("missingAction", "FaultyController", "onlyWithData", "action")})
        self.assertEqual(found["tours"], 16)
        self.assertEqual([os.path.join(path, name) for path, _, names in os.walk(root) for name in names], [data])

    def test_timings_tellWhatIsSlow(self):
        found = self.found(self.faulty(), "--timings")
        self.assertIn(("slowCommand", "FaultyController", "slow", "is opened"), self.identities(found["findings"]))

    def test_peopleReadItByScreen(self):
        lines = self.check(self.faulty()).stdout.splitlines()
        self.assertEqual(lines[0], "Files of the bundle")
        screen = lines.index("FaultyController")
        self.assertIn('  "noSetter": It has a control and no setter. (de, en) [missingSetter]', lines[screen:])
        self.assertRegex(lines[-1], r"^23 findings, 0 accepted, on 9 screens in 8 tours\.$")

    def test_junit_hasACaseForEachScreen(self):
        path = os.path.join(self.directory, "results.xml")
        self.assertEqual(self.check(self.faulty(), "--junit", path).returncode, 1)
        suite = XML.parse(path).getroot()
        failed = {case.get("name"): case.find("failure") for case in suite.iter("testcase")}
        self.assertEqual(int(suite.get("tests")), len(failed))
        self.assertIsNone(failed["FaultyCircleController"])
        self.assertIn('"noSetter"', failed["FaultyController"].text)
        self.assertEqual(int(suite.get("failures")), sum(failure is not None for failure in failed.values()))

    def test_accepted_areLeftOutWithTheirReasons(self):
        entries = [{"kind": kind, "screen": screen, "row": row, "subject": subject, "reason": "planted"}
                   for kind, screen, row, subject in sorted(PLANTED)]
        entries.append({"kind": "cutLabel", "screen": "GoneController", "reason": "it was there once"})
        lines = self.file("accepted.jsonl", "".join(json.dumps(entry) + "\n" for entry in entries).encode())
        done = self.check(self.faulty(), "--accepted", lines)
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertIn("Accepted, but not found any more: cutLabel, GoneController (it was there once)", done.stdout)
        accepted = self.file("accepted.plist", plistlib.dumps(entries[1:]))
        found = self.found(self.faulty(), "--accepted", accepted)
        self.assertEqual(self.identities(found["findings"]), {sorted(PLANTED)[0]})
        self.assertEqual({each["reason"] for each in found["accepted"]}, {"planted"})
        self.assertEqual([each["screen"] for each in found["unused"]], ["GoneController"])


class CannotBegin(CheckTest):
    def test_bundleThatCannotBeOpened_isStatus2AndOneLine(self):
        for bundle, reason in (("WrongBase", "LonelyObject"), ("MissingClass", "NobodyController"),
                               ("NotLoadable", "NotLoadable"), ("NoInfo", "no usable Info list"),
                               ("OlderInterface", "OlderInterface"), ("Absent", "is not a directory")):
            with self.subTest(bundle):
                done = self.check(os.path.join(FIXTURES, bundle + ".bundle"))
                self.assertEqual(done.returncode, 2)
                self.assertEqual(done.stdout, "")
                self.assertIn(reason, done.stderr)
                self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)
        self.assertEqual(os.listdir(self.scratch), [])

    def test_filesThatCannotBeUsed_areStatus2(self):
        sample = os.path.join(FIXTURES, "Sample.bundle")
        wrong = self.file("accepted.jsonl", b'{"kind":"cutLabel"}\n')
        for arguments, reason in ((("--accepted", wrong), "Line 1 has no reason"),
                                  (("--accepted", wrong + ".absent"), "cannot be read"),
                                  (("--accepted", self.directory), "cannot be read"),
                                  (("--root", wrong), "is not a directory"),
                                  (("--junit", os.path.join(self.directory, "absent/x.xml")), "cannot be written")):
            with self.subTest(reason):
                done = self.check(sample, *arguments)
                self.assertEqual(done.returncode, 2)
                self.assertIn(reason, done.stderr)


class Interrupted(CheckTest):
    """A check that waits for a pipe that nobody writes to."""

    def start(self):
        pipe = os.path.join(self.directory, "pipe")
        if not os.path.exists(pipe):
            os.mkfifo(pipe)
        process = subprocess.Popen([PROGRAM, "check", os.path.join(FIXTURES, "Sample.bundle"), "--accepted", pipe],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                   env={**os.environ, "TMPDIR": self.scratch})
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        end = time.monotonic() + PATIENCE
        while not self.children(process):
            self.assertIsNone(process.poll())
            self.assertLess(time.monotonic(), end, "it looks in no process of its own")
        return process

    @staticmethod
    def children(process):
        with open(f"/proc/{process.pid}/task/{process.pid}/children", encoding="ascii") as file:
            return [int(each) for each in file.read().split()]

    def test_signal_endsItAndTheDirectoryGoes(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            process = self.start()
            self.assertEqual(len(os.listdir(self.scratch)), 1)
            process.send_signal(number)
            output, errors = process.communicate(timeout=PATIENCE)
            self.assertEqual((process.returncode, output, errors),
                             (128 + number, "", "quietrix-settings: Interrupted.\n"))
            self.assertEqual(os.listdir(self.scratch), [])

    def test_deathOfWhatLooks_isToldAndTheDirectoryGoes(self):
        for number, status, words in ((signal.SIGABRT, 2, "died of what it looked at: signal 6 (Aborted)."),
                                      (signal.SIGPIPE, 128 + signal.SIGPIPE, "")):
            process = self.start()
            os.kill(self.children(process)[0], number)
            output, errors = process.communicate(timeout=PATIENCE)
            self.assertEqual((process.returncode, output), (status, ""))
            self.assertEqual(errors, f"quietrix-settings: The program {words}\n" if words else "")
            self.assertEqual(os.listdir(self.scratch), [])


class Clean(CheckTest):
    def profiles(self):
        """A phone in use: every row of the editor is there."""
        preferences = "phone/var/mobile/Library/Preferences/"
        self.file(preferences + "com.velmora.quietrix.plist", plistlib.dumps({"com.velmora.quietrix.enabled": True}))
        self.file(preferences + "com.velmora.quietrix.profiles.plist", plistlib.dumps({"format": 1, "profiles": [
            {"identifier": "A", "title": "Work", "enabled": True, "allDay": False, "startTime": "9:00 AM",
             "endTime": "5:00 PM", "playAlert": True},
            {"identifier": "B", "title": "Night", "enabled": False}]}))
        return os.path.join(self.directory, "phone")

    def test_ownBundle_isCleanButForWhatIsAccepted(self):
        done = self.check(OWN, "--root", self.profiles(), "--accepted",
                          os.path.join(TREE, "resources/accepted-findings.jsonl"), "--json")
        found = json.loads(done.stdout)
        self.assertEqual(found["findings"], [])
        self.assertEqual(found["unused"], [])
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stderr, "")
        self.assertGreaterEqual(set(found["screens"]), {
            "QuietrixPreferencesController", "QuietrixProflePreferencesController", "QXDateRangeController",
            "QuietrixCalendarsController", "QuietrixWifiController", "QuietrixAlertToneController",
            "QuietrixEventStatusController", "QuietrixMiscController"})

    def test_ringer_isClean(self):
        data = plistlib.dumps({"bells": [{"identifier": "1", "name": "Tea"}]})
        self.file("phone/var/mobile/Library/Preferences/com.example.ringer.plist", data)
        done = self.check(RINGER, "--root", os.path.join(self.directory, "phone"))
        self.assertEqual(done.stdout, "0 findings, 0 accepted, on 5 screens in 16 tours.\n")
        self.assertEqual(done.returncode, 0)

    def test_pseudoLanguage_isSpokenBesideTheBundlesOwn(self):
        done = self.check(RINGER, "--device", "languages=en-XA")
        self.assertIn("a label of 100. (en-XA) [cutLabel]", done.stdout)
        self.assertTrue(done.stdout.endswith("1 finding, 0 accepted, on 5 screens in 12 tours.\n"), done.stdout)

    def test_help_tellsTheOptions(self):
        done = self.check("--help")
        self.assertEqual(done.returncode, 0)
        for option in ("BUNDLE", "--root", "--device", "--timings", "--json", "--junit", "--accepted"):
            self.assertIn(option, done.stdout)


if __name__ == "__main__":
    PROGRAM, FIXTURES, TREE, OWN, RINGER = sys.argv[1:6]
    run = unittest.main(argv=sys.argv[:1] + sys.argv[6:], exit=False)
    sys.exit(0 if run.result.wasSuccessful() and run.result.testsRun else 1)
