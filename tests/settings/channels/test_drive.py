# SPDX-License-Identifier: MIT
"""The drive channel of the real program: test_drive.py PROGRAM FIXTURES [unittest arguments]."""
import datetime
import json
import os
import plistlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "drive"))
from Drive import Drive  # noqa: E402

PROGRAM = ""
FIXTURES = ""


def fixture(name):
    return os.path.join(FIXTURES, f"{name}.bundle")


class DriveTest(unittest.TestCase):
    def open(self, name="Sample", **options):
        drive = Drive(PROGRAM, fixture(name), **options)
        self.addCleanup(drive.close)
        drive.do("state")
        return drive

    def refused(self, drive, command, **fields):
        """Sends a command that must be refused and change nothing; gives its error."""
        before = drive.do("state")
        answer = drive.attempt(command, **fields)
        self.assertFalse(answer["ok"], answer)
        self.assertTrue(answer["error"])
        self.assertEqual(answer["state"]["screen"], before["screen"])
        self.assertEqual(answer["state"]["presented"], before["presented"])
        self.assertEqual(answer["state"]["revision"], before["revision"])
        return answer["error"]


class Bundles(DriveTest):
    def test_goodBundle_isOpenAboveTheList(self):
        drive = self.open()
        self.assertEqual(drive.state["protocol"], 1)
        self.assertEqual(drive.screen["stack"], ["SettingsRootController", "SampleController"])
        self.assertEqual(drive.screen["class"], "SampleController")
        self.assertEqual(drive.screen["title"], "Sample Bundle")
        self.assertEqual(drive.screen["specifier"]["name"], "Sample Bundle")
        self.assertEqual(drive.screen["bar"]["back"], {"title": "Settings", "image": None})
        self.assertEqual(drive.screen["modals"], 0)
        self.assertEqual([e["class"] for e in drive.events_of("push")], ["SampleController"])

    def test_brokenBundles_showTheReason(self):
        for name, reasons in {
            "MissingClass": ["NobodyController"],
            "WrongBase": ["LonelyObject", "PSViewController"],
            "OlderInterface": ["interface version 0"],
            "NotLoadable": ["NotLoadable.bundle", "cannot be loaded"],
            "NoExecutable": ["NoExecutable.bundle", "cannot be loaded"],
            "NoInfo": ["NoInfo.bundle"],
            "DuplicateClass": ["PSPlaceholderController"],
        }.items():
            with self.subTest(name), Drive(PROGRAM, fixture(name)) as drive:
                self.assertEqual(drive.screen["stack"], ["SettingsRootController", "BundleErrorController"])
                self.assertEqual(drive.screen["title"], "NoInfo" if name == "NoInfo" else f"{name} Bundle")
                self.assertEqual(drive.rows[1]["name"], f"/Library/PreferenceBundles/{name}.bundle")
                for reason in reasons:
                    self.assertIn(reason, drive.rows[0]["properties"]["footerText"])

    def test_bundleLink_isRenewedAtEachStart(self):
        with tempfile.TemporaryDirectory() as directory:
            root = os.path.join(directory, "phone")
            link = os.path.join(root, "Library/PreferenceBundles/Sample.bundle")
            self.open(root=root).close()
            self.assertEqual(os.path.realpath(link), os.path.realpath(fixture("Sample")))
            os.remove(link)
            os.symlink("/nowhere", link)
            drive = self.open(root=root)
            self.assertEqual(drive.screen["class"], "SampleController")
            self.assertEqual(os.path.realpath(link), os.path.realpath(fixture("Sample")))

    def test_list_opensEachInstalledBundle(self):
        with tempfile.TemporaryDirectory() as directory:
            root = os.path.join(directory, "phone")
            self.open("MissingClass", root=root).close()
            drive = self.open(root=root)
            drive.back()
            self.assertEqual(drive.screen["class"], "SettingsRootController")
            self.assertEqual(drive.screen["title"], "Settings")
            self.assertEqual(drive.names(), [None, "MissingClass Bundle", "Sample Bundle"])
            drive.tap(drive.row(name="MissingClass Bundle"))
            self.assertEqual(drive.screen["class"], "BundleErrorController")
            drive.back()
            drive.tap(drive.row(name="Sample Bundle"))
            self.assertEqual(drive.screen["class"], "SampleController")

    def test_open_opensTheBundleAnew(self):
        drive = self.open()
        key = drive.row(identifier="on")["key"]
        drive.set(drive.row(identifier="on"), False)
        drive.bar("right")
        drive.tap(drive.row(identifier="alert"))
        self.assertEqual(drive.screen["modals"], 1)
        drive.do("open")
        self.assertEqual(drive.screen["stack"], ["SettingsRootController", "SampleController"])
        self.assertIsNone(drive.presented)
        self.assertTrue(drive.row(identifier="on")["value"])
        self.assertNotEqual(drive.row(identifier="on")["key"], key)


