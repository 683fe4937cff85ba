#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""`quietrix` beside other processes on the same root: shells, a phone with open screens, whoever writes the files:
test_together.py PROGRAM PHONE BUNDLE STORE_WRITER, the last of which may be "".
"""
import fcntl
import json
import os
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

from CommandCase import (DONE, FAILED, PATIENCE, PREFERENCES, PROFILES, SETTINGS, SWITCH, CommandTest, main, profile)
from Drive import Drive

NO_LOCK = "could not be locked"


class SeveralShells(CommandTest):
    def insist(self, *words):
        """On a machine that is busy enough a lock may not be had in time; the user then tries once more."""
        ended = self.run_(*words)
        while ended.status == FAILED and NO_LOCK in ended.errors:
            ended = self.run_(*words)
        self.assertEqual((DONE, ""), (ended.status, ended.errors))

    def test_manyAtOnce_loseNothing(self):
        self.give(profile("shared", wifiNetworks=["before"]))
        keys = ["vibrate", "playAlert", "vibrateAlert", "wakeUpScreen"]
        failures = []

        def live(number):
            try:
                self.insist("add", f"new {number}")
                self.insist("set", "shared", f"{keys[number]}=no", f"wifiNetworks+=net {number}")
                self.insist("add", f"gone {number}")
                self.insist("delete", f"gone {number}", "--yes")
                self.insist("disable", f"new {number}")
            except BaseException as failure:
                failures.append(failure)
                raise

        shells = [threading.Thread(target=live, args=(number,)) for number in range(len(keys))]
        for shell in shells:
            shell.start()
        for shell in shells:
            shell.join()
        self.assertEqual([], failures)
        stored = self.stored()
        self.assertEqual({"shared", *(f"new {number}" for number in range(len(keys)))}, set(stored))
        self.assertEqual([False] * len(keys), [stored["shared"][key] for key in keys])
        self.assertEqual({"before", *(f"net {number}" for number in range(len(keys)))},
                         set(stored["shared"]["wifiNetworks"]))
        self.assertFalse(any(stored[f"new {number}"]["enabled"] for number in range(len(keys))))

    def test_rootOfSomebodyElse_isReadAndNotChanged(self):
        self.give(profile("A"), switch=True)
        os.chmod(self.directory, 0o755)
        for folder, _, files in os.walk(self.root):
            os.chmod(folder, 0o555)
            for name in files:
                os.chmod(os.path.join(folder, name), 0o444)
        other = {"user": 65534} if os.geteuid() == 0 else {}
        if subprocess.run(["test", "-x", self.PROGRAM], check=False, **other).returncode != 0:
            self.skipTest("the program lies where nobody else can start it")

        def run(*words):
            return subprocess.run(self.arguments(*words), stdin=subprocess.DEVNULL, capture_output=True, check=False,
                                  timeout=PATIENCE, **other)

        self.assertEqual("A", json.loads(run("--json", "list").stdout)[0]["title"])
        for words in (("set", "A", "vibrate=no"), ("add", "B"), ("off",), ("reset", "--yes"), ("delete", "A", "--yes")):
            ended = run(*words)
            self.assertEqual((FAILED, b""), (ended.returncode, ended.stdout), (words, ended.stderr))
            self.assertIn(b"/var/mobile/Library/Preferences", ended.stderr)
            self.assertEqual(1, ended.stderr.count(b"\n"), ended.stderr)
        findings = {each["check"]: each["ok"] for each in json.loads(run("--json", "doctor").stdout)}
        self.assertEqual((True, False, True, True),
                         tuple(findings[check] for check in ("root", "rights", "settings file", "profiles file")))
        self.assertEqual((["A"], True), (list(self.stored()), self.read(SETTINGS)[SWITCH]))
        # What cannot be looked at is not taken for missing.
        os.chmod(self.root, 0)
        for words in (("list",), ("reset", "--yes"), ("off",), ("status",)):
            ended = run(*words)
            self.assertEqual((FAILED, True), (ended.returncode, b"Permission denied" in ended.stderr), (words, ended.stderr))
        os.chmod(self.root, 0o755)
        for folder, _, _ in os.walk(self.root):
            os.chmod(folder, 0o755)


class OpenScreens(CommandTest):
    PHONE = ""
    BUNDLE = ""

    def test_eachChange_isShownByItself(self):
        self.do("on")
        with Drive(self.PHONE, self.BUNDLE, root=self.root) as phone:
            phone.do("open")
            self.shows(phone, ["No Profiles", "No Profiles"])
            identifier = self.do("add", "Work").output.strip()
            self.shows(phone, ["Work", "No Profiles"])
            self.do("set", "Work", "title=Office")
            self.shows(phone, ["Office", "No Profiles"])
            self.do("disable", "Office")
            self.shows(phone, ["No Profiles", "Office"])
            path = os.path.join(self.directory, "all.json")
            with open(path, "w", encoding="utf-8") as file:
                json.dump([profile("Home"), profile("Train"), {"identifier": identifier, "enabled": True}], file)
            self.do("import", path)
            self.shows(phone, ["Office", "Home", "Train", "No Profiles"])
            self.do("delete", "Home", "--yes")
            self.shows(phone, ["Office", "Train", "No Profiles"])
            # The editor below the list, too.
            phone.tap(phone.row(name="Office"))
            self.do("set", "Office", "vibrate=no")
            self.until(lambda: phone.do("state") and phone.row(identifier="vibrate")["value"] is False)
            phone.back()
            self.do("reset", "--yes")
            self.shows(phone, ["No Profiles", "No Profiles"])

    def shows(self, phone, titles):
        def shown():
            phone.do("state")
            return [row["name"] for row in phone.rows if row["identifier"] == "title" or row["name"] == "No Profiles"]

        self.until(lambda: shown() == titles, shown)

    def until(self, holds, found=lambda: ""):
        deadline = time.monotonic() + PATIENCE
        while not holds():
            self.assertLess(time.monotonic(), deadline, found())


class Watcher:
    """A running `quietrix watch`, and what it has told."""

    def __init__(self, test, *options):
        self.process = test.start(*options, "watch", stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        test.addCleanup(self.close)
        # It says so when it knows what is there.
        test.assertIn("Watching", self.line(self.process.stderr))

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.process.stdout.close()
        self.process.stderr.close()

    def line(self, stream=None):
        """The next line; a watch that does not tell what it should ends the test instead of holding it up."""
        stream = stream or self.process.stdout
        deadline = threading.Timer(PATIENCE, self.process.kill)
        deadline.start()
        try:
            return stream.readline().decode()
        finally:
            deadline.cancel()

    def event(self):
        """The next one, and when and how it came put aside."""
        event = json.loads(self.line())
        event.pop("at")
        return event


class Watching(CommandTest):
    WRITER = ""

    def test_eachKindOfChange_isTold(self):
        self.do("on")
        watcher = Watcher(self, "--json")
        identifier = self.do("add", "Work").output.strip()
        added = watcher.event()
        self.assertEqual(("added", identifier), (added["event"], added["identifier"]))
        self.assertEqual([None, "Work"], added["changes"]["title"])
        self.do("disable", "Work")
        self.assertEqual({"event": "disabled", "identifier": identifier, "changes": {"enabled": [True, False]}},
                         watcher.event())
        self.do("enable", "Work")
        self.assertEqual("enabled", watcher.event()["event"])
        self.do("set", "Work", "title=Office", "vibrate=no")
        self.assertEqual({"event": "changed", "identifier": identifier,
                          "changes": {"title": ["Work", "Office"], "vibrate": [True, False]}}, watcher.event())
        self.do("off")
        self.assertEqual({"event": "disabled"}, watcher.event())
        self.do("delete", "Office", "--yes")
        deleted = watcher.event()
        self.assertEqual(("deleted", identifier, ["Office", None]),
                         (deleted["event"], deleted["identifier"], deleted["changes"]["title"]))
        self.do("add", "Next")
        self.assertEqual("added", watcher.event()["event"])
        self.do("reset", "--yes")
        self.assertEqual(["deleted", "applied"], [watcher.event()["event"] for _ in range(2)])
        watcher.process.send_signal(signal.SIGTERM)
        self.assertEqual(0, watcher.process.wait(PATIENCE))
        self.assertEqual([], os.listdir(self.path("private/var/run/notifications")))

    def test_whatOthersWriteWithoutANotification_isTold(self):
        self.give(profile("A"), switch=False)
        watcher = Watcher(self)
        self.write(PROFILES, {"format": 1, "profiles": [profile("A", vibrate=False)]})
        self.assertRegex(watcher.line(), r'^\S+T\S+Z changed "A" \(ID-A\): vibrate yes → no\n$')
        self.write(SETTINGS, {SWITCH: True})
        self.assertRegex(watcher.line(), r"^\S+ enabled\n$")
        # A file that is no good for a moment is no change.
        with open(self.path(PROFILES), "wb") as file:
            file.write(b"no list")
        self.assertIn("cannot be used", watcher.line(watcher.process.stderr))
        self.write(PROFILES, {"format": 1, "profiles": [profile("A", vibrate=False), profile("B")]})
        self.assertIn('added "B"', watcher.line())

    def test_rootThatComesAndGoes_isFollowed(self):
        watcher = Watcher(self, "--json")
        self.assertFalse(os.path.exists(self.root))
        self.do("add", "Work")
        self.assertEqual("added", watcher.event()["event"])
        shutil.rmtree(self.root)
        self.assertEqual("deleted", watcher.event()["event"])
        self.do("on")
        self.assertEqual({"event": "enabled"}, watcher.event())

    def writer(self, count):
        """Adds so many profiles, each of which it then names "renamed": by the store itself, or, where that is not at hand, by a shell."""
        if self.WRITER:
            return subprocess.Popen([self.WRITER, self.root, "w", str(count)])
        script = 'for n in $(seq "$2"); do "$0" --root "$1" set "$("$0" --root "$1" add "w $n")" title=renamed || exit; done'
        return subprocess.Popen(["bash", "-c", script, self.PROGRAM, self.root, str(count)], stdout=subprocess.DEVNULL)

    def test_thousandQuickChanges_leadToWhatIsInTheFile(self):
        # How long a disk takes is not what this is about.
        if os.path.isdir("/dev/shm"):
            memory = tempfile.mkdtemp(prefix="quietrix-command-", dir="/dev/shm")
            self.addCleanup(shutil.rmtree, memory, ignore_errors=True)
            self.root = os.path.join(memory, "phone")
        self.give(profile("first"))
        watcher = Watcher(self, "--json")
        writer = self.writer(500)
        told, titles = set(), {}
        while len(told) < 500 or any(title != "renamed" for title in titles.values()):
            event = watcher.event()
            if event["event"] == "added":
                self.assertNotIn(event["identifier"], told)
                told.add(event["identifier"])
            else:
                self.assertEqual(("changed", titles[event["identifier"]]),
                                 (event["event"], event["changes"]["title"][0]))
            titles[event["identifier"]] = event["changes"]["title"][1]
        self.assertEqual(0, writer.wait(PATIENCE))
        self.assertEqual({each["identifier"] for each in self.read(PROFILES)["profiles"]}, told | {"ID-first"})

    def test_emptyDirectory_isLeftSo_untilSomebodyMakesAPhoneOfIt(self):
        os.mkdir(self.root)
        watcher = Watcher(self)
        self.assertEqual([], os.listdir(self.root))
        self.do("on")
        self.assertTrue(self.read(SETTINGS)[SWITCH])
        watcher.close()

    def test_readerThatStopped_keepsNobodyFromEndingIt(self):
        self.give(profile("A"))
        reader, writer = os.pipe()
        self.addCleanup(os.close, reader)
        process = self.start("watch", stdout=writer, stderr=subprocess.PIPE)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        os.close(writer)
        self.assertIn(b"Watching", process.stderr.readline())
        # A line that the pipe cannot hold.
        self.give(profile("A", wifiNetworks=["n" * (fcntl.fcntl(reader, fcntl.F_GETPIPE_SZ) * 2)]))
        self.assertTrue(select.select([reader], [], [], PATIENCE)[0])
        process.send_signal(signal.SIGTERM)
        self.assertEqual(DONE, process.wait(PATIENCE))

    def test_outputThatNobodyReads_endsIt(self):
        self.give(profile("A"))
        watcher = Watcher(self)
        watcher.process.stdout.close()
        self.assertEqual(0, watcher.process.wait(PATIENCE))
        self.assertEqual(b"", watcher.process.stderr.read())


if __name__ == "__main__":
    OpenScreens.PHONE, OpenScreens.BUNDLE, Watching.WRITER = sys.argv[2:5]
    del sys.argv[2:5]
    main()
