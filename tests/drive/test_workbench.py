# SPDX-License-Identifier: MIT
"""What engineers do to the phone while it runs, over the drive channel: test_workbench.py PROGRAM BUNDLE [arguments]."""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from Drive import Drive  # noqa: E402
from QuietrixCase import CHANGED, PATIENCE, PROFILES, SETTINGS, SWITCH, QuietrixTest, main, profile  # noqa: E402

EDITOR = "QuietrixProflePreferencesController"
ROOT = "QuietrixPreferencesController"
TONES = "QuietrixAlertToneController"


class WorkbenchTest(QuietrixTest):
    def editor(self, **options):
        drive = self.open([profile("Work", playAlert=True), profile("Home")], switch=True, **options)
        drive.tap(drive.row(name="Work"))
        self.assertEqual(drive.screen["class"], EDITOR)
        return drive

    @staticmethod
    def identified(drive, identifier):
        return next(row for row in drive.rows if row["identifier"] == identifier)

    def refused(self, drive, command, **fields):
        """The error of a command that must change nothing."""
        drive.do("state")
        before = drive.state
        answer = drive.attempt(command, **fields)
        self.assertFalse(answer["ok"], command)
        for part in ("screen", "presented", "device", "faults"):
            self.assertEqual({**answer["state"], "device": {**answer["state"]["device"], "clock": ""}}[part],
                             {**before, "device": {**before["device"], "clock": ""}}[part])
        return answer["error"]