class Rows(DriveTest):
    def test_controls_moveAsToldAndKeepTheirValue(self):
        drive = self.open()
        drive.set(drive.row(identifier="on"), False)
        drive.set(drive.row(identifier="volume"), 0.25)
        drive.set(drive.row(identifier="title"), "Neu: Grüße 😘")
        self.assertIs(drive.row(identifier="on")["value"], False)
        self.assertEqual(drive.row(identifier="volume")["value"], 0.25)
        self.assertEqual(drive.row(identifier="title")["value"], "Neu: Grüße 😘")

    def test_rowThatCannotBeActedOn_isRefused(self):
        drive = self.open()
        for command, fields in [
            ("tap", {"row": 10}), ("tap", {"row": -1}), ("tap", {"row": 0}), ("tap", {"row": 1}),
            ("tap", {"row": "1"}), ("tap", {"row": True}), ("tap", {"row": 1.5}), ("tap", {"row": 10 ** 30}), ("tap", {}),
            ("set", {"row": 1, "value": 1}), ("set", {"row": 1, "value": None}), ("set", {"row": 1}),
            ("set", {"row": 2, "value": "loud"}), ("set", {"row": 3, "value": 4}), ("set", {"row": 5, "value": True}),
            ("set", {"row": 0, "value": True}), ("set", {"row": 99, "value": True}),
            ("delete", {"row": 1}), ("delete", {"row": 4}), ("delete", {"row": -2}),
        ]:
            with self.subTest(command=command, fields=fields):
                self.refused(drive, command, **fields)

    def test_delete_removesTheRow(self):
        drive = self.open()
        drive.delete(drive.row(identifier="removable"))
        self.assertNotIn("Removable", drive.names())
        self.assertEqual(drive.events_of("remove")[0]["index"], 9)

    def test_window_boundsTheRows(self):
        drive = self.open()
        drive.do("state", **{"from": 2, "count": 3})
        self.assertEqual([row["index"] for row in drive.rows], [2, 3, 4])
        self.assertEqual(drive.screen["count"], 10)
        drive.do("state", **{"from": 9, "count": 5})
        self.assertEqual([row["index"] for row in drive.rows], [9])
        drive.do("state", **{"from": 50})
        self.assertEqual(drive.rows, [])
        drive.do("state", count=0)
        self.assertEqual(drive.rows, [])
        for fields in ({"from": -1}, {"count": "all"}, {"count": 1.5}):
            self.refused(drive, "state", **fields)
        self.assertEqual(len(drive.do("state")["screen"]["rows"]), 10)

    def test_confirmation_asksFirst(self):
        drive = self.open()
        drive.tap(drive.row(name="Erase"))
        self.assertEqual(drive.presented["kind"], "confirmation")
        self.assertEqual(drive.presented["message"], "Erase it all?")
        self.assertEqual([action["title"] for action in drive.presented["actions"]], ["Erase", "Keep"])
        drive.choose("Keep")
        self.assertEqual(drive.row(identifier="count")["value"], 0)
        drive.tap(drive.row(name="Erase"))
        drive.choose("Erase")
        self.assertEqual(drive.row(identifier="count")["value"], -1)


