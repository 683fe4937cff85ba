# SPDX-License-Identifier: MIT
"""The root's files when they are damaged, taken away, or looked at by others: test_files.py PROGRAM BUNDLE
[unittest arguments]."""
import fcntl
import os
import plistlib
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from QuietrixCase import (APPLIED, PATIENCE, PROFILES, SETTINGS, SWITCH, QuietrixTest, main, profile)  # noqa: E402

NOBODY = 65534
KILLS = 150


class FilesTest(QuietrixTest):
    def root(self):
        """A directory for a root of several programs, one after the other or at the same time."""
        directory = tempfile.mkdtemp(prefix="quietrix-files-")
        self.addCleanup(shutil.rmtree, directory, ignore_errors=True)
        return os.path.join(directory, "phone")

    def end(self, drive):
        drive.process.stdin.close()
        self.assertEqual(drive.process.wait(PATIENCE), 0)

    @staticmethod
    def logged(drive):
        return [event["text"] for event in drive.events_of("log")]


class SettingsFile(FilesTest):
    def damaged(self, content):
        root = self.root()
        self.end(self.start(root=root))
        with open(os.path.join(root, SETTINGS.lstrip("/")), "wb") as file:
            file.write(content)
        return root

    def put_aside(self, drive):
        directory, name = os.path.split(drive.path(SETTINGS))
        found = []
        for entry in sorted(os.listdir(directory)):
            if entry.startswith(name + ".damaged-"):
                with open(os.path.join(directory, entry), "rb") as file:
                    found.append(file.read())
        return found

    def test_emptyOrCut_isPutAsideAndTheSwitchWorks(self):
        whole = plistlib.dumps({SWITCH: True}, fmt=plistlib.FMT_BINARY)
        for content in (b"", whole[:-1], whole[:20], b"garbage"):
            with self.subTest(content):
                drive = self.start(root=self.damaged(content))
                line, = self.logged(drive)
                self.assertIn("com.velmora.quietrix.plist.damaged-", line)
                self.assertEqual(self.put_aside(drive), [content])
                self.assertEqual((drive.rows[1]["value"], self.read(drive, SETTINGS)), (False, {SWITCH: False}))
                drive.set(1, True)
                self.assertEqual(self.read(drive, SETTINGS), {SWITCH: True})
                self.end(drive)
                again = self.start(root=drive.root)
                self.assertEqual((again.rows[1]["value"], self.logged(again), len(self.put_aside(again))), (True, [], 1))

    def test_missing_staysMissing(self):
        root = self.root()
        self.end(self.start(root=root))
        os.unlink(os.path.join(root, SETTINGS.lstrip("/")))
        drive = self.start(root=root)
        drive.set(1, True)
        self.assertFalse(os.path.exists(drive.path(SETTINGS)))

    def test_movedSwitch_staysTheSameFile(self):
        drive = self.start()
        before = os.stat(drive.path(SETTINGS))
        drive.set(1, True)
        after = os.stat(drive.path(SETTINGS))
        self.assertEqual((after.st_ino, after.st_size), (before.st_ino, before.st_size))

    def kill_often(self, count, failures):
        """Moves the switch to and fro, and kills the program in the middle of that, each time at another instant."""
        root = self.root()
        settings = os.path.join(root, SETTINGS.lstrip("/"))
        moves = b"".join(b'{"do":"set","row":1,"value":%s}\n' % value for value in (b"true", b"false") * 20)
        for number in range(count):
            process = subprocess.Popen([self.PROGRAM, "drive", "--root", root, "--bundle", self.BUNDLE],
                                       stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            try:
                process.stdin.write(b'{"do":"state"}\n' + moves)
                process.stdin.flush()
                process.stdout.readline()
                # Which step of a move is hit does not matter to what must hold.
                time.sleep(number * 0.02 / count)
            finally:
                process.kill()
                process.wait()
                process.stdin.close()
                process.stdout.close()
            with open(settings, "rb") as file:
                content = file.read()
            try:
                good = isinstance(plistlib.loads(content)[SWITCH], bool)
            except Exception:  # whatever is wrong with it
                good = False
            if not good:
                failures.append((number, content))
                return
        drive = self.start(root=root)
        for value in (True, False, True):
            drive.set(1, value)
            if self.read(drive, SETTINGS) != {SWITCH: value}:
                failures.append((value, "the switch is dead"))
        if self.put_aside(drive):
            failures.append("a file was put aside")

    def test_killedWhileTheSwitchIsMoved_isNeverEmptyOrCutAndTheSwitchGoesOn(self):
        failures = []
        lanes = [threading.Thread(target=self.kill_often, args=(KILLS // 2, failures)) for _ in range(2)]
        for lane in lanes:
            lane.start()
        for lane in lanes:
            lane.join()
        self.assertEqual(failures, [])

    def test_programsThatMoveTheSwitchAtTheSameTime_areSeenToWriteWholeFiles(self):
        one = self.start()
        two = self.start(root=one.root)
        over = threading.Event()
        seen = []

        def look():
            while not over.is_set():
                with open(one.path(SETTINGS), "rb") as file:
                    seen.append(file.read())

        reader = threading.Thread(target=look)
        reader.start()
        try:
            for number in range(100):
                for drive in (one, two):
                    drive.send(b'{"do":"set","row":1,"value":%s}\n' % (b"true" if number % 2 else b"false"))
                for drive in (one, two):
                    self.assertTrue(drive.receive()["ok"])
        finally:
            over.set()
            reader.join()
        self.assertGreater(len(seen), 0)
        self.assertEqual({type(plistlib.loads(content)[SWITCH]) for content in seen}, {bool})


class RootTakenAway(FilesTest):
    def hears(self, drive, other):
        """Whether what the one posts reaches the other; asked once it listens where the one posts."""
        folder = drive.path("/private/var/run/notifications")
        for _ in range(PATIENCE * 100):
            if os.path.isdir(folder) and len(os.listdir(folder)) >= 4:
                break
            drive.attempt("wait", event="never", seconds=0.01)
        drive.do("post", name="com.velmora.Other")
        self.assertEqual(len(drive.events_of("darwinReceived")), 1)
        other.do("wait", event="darwinReceived", name="com.velmora.Other", seconds=PATIENCE)

    def test_notificationsFolderMadeAnew_isHeardByEverybody(self):
        one = self.start()
        two = self.start(root=one.root)
        self.hears(one, two)
        os.rename(one.path("/private/var/run/notifications"), one.path("/aside"))
        self.hears(one, two)
        self.hears(two, one)

    def test_rootMadeAnew_isFilledByTheNextProgramAndHeardByTheOld(self):
        root = self.root()
        old = self.start(root=root)
        os.rename(root, root + "-aside")
        os.mkdir(root)
        old.do("post", name=APPLIED)
        new = self.start(root=root)
        self.assertEqual(self.read(new, SETTINGS), {SWITCH: False})
        self.hears(new, old)
        self.hears(old, new)


class OtherUsers(FilesTest):
    def modes_below(self, root):
        found = {}
        for directory, folders, files in os.walk(root):
            for name in folders + files:
                path = os.path.join(directory, name)
                status = os.lstat(path)
                if not stat.S_ISLNK(status.st_mode):
                    found[os.path.relpath(path, root)] = stat.S_IMODE(status.st_mode)
        return found

    def test_everythingMade_isForItsOwnerOnly(self):
        umask = os.umask(0)
        self.addCleanup(os.umask, umask)
        environment = {key: value for key, value in os.environ.items() if key not in ("DISPLAY", "WAYLAND_DISPLAY")}
        drive = self.start(root=self.root(), device={"mailAccount": "user@example.org"}, environment=environment)
        drive.set(1, True)
        drive.bar("right", 0)
        drive.bar("right", 0)
        self.assertEqual(len(self.read(drive, PROFILES)["profiles"]), 1)
        drive.tap(drive.row(name="Miscellaneous"))
        drive.tap(drive.row(identifier="report"))
        drive.choose("Send Now")
        drive.do("compose", result="sent")
        modes = self.modes_below(drive.root)
        for part in ("velmora.log", "Outbox/", ".locks/", "notifications/", "profiles.plist", "device-facts.plist"):
            self.assertTrue([path for path in modes if part in path], part)
        self.assertEqual({path: oct(mode) for path, mode in modes.items() if mode & 0o077}, {})

    @unittest.skipIf(os.geteuid() != 0, "only the superuser can become another user")
    def test_strangerWhoLocksWhateverCanBeRead_holdsUpNobody(self):
        root = self.root()
        os.chmod(os.path.dirname(root), 0o755)
        drive = self.open([profile("Work")], switch=True, root=root)
        drive.tap(drive.row(name="Work"))
        drive.set(drive.row(name="Vibrate"), True)
        self.end(drive)
        subprocess.run(["chmod", "-R", "a+rX", root], check=True)
        open(os.path.join(root, "var/mobile/Library/Preferences/.com.velmora.quietrix.profiles.plist.lock"), "w",
             encoding="utf-8").close()
        paths = [root] + [os.path.join(directory, name) for directory, folders, files in os.walk(root)
                          for name in folders + files]
        self.assertGreater(self.strange_locks(paths), 10)
        drive = self.start(root=root)
        drive.set(1, False)
        self.assertIs(self.read(drive, SETTINGS)[SWITCH], False)
        drive.set(1, True)
        drive.tap(drive.row(name="Work"))
        drive.set(drive.row(name="Vibrate"), False)
        self.assertIsNone(drive.presented)
        self.assertIs(self.read(drive, PROFILES)["profiles"][0]["vibrate"], False)
        self.assertEqual(self.logged(drive), [])

    @unittest.skipIf(os.geteuid() != 0, "only the superuser can become another user")
    def test_strangerWhoLocksAnEmptyRoot_holdsUpNoFirstStart(self):
        root = self.root()
        os.chmod(os.path.dirname(root), 0o755)
        os.mkdir(root, 0o755)
        self.assertEqual(self.strange_locks([root]), 1)
        self.assertEqual(self.read(self.start(root=root), SETTINGS), {SWITCH: False})

    def strange_locks(self, paths):
        """Has another user hold every lock that it can get, to the end of the test; gives how many files it opened."""
        result, told = os.pipe()
        stranger = os.fork()
        if stranger == 0:
            os.setgroups([])
            os.setgid(NOBODY)
            os.setuid(NOBODY)
            held = []
            for path in paths:
                try:
                    held.append(os.open(path, os.O_RDONLY | os.O_NONBLOCK))
                except OSError:
                    continue
                for lock, kind in ((fcntl.flock, fcntl.LOCK_EX), (fcntl.lockf, fcntl.LOCK_SH)):
                    try:
                        lock(held[-1], kind | fcntl.LOCK_NB)
                    except OSError:
                        pass
            os.write(told, b"%d\n" % len(held))
            while True:
                signal.pause()
        self.addCleanup(os.waitpid, stranger, 0)
        self.addCleanup(os.kill, stranger, signal.SIGKILL)
        os.close(told)
        with os.fdopen(result) as answer:
            return int(answer.readline())


if __name__ == "__main__":
    main()
