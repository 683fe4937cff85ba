# SPDX-License-Identifier: MIT
"""The system shell as a process: test_springboard.py SPRINGBOARD PROGRAM BUNDLE [unittest arguments]."""
import os
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "drive"))
from Drive import Drive  # noqa: E402

SHELL = PROGRAM = BUNDLE = ""
PREFIX = "com.velmora."
APPLIED = PREFIX + "ProfileAppliedStateChangedNotification"
OBSERVED = [PREFIX + name for name in (
    "QuietrixEnabledOrDisableNotification", "ProfileAddedNotification", "ProfileChangedNotification", "ProfileDeletedNotification",
    "ProfileAppliedStateChangedNotification")]
TIME_LIMIT = 60


def ended(process_id):
    """Waits for the end of a process that need not be a child; false when it does not come."""
    try:
        descriptor = os.pidfd_open(process_id)
    except ProcessLookupError:
        return True
    try:
        return bool(select.select([descriptor], [], [], TIME_LIMIT)[0])
    finally:
        os.close(descriptor)


def children_of(process_id):
    with open(f"/proc/{process_id}/task/{process_id}/children", encoding="ascii") as file:
        return [int(each) for each in file.read().split()]


def names_in(path):
    with open(path, encoding="utf-8") as file:
        lines = file.read().splitlines()
    for line in lines:
        assert re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ \S+", line), line
    return [line.split()[1] for line in lines]


class Shell(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="quietrix-springboard-")
        self.addCleanup(shutil.rmtree, self.directory, ignore_errors=True)
        self.root = os.path.join(self.directory, "phone")
        self.applications = 0

    def application(self, **options):
        drive = Drive(PROGRAM, BUNDLE, root=self.root, **options)
        self.addCleanup(drive.close)
        drive.do("state")
        self.applications += 1
        self.waitForSockets(drive, 2 * self.applications)
        return drive

    def waitForSockets(self, drive, count):
        """Each application and each shell has one, and hears what is posted as soon as it is there."""
        for _ in range(TIME_LIMIT * 100):
            if len(self.sockets()) >= count:
                return
            drive.attempt("wait", event="never", seconds=0.01)
        self.fail(f"there are {len(self.sockets())} sockets, not {count}")

    def sockets(self):
        return os.listdir(os.path.join(self.root, "private/var/run/notifications"))

    def shell_of(self, drive):
        children = children_of(drive.process.pid)
        self.assertEqual(len(children), 1)
        with open(f"/proc/{children[0]}/comm", encoding="utf-8") as file:
            self.assertEqual(file.read().strip(), "SpringBoard")
        return children[0]

    def waitForNames(self, drive, expected):
        """Waits until the log holds the names: each is written by the shell's own process, after it was posted here."""
        names = []
        for _ in range(TIME_LIMIT * 100):
            names = names_in(drive.path("/tmp/velmora.log")) if os.path.exists(drive.path("/tmp/velmora.log")) else []
            if sorted(names) == sorted(expected):
                return
            drive.attempt("wait", event="never", seconds=0.01)
        self.fail(f"the log holds {names}, not {expected}")

    def test_start_isToldInTheFirstAnswer(self):
        drive = self.application()
        self.assertEqual([(event["name"], event["state"]) for event in drive.events_of("process")],
                         [("SpringBoard", "started")])
        self.shell_of(drive)

    def test_observedNames_areLoggedAndOthersAreNot(self):
        drive = self.application()
        drive.do("post", name="com.velmora.Other")
        for name in OBSERVED:
            drive.do("post", name=name)
        self.waitForNames(drive, OBSERVED)

    def test_killedShell_isThereAgainAndTellsTheScreens(self):
        drive = self.application()
        before = self.shell_of(drive)
        os.kill(before, signal.SIGKILL)
        seen = []
        while APPLIED not in [event["name"] for event in seen]:
            drive.do("wait", event="darwinReceived", name=APPLIED, seconds=TIME_LIMIT)
            seen += [event for event in drive.events if event["event"] in ("process", "darwinReceived")]
        self.assertEqual([event.get("state", event["name"]) for event in seen], ["ended", "started", APPLIED])
        self.assertNotEqual(self.shell_of(drive), before)
        self.waitForNames(drive, [APPLIED])

    def test_applicationThatIsKilled_leavesNoShell(self):
        drive = self.application()
        shell = self.shell_of(drive)
        drive.process.kill()
        self.assertTrue(ended(shell), "the shell has outlived its application")

    def test_applicationThatIsKilledWhileTheShellIsStopped_leavesNoShell(self):
        drive = self.application()
        shell = self.shell_of(drive)
        os.kill(shell, signal.SIGSTOP)
        drive.process.kill()
        self.assertTrue(ended(shell), "the shell has outlived its application")

    def test_applicationThatEnds_leavesNoShellAndNoSocket(self):
        drive = self.application()
        shell = self.shell_of(drive)
        drive.close()
        self.assertEqual(drive.process.returncode, 0)
        self.assertRaises(ProcessLookupError, os.kill, shell, 0)
        self.assertEqual(self.sockets(), [])

    def test_twoApplicationsOnOneRoot_haveAShellEach(self):
        one, two = self.application(), self.application()
        self.assertNotEqual(self.shell_of(one), self.shell_of(two))
        one.do("post", name=OBSERVED[0])
        self.waitForNames(one, [OBSERVED[0]] * 2)

    def test_missingProgram_isToldOnceAndTheApplicationWorks(self):
        tree = os.path.join(self.directory, "tree")
        os.makedirs(os.path.join(tree, "bin"))
        program = shutil.copy(PROGRAM, os.path.join(tree, "bin"))
        os.symlink(os.path.join(os.path.dirname(os.path.dirname(PROGRAM)), "share"), os.path.join(tree, "share"))
        drive = Drive(program, BUNDLE, root=self.root)
        self.addCleanup(drive.close)
        drive.do("state")
        self.assertEqual(drive.events_of("process"), [])
        self.assertEqual([event for event in drive.events_of("log") if "libexec/quietrix/SpringBoard" in event["text"]],
                         drive.events_of("log"))
        self.assertEqual(len(drive.events_of("log")), 1)
        self.assertEqual(children_of(drive.process.pid), [])

    def test_programByItself_observesUntilItsInputEnds(self):
        process = subprocess.Popen([SHELL, self.root], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        try:
            self.assertEqual(process.stdout.readline(), b"ready\n")
            process.stdin.close()
            self.assertEqual(process.wait(TIME_LIMIT), 0)
        finally:
            process.kill()
            process.wait()
            process.stdout.close()

    def test_programWhoseApplicationIsGoneAlready_leavesNoTrace(self):
        read_end, write_end = os.pipe()
        os.close(write_end)
        try:
            done = subprocess.run([SHELL, self.root], stdin=read_end, capture_output=True, timeout=TIME_LIMIT)
        finally:
            os.close(read_end)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        self.assertFalse(os.path.exists(self.root))

    def test_programWithBadArguments_saysHowItIsUsed(self):
        for arguments in ([], [self.root, "--other"], [self.root, "--restarted", "more"]):
            with self.subTest(arguments):
                done = subprocess.run([SHELL, *arguments], capture_output=True, timeout=TIME_LIMIT, stdin=subprocess.DEVNULL)
                self.assertEqual((done.returncode, done.stdout), (2, b""))
                self.assertEqual(done.stderr.count(b"\n"), 1)


if __name__ == "__main__":
    SHELL, PROGRAM, BUNDLE = (os.path.abspath(sys.argv.pop(1)) for _ in range(3))
    unittest.main()