class Screens(DriveTest):
    def test_linkRow_opensItsScreenWithItsUserInfo(self):
        drive = self.open()
        drive.tap(drive.row(identifier="detail"))
        self.assertEqual(drive.names(), ["carried"])
        self.assertEqual(drive.screen["specifier"], {"name": "Detail", "identifier": "detail",
                                                     "userInfo": {"keys": ["key"]}})
        drive.back()
        self.assertEqual(drive.screen["class"], "SampleController")

    def test_links_areThoseOfThisScreenWhoseRowIsThere(self):
        drive = self.open()
        self.assertEqual(drive.screen["links"], [{"title": "More about it", "class": "SampleDetailController"}])
        self.refused(drive, "link", item=1)
        self.refused(drive, "link", item=-1)
        drive.do("link", item=0)
        self.assertEqual(drive.screen["title"], "More about it")
        self.assertEqual(drive.names(), ["carried"])
        self.assertEqual(drive.screen["links"], [])

    def test_missing_isWhatThisScreenListsAndHasNothingOf(self):
        drive = self.open()
        self.assertIsNone(drive.screen["missing"])
        drive.do("link", item=0)
        self.assertEqual(drive.screen["missing"], "networks")

    def test_alert_holdsEverythingElseBack(self):
        drive = self.open()
        drive.tap(drive.row(identifier="alert"))
        self.assertEqual(drive.presented, {"kind": "alert", "title": "Title", "message": "Message",
                                           "actions": [{"title": "Close", "style": "cancel"}]})
        for command, fields in [
            ("tap", {"row": 6}), ("set", {"row": 1, "value": False}), ("delete", {"row": 9}), ("edit", {"on": True}),
            ("bar", {"side": "right", "item": 0}), ("back", {}), ("link", {"item": 0}),
            ("choose", {"action": "Nothing"}), ("compose", {"result": "sent"}), ("pickTimeRow", {"row": 0}),
        ]:
            with self.subTest(command):
                self.refused(drive, command, **fields)
        drive.do("dark", on=True)
        drive.do("post", name="com.velmora.Other")
        self.assertIsNotNone(drive.presented)
        drive.choose("Close")
        self.assertIsNone(drive.presented)
        self.refused(drive, "choose", action="Close")

    def test_alertThatReplacedAnother_isNotPressedForIt(self):
        drive = self.open()
        drive.tap(drive.row(identifier="alert"))
        first, screen = drive.presented_id, drive.screen["id"]
        self.assertNotEqual(first, screen)
        drive.do("choose", action="Close", presented=first, screen=screen)
        drive.tap(drive.row(identifier="alert"))
        self.refused(drive, "choose", action="Close", presented=first)
        self.assertTrue(drive.answer["stale"])
        self.refused(drive, "choose", action="Nothing", presented=drive.presented_id)
        self.assertNotIn("stale", drive.answer)
        drive.do("choose", action="Close", presented=drive.presented_id)

    def test_screenOfThePast_isActedOnNoMore(self):
        drive = self.open()
        first = drive.screen["id"]
        drive.do("bar", side="right", item=0, screen=first)
        modal = drive.screen["id"]
        for command, fields in [("tap", {"row": 6}), ("set", {"row": 1, "value": False}), ("delete", {"row": 9}),
                                ("edit", {"on": True}), ("bar", {"side": "left", "item": 0}), ("open", {})]:
            with self.subTest(command):
                self.refused(drive, command, screen=first, **fields)
                self.assertTrue(drive.answer["stale"])
        drive.do("bar", side="left", item=0, screen=modal)
        self.assertEqual(drive.screen["id"], first)
        drive.do("open", screen=first)
        self.assertNotIn(drive.screen["id"], (first, modal))

    def test_modal_hasNoWayBackButItsOwn(self):
        drive = self.open()
        drive.bar("right", 0)
        self.assertEqual(drive.screen["modals"], 1)
        self.assertEqual(drive.screen["stack"], ["SampleController"])
        self.assertIsNone(drive.screen["bar"]["back"])
        self.assertEqual(drive.screen["bar"]["left"],
                         [{"title": None, "image": None, "system": 1, "style": 0, "action": "closeAction:"}])
        self.refused(drive, "back")
        self.refused(drive, "bar", side="left", item=1)
        self.refused(drive, "bar", side="middle", item=0)
        drive.bar("left", 0)
        self.assertEqual(drive.screen["modals"], 0)

    def test_back_endsAtTheList(self):
        drive = self.open()
        drive.back()
        self.assertIsNone(drive.screen["bar"]["back"])
        self.refused(drive, "back")

    def test_editing_isSwitchedOnEditableListsOnly(self):
        drive = self.open()
        drive.do("edit", on=True)
        self.assertTrue(drive.screen["editing"])
        drive.do("edit", on=False)
        self.assertFalse(drive.screen["editing"])
        drive.tap(drive.row(identifier="detail"))
        self.refused(drive, "edit", on=True)

    def test_pickers_areRefusedOnOtherScreens(self):
        drive = self.open()
        for command, fields in [("pickTimeRow", {"row": 0}), ("pickTime", {"time": "5:00 PM"}),
                                ("pickTone", {"identifier": None}), ("compose", {"result": "sent"})]:
            with self.subTest(command):
                self.refused(drive, command, **fields)
        self.assertIsNone(drive.screen["pane"])
        self.assertIsNone(drive.screen["tones"])