class Device(WorkbenchTest):
    def test_screensAreOpenedAnew_alongTheSamePathByRowKeys(self):
        drive = self.editor()
        before = {row["identifier"]: row["key"] for row in drive.rows if row["identifier"]}
        old = drive.screen["id"]
        answer = drive.attempt("device", set={"languages": "de", "idiom": "pad", "scale": 3, "darkMode": True})
        self.assertTrue(answer["ok"])
        self.assertNotIn("pathEnded", answer)
        self.assertEqual(drive.screen["class"], EDITOR)
        self.assertNotEqual(drive.screen["id"], old, "it is another screen")
        self.assertEqual({row["identifier"]: row["key"] for row in drive.rows if row["identifier"]}, before)
        self.assertEqual(self.identified(drive, "enabled")["name"], "Aktivieren")
        self.assertEqual([drive.state["device"][fact] for fact in ("language", "idiom", "scale", "darkMode")],
                         ["de", "pad", 3, True])
        drive.do("set", key=before["vibrate"], value=True)
        self.assertTrue(self.read(drive, PROFILES)["profiles"][0]["vibrate"])
        drive.back()
        self.assertEqual(drive.screen["class"], ROOT)

    def test_pseudoLanguage_bracketsWhatIsLocalised(self):
        drive = self.editor()

        def plain():
            return {row["name"] for row in drive.rows if row["name"] and not (row["name"].startswith("[") and row["name"].endswith("]"))}

        drive.do("device", set={"languages": ["en-XA", "en"]})
        self.assertEqual(drive.screen["class"], EDITOR)
        self.assertEqual(plain(), set())
        self.assertEqual(self.identified(drive, "enabled")["name"], "[ÉÉñååƀļéé]")
        self.assertEqual(drive.screen["title"], "Work", "what the user has written is nobody's to translate")
        self.assertEqual(drive.state["device"]["languages"], ["en-XA", "en"])
        drive.back()
        self.assertEqual(plain(), {"Work", "Home"})
        # A row that is only called as the user calls it stays plain, so would one that nobody has localised.
        drive.do("device", set={"languages": ["ar-XB", "en"]})
        self.assertTrue(drive.state["device"]["rightToLeft"])
        self.assertEqual(plain(), {"Work", "Home"})
        drive.do("device", set={"languages": ["en"]})
        self.assertNotIn("languages", drive.state["device"])
        self.assertIn("Enabled", plain())

    def test_aLinkIsFollowedToo(self):
        drive = self.editor()
        drive.do("link", item=0)
        drive.do("device", set={"languages": ["ar", "en"]})
        self.assertEqual(drive.screen["class"], "QuietrixEventStatusController")
        self.assertTrue(drive.state["device"]["rightToLeft"])

    def test_whatIsNotNamed_staysAsItIsByNow(self):
        drive = self.editor(device={"clock": "2026-11-20T09:00:00", "mailAccount": "me@example.org"})
        drive.do("dark", on=True)
        drive.do("advance", seconds=3600)
        drive.do("device", set={"languages": "fr"})
        self.assertTrue(drive.state["device"]["darkMode"])
        self.assertEqual(drive.state["device"]["clock"], "2026-11-20T10:00:00")
        drive.do("device", set={"clock": "2026-11-20T08:00:00"})
        self.assertEqual(drive.state["device"]["clock"], "2026-11-20T08:00:00")
        drive.do("advance", seconds=60)
        self.assertEqual(drive.state["device"]["clock"], "2026-11-20T08:01:00")
        drive.do("device", set={"clock": "system"})
        self.assertTrue(drive.state["device"]["clockRuns"])
        self.assertIn("system", self.refused(drive, "advance", seconds=1))

    def test_allOrNothing(self):
        drive = self.editor()
        error = self.refused(drive, "device", set={"idiom": "pad", "scale": 99})
        self.assertIn('"scale" cannot be "99"', error)
        self.assertIn("nothing", self.refused(drive, "device", set={"nothing": "x"}))
        self.assertIn('"set" must be', self.refused(drive, "device", set=["idiom"]))
        self.assertIn('"idiom" must be a text', self.refused(drive, "device", set={"idiom": {"a": 1}}))

    def test_toneControllersAndVersion_decideAnewWhatTheToneScreenIs(self):
        drive = self.editor()
        drive.do("tap", key=self.identified(drive, "alertToneIdentifier")["key"])
        for version, controllers, superclass in (("11.4", "SHSToneController", "SHSToneController"),
                                                 ("8.4", "ToneController", "ToneController"),
                                                 ("11.4", "PSUIToneController", "PSUIToneController")):
            drive.do("device", set={"systemVersion": version, "toneController": controllers})
            self.assertEqual(drive.screen["class"], TONES)
            self.assertEqual(drive.screen["tones"]["superclass"], superclass)
        drive.do("device", set={"toneController": "none"})
        self.assertIsNone(drive.screen["tones"])
        self.assertTrue(any("NO SUPER TONE CONTROLLER" in event["text"] for event in drive.events_of("log")))

    def test_whatCannotBeOpenedAnew_endsThePathAndIsSaid(self):
        drive = self.editor()
        self.write(drive, PROFILES, {"format": 1, "profiles": [profile("Home")]})
        answer = drive.attempt("device", set={"languages": "ja"})
        self.assertTrue(answer["ok"])
        self.assertIn(EDITOR, answer["pathEnded"])
        self.assertEqual(drive.screen["class"], ROOT)
        drive.bar("right", 0)
        self.assertEqual(drive.screen["modals"], 1)
        self.assertIn(EDITOR, drive.attempt("device", set={"languages": "en"})["pathEnded"])
        self.assertEqual((drive.screen["class"], drive.screen["modals"]), (ROOT, 0))
        drive.delete(drive.row(name="Home"))
        self.assertIsNotNone(drive.presented)
        self.assertIn("closed", drive.attempt("device", set={"languages": "de"})["pathEnded"])
        self.assertIsNone(drive.presented)
        self.assertEqual(len(self.read(drive, PROFILES)["profiles"]), 1)

    def test_theListOfBundles_staysOnTop(self):
        drive = self.editor()
        drive.back()
        drive.back()
        self.assertEqual(len(drive.screen["stack"]), 1)
        answer = drive.attempt("device", set={"languages": "de"})
        self.assertNotIn("pathEnded", answer)
        self.assertEqual((len(drive.screen["stack"]), drive.screen["title"]), (1, "Einstellungen"))

    def test_anOldScreensPress_isStale(self):
        drive = self.editor()
        old, key = drive.screen["id"], self.identified(drive, "vibrate")["key"]
        drive.do("device", set={"languages": "de"})
        answer = drive.attempt("set", key=key, value=True, screen=old)
        self.assertTrue(answer.get("stale"))
        self.assertNotIn("vibrate", self.read(drive, PROFILES)["profiles"][0])

    def test_whileAnotherProcessWrites_nothingIsLost(self):
        drive = self.editor()
        with Drive(self.PROGRAM, self.BUNDLE, root=drive.root) as other:
            other.tap(other.row(name="Home"))
            for turn in range(20):
                other.do("set", key=self.identified(other, "vibrate")["key"], value=turn % 2 == 0)
                drive.do("device", set={"languages": "de" if turn % 2 else "en"})
                self.assertEqual(drive.screen["class"], EDITOR)
                drive.do("set", key=self.identified(drive, "vibrate")["key"], value=turn % 2 == 1)
        stored = {entry["title"]: entry for entry in self.read(drive, PROFILES)["profiles"]}
        self.assertEqual((stored["Work"]["vibrate"], stored["Home"]["vibrate"]), (True, False))


