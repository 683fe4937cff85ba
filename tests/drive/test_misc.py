# SPDX-License-Identifier: MIT
"""The miscellaneous screen through the drive channel: test_misc.py PROGRAM BUNDLE [arguments]."""
import email
import email.policy
import os
import shutil
import signal
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from QuietrixCase import APPLIED, PATIENCE, PROFILES, QuietrixTest, main, profile  # noqa: E402

CLOCK = {"clock": "2026-11-20T09:00:00"}
LANGUAGES = ("en", "de", "fr", "es", "ja", "zh-Hans", "ar")
RESET_PROMPT = "Are you sure you want to continue? Your device will repsring once done."
REPORT_PROMPT = "Are you sure you want to share log file with Velmora Support Team?"
FIRST_LINE = "Please donot remove the below information."


class MiscTest(QuietrixTest):
    def misc(self, profiles=(), **options):
        options["device"] = {**CLOCK, **options.get("device", {})}
        drive = self.open(list(profiles) or None, switch=True, **options)
        drive.tap(drive.row(identifier="Miscellaneous"))
        self.assertEqual(drive.screen["class"], "QuietrixMiscController")
        return drive

    def confirm(self, drive, identifier):
        drive.tap(drive.row(identifier=identifier))
        drive.choose(drive.presented["actions"][0]["title"])


class Rows(MiscTest):
    def test_rows_areAsDeclared(self):
        drive = self.misc()
        self.assertEqual([(row["name"], row["kind"], row["identifier"], row["action"]) for row in drive.rows],
                         [("Reset Profiles", 0, None, None),
                          ("Reset Profiles", 13, "resetProfiles", "showActivityIndicator:"),
                          ("Contact Velmora", 0, "CopyRightHeader", None),
                          ("Report Problem", 13, "report", "emailLogFile:")])
        self.assertEqual(drive.rows[1]["properties"], {"isDestructive": True})
        self.assertEqual(drive.rows[3]["properties"], {"iconImage": "email", "isDestructive": False})
        self.assertTrue(drive.rows[2]["properties"]["footerText"].startswith(self.version_notice()))

    def test_questions_areAsDeclared(self):
        drive = self.misc()
        drive.tap(drive.row(identifier="resetProfiles"))
        self.assertEqual(drive.presented, {
            "kind": "confirmation", "title": "Continue", "message": RESET_PROMPT,
            "actions": [{"title": "OK", "style": "destructive"}, {"title": "Cancel", "style": "cancel"}]})
        drive.choose("Cancel")
        drive.tap(drive.row(identifier="report"))
        self.assertEqual(drive.presented, {
            "kind": "confirmation", "title": "Send Now", "message": REPORT_PROMPT,
            "actions": [{"title": "Send Now", "style": "default"}, {"title": "Cancel", "style": "cancel"}]})
        drive.choose("Cancel")
        self.assertIsNone(drive.presented)

    def test_chrome_isTheProductsAndIsGivenBack(self):
        drive = self.misc()
        bar = drive.screen["bar"]
        self.assertEqual((bar["barTint"], bar["titleView"], [item["action"] for item in bar["right"]]),
                         ({"pattern": "nav", "alpha": 1}, {"image": "Quietrix"}, ["__tessaneTwitterAction:"]))