class Phone(DriveTest):
    def test_post_reachesTheScreenBeforeTheAnswer(self):
        drive = self.open()
        drive.do("post", name="com.velmora.SampleChangedNotification")
        self.assertEqual(drive.row(identifier="count")["value"], 1)
        kinds = [event["event"] for event in drive.events]
        self.assertEqual(kinds, ["darwin", "darwinReceived", "local", "reload"])
        for name in ("", "x" * 2000, 5, None):
            self.refused(drive, "post", name=name)

    def test_otherProcess_isHeardBetweenCommands(self):
        with tempfile.TemporaryDirectory() as directory:
            root = os.path.join(directory, "phone")
            drive = self.open(root=root)
            other = self.open(root=root)
            revision = drive.state["revision"]
            other.do("post", name="com.velmora.SampleChangedNotification")
            drive.do("wait", event="darwinReceived", name="com.velmora.SampleChangedNotification", seconds=30)
            self.assertEqual(drive.row(identifier="count")["value"], 1)
            self.assertGreater(drive.state["revision"], revision)
            answer = drive.attempt("wait", event="darwinReceived", seconds=0)
            self.assertFalse(answer["ok"])

    def test_wait_checksItsFields(self):
        drive = self.open()
        for fields in ({}, {"event": "local"}, {"event": "local", "seconds": -1}, {"event": 3, "seconds": 1},
                       {"event": "local", "seconds": "1"}, {"event": "local", "name": 1, "seconds": 1}):
            with self.subTest(fields=fields):
                self.refused(drive, "wait", **fields)

    def test_virtualClock_movesByAdvanceOnly(self):
        drive = self.open(device={"clock": "2026-11-20T09:00:00"})
        drive.do("advance", seconds=3600)
        for seconds in (-1, "1", None, True):
            self.refused(drive, "advance", seconds=seconds)
        self.refused(self.open(), "advance", seconds=1)

    def test_virtualClock_staysWithinTheYear9999(self):
        drive = self.open(device={"clock": "9999-12-31T23:00:00"})
        for seconds in (3600, 1e12, 1e308):
            self.assertIn("9999", self.refused(drive, "advance", seconds=seconds))
        drive.do("advance", seconds=3599.5)
        self.refused(drive, "advance", seconds=0.5)
        drive.do("advance", seconds=0.25)
        for clock in ("10000-01-01T00:00:00", "+9999-12-31T23:00:00", "99999-1-01T00:00:00"):
            process = subprocess.run([PROGRAM, "drive", "--root", "/proc/nowhere", "--bundle", fixture("Sample"), "--device",
                                      f"clock={clock}"], stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)
            self.assertEqual((process.returncode, process.stdout), (2, ""))
            self.assertIn(clock, process.stderr)

    def test_device_isWhatTheOptionsSay(self):
        device = dict(self.open().state["device"])
        device.pop("clock")
        self.assertEqual(device, {"darkMode": False, "rightToLeft": False, "language": "en", "scale": 2, "idiom": "phone",
                                  "clockRuns": True, "wifi": False})
        drive = self.open(device={"languages": "ar-EG,en", "idiom": "pad", "scale": "3", "darkMode": "true",
                                  "clock": "2026-11-20T09:00:00"})
        self.assertEqual(drive.state["device"], {"darkMode": True, "rightToLeft": True, "language": "ar-EG", "languages": ["ar-EG", "en"], "scale": 3,
                                                 "idiom": "pad", "clock": "2026-11-20T09:00:00", "clockRuns": False,
                                                 "wifi": False})
        drive.do("dark", on=False)
        self.assertFalse(drive.state["device"]["darkMode"])
        self.refused(drive, "dark", on=1)


    def test_systemClock_isTheMachinesAndItsPassingIsNoChange(self):
        drive = self.open()
        revision = drive.state["revision"]
        first = drive.state["device"]["clock"]
        self.assertLess(abs((datetime.datetime.fromisoformat(first) - datetime.datetime.now()).total_seconds()), 3600)
        deadline = time.monotonic() + 60
        while drive.do("state")["device"]["clock"] == first:
            self.assertLess(time.monotonic(), deadline)
        self.assertEqual(drive.state["revision"], revision)

    def test_virtualClock_showsInTheStateAndItsMovingIsAChange(self):
        drive = self.open(device={"clock": "2026-11-20T09:00:00"})
        revision = drive.do("state")["revision"]
        self.assertEqual(drive.state["device"]["clock"], "2026-11-20T09:00:00")
        drive.do("advance", seconds=3661)
        self.assertEqual(drive.state["device"]["clock"], "2026-11-20T10:01:01")
        self.assertGreater(drive.state["revision"], revision)

    def test_wifi_isOnWhileThePhoneHasNetworks(self):
        with tempfile.TemporaryDirectory() as directory:
            path = os.path.join(directory, "networks.plist")

            def write(networks):
                with open(path + ".new", "wb") as file:
                    plistlib.dump([{"SSID": name} for name in networks], file)
                os.replace(path + ".new", path)

            write(["Office"])
            drive = self.open(device={"networks": path})
            self.assertTrue(drive.state["device"]["wifi"])
            write([])
            self.assertFalse(drive.do("state")["device"]["wifi"])
            self.assertEqual(drive.errors(), "")