class Faults(WorkbenchTest):
    def vibrate(self, drive, value):
        drive.do("set", key=self.identified(drive, "vibrate")["key"], value=value)

    def test_eachFileFault_isToldToTheUserAndLeavesTheFile(self):
        for kind, reason in (("profilesUnreadable", "Input/output error"), ("profilesCutShort", "damaged"),
                             ("profilesLocked", "another process holds it"), ("diskFull", "No space left"),
                             ("readOnly", "Read-only file system")):
            with self.subTest(kind):
                drive = self.editor()
                before = self.read(drive, PROFILES)
                self.assertEqual(drive.do("fault", kind=kind)["faults"], [kind])
                self.vibrate(drive, True)
                self.assertIn(reason, drive.presented["message"])
                self.assertEqual(self.read(drive, PROFILES), before)
                drive.choose(drive.presented["actions"][0]["title"])
                self.assertEqual(drive.do("fault", clear=True)["faults"], [])
                self.vibrate(drive, True)
                self.assertIsNone(drive.presented)
                self.assertTrue(self.read(drive, PROFILES)["profiles"][0]["vibrate"])

    def test_severalAtOnce_endOneByOne(self):
        drive = self.editor()
        drive.do("fault", kind="mailFails")
        drive.do("fault", kind="slow", milliseconds=5)
        self.assertEqual((drive.state["faults"], drive.state["faultMilliseconds"]), (["slow", "mailFails"], 5))
        drive.do("fault", kind="mailFails", on=False)
        self.assertEqual(drive.state["faults"], ["slow"])
        drive.do("fault", clear=True)
        self.assertNotIn("faultMilliseconds", drive.state)

    def test_slowFiles_takeTheTimeThatIsTold(self):
        drive = self.editor()
        drive.do("fault", kind="slow", milliseconds=30)
        self.vibrate(drive, True)
        (update,) = [event for event in drive.events_of("store") if event["call"] == "update"]
        self.assertGreaterEqual(update["ms"], 60, "a lock and a write at least")
        self.assertTrue(update["ok"])

    def test_silentSources_leaveTheirScreensEmpty(self):
        drive = self.editor()
        drive.do("tap", key=self.identified(drive, "calendarIdentifiers")["key"])
        self.assertIsNone(drive.screen["missing"], "the phone has calendars")
        drive.do("fault", kind="calendarsSilent")
        # The editor's row carries what it offers: it is built anew along the path.
        drive.do("device", set={})
        self.assertEqual((drive.screen["class"], drive.screen["missing"]), ("QuietrixCalendarsController", "calendars"))
        drive.do("fault", clear=True)
        drive.do("device", set={})
        self.assertIsNone(drive.screen["missing"])

    def test_faultsStayThroughAChangeOfTheDevice(self):
        drive = self.editor()
        drive.do("fault", kind="diskFull")
        self.assertEqual(drive.do("device", set={"languages": "de"})["faults"], ["diskFull"])
        self.vibrate(drive, True)
        self.assertIsNotNone(drive.presented)

    def test_whatIsNoFault_isAnError(self):
        drive = self.editor()
        self.assertIn('no fault "x"', self.refused(drive, "fault", kind="x"))
        self.assertIn('"milliseconds"', self.refused(drive, "fault", kind="slow"))
        self.assertIn('"milliseconds"', self.refused(drive, "fault", kind="slow", milliseconds=60001))
        self.assertIn('"kind"', self.refused(drive, "fault"))
        self.assertIn('"clear"', self.refused(drive, "fault", clear="yes"))

    def test_theyAreThisProcessesOnly(self):
        drive = self.editor()
        drive.do("fault", kind="profilesLocked")
        with Drive(self.PROGRAM, self.BUNDLE, root=drive.root) as other:
            other.tap(other.row(name="Home"))
            other.do("set", key=self.identified(other, "vibrate")["key"], value=True)
            self.assertIsNone(other.presented)