class Reset(MiscTest):
    def test_confirmed_removesTheFileAndRestartsTheShell(self):
        drive = self.misc([profile("A"), profile("B", enabled=False)])
        self.confirm(drive, "resetProfiles")
        self.assertEqual(drive.presented, {
            "kind": "activity", "title": "Resetting", "message": "Your device will be respring once it is done.",
            "actions": []})
        drive.do("advance", seconds=1.9)
        self.assertTrue(os.path.exists(drive.path(PROFILES)))
        drive.do("advance", seconds=0.1)
        self.assertIsNone(drive.presented)
        self.assertFalse(os.path.exists(drive.path(PROFILES)))
        self.assertEqual([event["process"] for event in drive.events_of("kill")], ["SpringBoard"])
        self.assertEqual([event["path"] for event in drive.events_of("removeFile")], [PROFILES])
        order = [event["event"] for event in drive.events if event["event"] in ("removeFile", "dismiss", "kill")]
        self.assertEqual(order, ["removeFile", "dismiss", "kill"])
        states = [event["state"] for event in drive.events_of("process")]
        if "started" not in states:
            drive.do("wait", event="process", name="SpringBoard", seconds=PATIENCE)
        if not any(event["name"] == APPLIED for event in drive.events_of("darwinReceived")):
            drive.do("wait", event="darwinReceived", name=APPLIED, seconds=PATIENCE)
        drive.back()
        self.assertEqual(drive.names()[2:6], ["Active Profiles", "No Profiles", "Inactive Profiles", "No Profiles"])

    def test_withoutAFile_showsThePlatformsError(self):
        for language, title, close in (("en", "Error", "Close"), ("de", "Fehler", "Schlie\u00dfen")):
            drive = self.misc(device={"languages": language})
            self.confirm(drive, "resetProfiles")
            drive.do("advance", seconds=2)
            self.assertEqual((drive.presented["kind"], drive.presented["title"], drive.presented["actions"]),
                             ("alert", title, [{"title": close, "style": "cancel"}]))
            self.assertEqual(drive.events_of("kill"), [])
            drive.choose(close)
            self.assertIsNone(drive.presented)

    def test_everyLanguage_resets(self):
        for language in LANGUAGES:
            drive = self.misc([profile("A")], device={"languages": language})
            self.confirm(drive, "resetProfiles")
            self.assertEqual(drive.presented["kind"], "activity", language)
            drive.do("advance", seconds=2)
            self.assertFalse(os.path.exists(drive.path(PROFILES)), language)

    def test_bundleThatNamesTheRowOtherwise_doesNothing(self):
        bundle = os.path.join(tempfile.mkdtemp(prefix="quietrix-bundle-"), "QuietrixPreferences.bundle")
        self.addCleanup(shutil.rmtree, os.path.dirname(bundle))
        shutil.copytree(self.BUNDLE, bundle)
        table = os.path.join(bundle, "en.lproj", "Localizable.strings")
        with open(table, encoding="utf-8") as file:
            text = file.read()
        with open(table, "w", encoding="utf-8") as file:
            file.write(text.replace('"Reset Profiles" = "Reset Profiles";', '"Reset Profiles" = "Start Over";'))
        standard, QuietrixTest.BUNDLE = self.BUNDLE, bundle
        try:
            drive = self.misc([profile("A")])
        finally:
            QuietrixTest.BUNDLE = standard
        self.assertEqual(drive.rows[1]["name"], "Start Over")
        self.confirm(drive, "resetProfiles")
        self.assertIsNone(drive.presented)
        drive.do("advance", seconds=5)
        self.assertTrue(os.path.exists(drive.path(PROFILES)))

    def test_nothingActsWhilePending(self):
        drive = self.misc([profile("A")])
        self.confirm(drive, "resetProfiles")
        for command, fields in (("tap", {"row": 1}), ("back", {}), ("bar", {"side": "right", "item": 0}),
                                ("choose", {"action": "Close"})):
            self.assertFalse(drive.attempt(command, **fields)["ok"], command)
        self.assertEqual(drive.presented["kind"], "activity")