class Find(DriveTest):
    def found(self, drive, text):
        self.assertTrue(drive.attempt("find", text=text)["ok"], drive.answer)
        return [row["name"] for row in drive.answer["found"]]

    def test_rows_areFoundByAPartOfTheirNameWhateverTheCase(self):
        drive = self.open()
        rows = drive.do("state")["screen"]["rows"]
        named = [row for row in rows if row["name"] and "a" in row["name"].lower()]
        self.assertGreater(len(named), 1)
        self.assertEqual(self.found(drive, "A"), [row["name"] for row in named])
        self.assertEqual(drive.answer["found"], [{key: row[key] for key in ("key", "index", "name", "row")} for row in named])
        self.assertEqual(self.found(drive, "no row has this"), [])

    def test_answer_describesNoRowUnlessItIsAskedTo(self):
        drive = self.open()
        revision = drive.state["revision"]
        self.found(drive, "a")
        self.assertEqual(drive.rows, [])
        self.assertGreater(drive.screen["count"], 0)
        drive.attempt("find", text="a", **{"from": 1, "count": 2})
        self.assertEqual([row["index"] for row in drive.rows], [1, 2])
        self.assertEqual(drive.do("state")["revision"], revision)

    def test_whilePresented_rowsAreFoundToo(self):
        drive = self.open()
        drive.tap(drive.row(identifier="alert"))
        self.assertIsNotNone(drive.presented)
        self.assertGreater(len(self.found(drive, "a")), 0)
        self.assertIsNotNone(drive.presented)

    def test_badTexts_areRefused(self):
        drive = self.open()
        for fields in ({}, {"text": ""}, {"text": 1}, {"text": None}):
            with self.subTest(fields=fields):
                revision = drive.do("state")["revision"]
                answer = drive.attempt("find", **fields)
                self.assertFalse(answer["ok"])
                self.assertIn("text", answer["error"])
                self.assertNotIn("found", answer)
                self.assertEqual(answer["state"]["revision"], revision)