class Files(WorkbenchTest):
    def test_treesAndTheLog(self):
        drive = self.editor()
        answer = drive.attempt("files")
        self.assertEqual(answer["files"]["settings"], {SWITCH: True, "other": ["kept"]})
        self.assertEqual([entry["title"] for entry in answer["files"]["profiles"]["profiles"]], ["Work", "Home"])
        self.assertIn("com.velmora.ProfileAppliedStateChangedNotification", answer["files"]["log"])
        self.assertEqual(answer["files"]["problems"], {})

    def test_whatIsNotThere_isNullAndWhatIsDamagedIsNamed(self):
        drive = self.open([], switch=True)
        os.remove(drive.path(PROFILES))
        with open(drive.path(SETTINGS), "wb") as file:
            file.write(b"bplist00nonsense")
        files = drive.attempt("files")["files"]
        self.assertIsNone(files["profiles"])
        self.assertIsNone(files["settings"])
        self.assertEqual(list(files["problems"]), ["settings"])

    def test_aLongLog_isItsEndFromAWholeLineOn(self):
        drive = self.editor()
        lines = [f"{number:06} a line of the log" for number in range(10_000)]
        with open(drive.path("/tmp/velmora.log"), "a", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")
        log = drive.attempt("files")["files"]["log"]
        self.assertLessEqual(len(log), 65536)
        self.assertGreater(len(log), 65000)
        self.assertIn(log.splitlines()[0], lines)
        self.assertEqual(log.splitlines()[-1], lines[-1])

    def test_faultsAreNoFaultOfWhatIsLookedAt(self):
        drive = self.editor()
        drive.do("fault", kind="profilesUnreadable")
        self.assertIsNotNone(drive.attempt("files")["files"]["profiles"])

    def test_lookingChangesNothing(self):
        drive = self.editor()
        revision = drive.do("state")["revision"]
        self.assertEqual(drive.do("files")["revision"], revision)


class Others(WorkbenchTest):
    def test_postLocal_reachesThisProcessOnly(self):
        drive = self.editor()
        drive.do("postLocal", name=CHANGED)
        self.assertEqual([event["event"] for event in drive.events], ["local", "store", "reload"])
        self.assertIn('"name"', self.refused(drive, "postLocal", name=""))

    def test_kill_endsTheShellWhichIsStartedAgain(self):
        drive = self.editor()
        drive.do("kill", process="SpringBoard")
        if not drive.events_of("process"):
            drive.do("wait", event="process", seconds=PATIENCE)
        self.assertIn("ended", [event["state"] for event in drive.events_of("process")])
        self.assertIn('no process "init"', self.refused(drive, "kill", process="init"))

    def test_allActWhileSomethingIsPresented(self):
        drive = self.open([profile("Work")], switch=True)
        drive.delete(drive.row(name="Work"))
        sheet = drive.presented_id
        for command in ({"do": "files"}, {"do": "fault", "kind": "diskFull"}, {"do": "fault", "clear": True},
                        {"do": "postLocal", "name": "com.velmora.Other"}, {"do": "kill", "process": "SpringBoard"}):
            self.assertTrue(drive.attempt(command.pop("do"), **command)["ok"])
            self.assertEqual(drive.presented_id, sheet)
        self.assertTrue(drive.attempt("device", set={"languages": "de"})["ok"])


if __name__ == "__main__":
    main()