class Report(MiscTest):
    ACCOUNT = {"mailAccount": "user@example.org", "serialNumber": "F17", "UDID": "00aa", "model": "Phone9,1"}

    def compose(self, log="first line\nsecond line\n"):
        drive = self.misc(device=self.ACCOUNT, environment=self.no_desktop())
        if log is not None:
            os.makedirs(drive.path("/tmp"), exist_ok=True)
            with open(drive.path("/tmp/velmora.log"), "w", encoding="utf-8") as file:
                file.write(log)
        self.confirm(drive, "report")
        return drive

    @staticmethod
    def no_desktop():
        return {key: value for key, value in os.environ.items() if key not in ("DISPLAY", "WAYLAND_DISPLAY")}

    def mails(self, drive, box):
        directory = drive.path("/var/mobile/Library/Mail/" + box)
        found = []
        for name in sorted(os.listdir(directory)) if os.path.isdir(directory) else ():
            with open(os.path.join(directory, name), "rb") as file:
                found.append(email.message_from_binary_file(file, policy=email.policy.default))
        return found

    def test_composed_asDeclared(self):
        mail = self.compose().presented
        self.assertEqual((mail["kind"], mail["subject"], len(mail["to"]), mail["html"]),
                         ("mail", "Quietrix Go - velmora.log", 1, True))
        self.assertEqual(mail["to"], ["support@velmora.com"])
        lines = mail["body"].split("\n")
        self.assertEqual(lines[:3], [FIRST_LINE, "Serial number: F17", "Phone9,1 with iOS:11.4, UDID:00aa."])
        self.assertTrue(lines[3].startswith(self.version_notice()))
        self.assertEqual(len(lines), 4)
        self.assertEqual([(entry["name"], entry["type"], entry["bytes"]) for entry in mail["attachments"]],
                         [("velmora.log", "mime", 23)])

    def test_sent_isKeptInTheOutboxWhole(self):
        drive = self.compose()
        body = drive.presented["body"]
        drive.do("compose", result="sent")
        self.assertIsNone(drive.presented)
        mail, = self.mails(drive, "Outbox")
        self.assertEqual((mail["Subject"], mail["From"], mail["To"], mail.get_content_type()),
                         ("Quietrix Go - velmora.log", "user@example.org", "support@velmora.com", "multipart/mixed"))
        text, attachment = mail.iter_parts()
        self.assertEqual((text.get_content_type(), text.get_content().strip()), ("text/html", body))
        self.assertEqual((attachment.get_filename(), dict(attachment.raw_items())["Content-Type"].strip()), ("velmora.log", "mime"))
        self.assertEqual(attachment.get_payload(decode=True), b"first line\nsecond line\n")

    def test_cancelledOrFailed_leavesNothingAndSaysNothing(self):
        for result in ("cancelled", "failed"):
            drive = self.compose()
            drive.do("compose", result=result)
            self.assertEqual((drive.presented, self.mails(drive, "Outbox"), self.mails(drive, "Drafts")),
                             (None, [], []))
            self.assertEqual(drive.screen["class"], "QuietrixMiscController")

    def test_saved_isADraft(self):
        drive = self.compose()
        drive.do("compose", result="saved")
        self.assertEqual((len(self.mails(drive, "Drafts")), self.mails(drive, "Outbox")), (1, []))

    def test_withoutAnAccount_saysSo(self):
        drive = self.misc(device={"languages": "de"})
        self.confirm(drive, "report")
        self.assertEqual(drive.presented, {
            "kind": "alert", "title": "Information", "message": "Es sind keine E-Mail-Accounts konfiguriert.",
            "actions": [{"title": "Schlie\u00dfen", "style": "cancel"}]})

    def test_shellsLog_isWhatIsAttached(self):
        drive = self.misc(device=self.ACCOUNT)

        def posted_and_logged():
            # A shell that is not there yet hears nothing.
            drive.do("post", name=APPLIED)
            return APPLIED in self.log(drive)
        self.wait_until(posted_and_logged)
        self.confirm(drive, "report")
        self.assertIn(APPLIED, drive.presented["attachments"][0]["preview"])

    @staticmethod
    def log(drive):
        """What the shell has written so far, which it does at its own pace."""
        try:
            with open(drive.path("/tmp/velmora.log"), encoding="utf-8") as file:
                return file.read()
        except FileNotFoundError:
            return ""

    def wait_until(self, condition):
        deadline = time.monotonic() + PATIENCE
        while not condition():
            self.assertLess(time.monotonic(), deadline, "never happened")
            os.sched_yield()

    def test_facts_areMadeUpOnceForARoot(self):
        drive = self.misc(device={"mailAccount": "user@example.org"})
        self.confirm(drive, "report")
        body = drive.presented["body"]
        drive.process.stdin.close()
        drive.process.wait(PATIENCE)
        again = self.start(root=drive.root, device={**CLOCK, "mailAccount": "user@example.org"})
        again.tap(again.row(identifier="Miscellaneous"))
        self.confirm(again, "report")
        self.assertEqual(again.presented["body"], body)
        self.assertNotIn(os.uname().nodename, body)


class Shell(MiscTest):
    def test_killedFromOutside_isBackAndTheScreensReload(self):
        drive = self.open([profile("A")], switch=True)
        children = self.children(drive)
        self.assertEqual(len(children), 1)
        self.write(drive, PROFILES, {"format": 1, "profiles": [profile("B")]})
        os.kill(children[0], signal.SIGKILL)
        drive.do("wait", event="darwinReceived", name=APPLIED, seconds=PATIENCE)
        self.assertIn("B", drive.names())
        self.assertNotEqual(self.children(drive), children)

    @staticmethod
    def children(drive):
        found = []
        for entry in os.listdir("/proc"):
            if not entry.isdigit():
                continue
            try:
                with open(f"/proc/{entry}/stat", encoding="utf-8") as file:
                    name, _, rest = file.read().partition(") ")
            except OSError:
                continue
            if name.endswith("(SpringBoard") and int(rest.split()[1]) == drive.process.pid:
                found.append(int(entry))
        return found


if __name__ == "__main__":
    main()