class Lines(DriveTest):
    def test_badLines_areAnsweredAndChangeNothing(self):
        drive = self.open()
        screen = drive.screen
        for line in (b"", b"   ", b"nonsense", b"[]", b"7", b"null", b'"state"', b"{", b'{"do":"state"}}', b"{}",
                     b'{"do":7}', b'{"do":"fly"}', b'{"do":"state","id":[]}', b'{"do":"state","id":true}',
                     b'\xff\xfe', b'{"do":"\xc3\x28"}', b'{"do":"state\x00"}', b'{"do":"tap","row":1e999}',
                     b'{"do":' + b"[" * 5000 + b"]" * 5000 + b"}", b'{"do":"state","x":"' + b"a" * (1 << 20) + b'"}',
                     b"x" * (5 << 20)):
            with self.subTest(line=line[:40]):
                drive.send(line + b"\n")
                answer = drive.receive()
                self.assertFalse(answer["ok"])
                self.assertTrue(answer["error"])
                self.assertEqual(drive.screen, screen)
        drive.do("state")

    def test_id_comesBackAlsoWithErrors(self):
        drive = self.open()
        for identifier in ("a", "", 7, -1, 2.5, 18446744073709551615):
            self.assertEqual(drive.attempt("state", id=identifier)["id"], identifier)
            self.assertEqual(drive.attempt("fly", id=identifier)["id"], identifier)
        self.assertNotIn("id", drive.attempt("state"))

    def test_eachCommand_hasOneAnswerInOrder(self):
        drive = self.open()
        drive.send(b"".join(json.dumps({"do": "state", "id": i}).encode() + b"\n" for i in range(200)))
        self.assertEqual([drive.receive()["id"] for _ in range(200)], list(range(200)))

    def test_lastLineWithoutBreak_isACommand(self):
        drive = self.open()
        drive.send(b'{"do":"state","id":"last"}')
        drive.process.stdin.close()
        self.assertEqual(drive.receive()["id"], "last")
        self.assertEqual(drive.process.wait(60), 0)

    def test_endOfInput_endsWithStatusZero(self):
        drive = self.open()
        drive.process.stdin.close()
        self.assertEqual(drive.process.wait(60), 0)
        self.assertEqual(os.read(drive.process.stdout.fileno(), 1), b"")

    def test_readerGone_endsQuietly(self):
        drive = self.open()
        drive.process.stdout.close()
        drive.send(b'{"do":"state"}\n')
        self.assertEqual(drive.process.wait(60), 0)
        self.assertEqual(drive.errors(), "")

    def test_notificationSocket_isGoneAfterTheEnd(self):
        drive = self.open()
        sockets = drive.path("/private/var/run/notifications")
        # The application's and its system shell's.
        self.assertEqual(len([n for n in os.listdir(sockets) if n.endswith(".socket")]), 2)
        drive.process.stdin.close()
        self.assertEqual(drive.process.wait(60), 0)
        self.assertEqual(os.listdir(sockets), [])

    def test_killedProcess_leavesTheRootUsable(self):
        with tempfile.TemporaryDirectory() as directory:
            root = os.path.join(directory, "phone")
            drive = self.open(root=root)
            drive.process.send_signal(signal.SIGKILL)
            drive.process.wait()
            self.assertEqual(self.open(root=root).screen["class"], "SampleController")


class Options(unittest.TestCase):
    def run_program(self, *arguments, environment=None):
        return subprocess.run([PROGRAM, *arguments], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              timeout=60, env=environment)

    def rejected(self, *arguments):
        result = self.run_program(*arguments)
        self.assertEqual(result.returncode, 2, result)
        self.assertEqual(result.stdout, "")
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
        return result.stderr

    def test_wrongUse_isOneLineAndStatusTwo(self):
        with tempfile.TemporaryDirectory() as directory:
            root = os.path.join(directory, "phone")
            good = ("--root", root, "--bundle", fixture("Sample"))
            self.rejected()
            self.rejected("fly")
            self.rejected("drive", "--nonsense")
            self.rejected("drive", "--port", "1", *good)
            self.rejected("serve", "--port", "99999", *good)
            self.rejected("drive", "--root")
            self.rejected("record", *good)
            self.rejected("replay")
            self.rejected("replay", "--root", root, "file")
            self.assertIn("bogus", self.rejected("bogus"))
            self.assertIn("/nowhere", self.rejected("drive", "--root", root, "--bundle", "/nowhere"))
            self.rejected("drive", "--root", root, "--bundle", os.path.join(fixture("Sample"), "Info.plist"))
            self.assertIn("colour", self.rejected("drive", *good, "--device", "colour=red"))
            self.assertIn("scale", self.rejected("drive", *good, "--device", "scale=big"))
            self.assertIn("clock", self.rejected("drive", *good, "--device", "clock=2026-13-40T09:00:00"))
            self.rejected("drive", *good, "--device", "darkMode")
            self.assertFalse(os.path.exists(root))

    def test_rootThatCannotBeUsed_isOneLineAndStatusTwo(self):
        with tempfile.TemporaryDirectory() as directory:
            file = os.path.join(directory, "file")
            open(file, "w").close()
            for root in (file, os.path.join(file, "phone"), "/proc/quietrix/phone"):
                with self.subTest(root):
                    self.assertIn(os.path.basename(file) if file in root else "/proc",
                                  self.rejected("drive", "--root", root, "--bundle", fixture("Sample")))

    def test_helpAndVersion_areStatusZero(self):
        for arguments in (["--help"], ["drive", "--help"], ["serve", "--help"], ["record", "--help"]):
            result = self.run_program(*arguments)
            self.assertEqual(result.returncode, 0)
            self.assertIn("Usage", result.stdout)
            for option in ("--root", "--bundle", "--device", "languages="):
                self.assertIn(option, result.stdout)
        self.assertIn("--update", self.run_program("replay", "--help").stdout)
        for arguments in (["--version"], ["drive", "--version"], ["serve", "--version"], ["replay", "--version"]):
            result = self.run_program(*arguments)
            self.assertEqual(result.returncode, 0)
            self.assertRegex(result.stdout, r"^quietrix-settings \d+\.\d+\.\d+\n$")

    def test_defaultRoot_isInTheUsersDataDirectory(self):
        with tempfile.TemporaryDirectory() as directory:
            environment = {**os.environ, "XDG_DATA_HOME": directory}
            self.assertEqual(self.run_program("drive", "--bundle", fixture("Sample"), environment=environment).returncode, 0)
            self.assertTrue(os.path.isdir(os.path.join(directory, "quietrix/phone/Library/PreferenceBundles")))
            del environment["XDG_DATA_HOME"]
            environment["HOME"] = os.path.join(directory, "home")
            self.assertEqual(self.run_program("drive", "--bundle", fixture("Sample"), environment=environment).returncode, 0)
            self.assertTrue(os.path.isdir(os.path.join(directory, "home/.local/share/quietrix/phone")))


if __name__ == "__main__":
    PROGRAM, FIXTURES = sys.argv[1:3]
    result = unittest.main(argv=[sys.argv[0], *sys.argv[3:]], exit=False).result
    sys.exit(0 if result.wasSuccessful() and result.testsRun > 0 else 1)
