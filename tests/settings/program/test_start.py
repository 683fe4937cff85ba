# SPDX-License-Identifier: MIT
"""Starts under hard conditions: test_start.py PROGRAM FIXTURES [unittest arguments]."""
import os
import resource
import subprocess
import sys
import tempfile
import unittest

PROGRAM = ""
FIXTURES = ""
TIME_LIMIT = 60
# A sanitizer's look for leaks at the end needs processes and descriptors of its own.
ENVIRONMENT = {**os.environ, "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0"}
KIBIBYTE = 1024
MEBIBYTE = 1024 * 1024


class StartTest(unittest.TestCase):
    def start(self, channel="drive", redirect="", limits=(), input=b"", arguments=None):
        """Runs the program to its end; `redirect` is the shell's."""
        with tempfile.TemporaryDirectory() as directory:
            if arguments is None:
                arguments = [channel, "--root", os.path.join(directory, "phone"), "--bundle",
                             os.path.join(FIXTURES, "Sample.bundle")]
            command = [PROGRAM, *arguments]
            if redirect:
                command = ["/bin/sh", "-c", f'exec "$@" {redirect}', "sh", *command]

            def limit():
                for kind, value in limits:
                    resource.setrlimit(kind, (value, value))

            return subprocess.run(command, input=input, capture_output=True, preexec_fn=limit, timeout=TIME_LIMIT,
                                  env=ENVIRONMENT)

    def refused(self, result):
        self.assertEqual((result.returncode, result.stdout), (2, b""), result)
        self.assertEqual(result.stderr.count(b"\n"), 1, result.stderr)
        self.assertTrue(result.stderr.startswith(b"quietrix-settings: "), result.stderr)
        return result.stderr.decode()


class StandardDescriptors(StartTest):
    def test_driveWithoutInput_endsAtOnceWithStatusZero(self):
        for redirect in ("<&-", "<&- 2>&-"):
            result = self.start(redirect=redirect)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (0, b"", b""))

    def test_driveWithoutOutput_saysSo(self):
        for redirect in (">&-", ">/dev/full"):
            result = self.start(redirect=redirect, input=b'{"do":"state"}\n')
            self.assertEqual(result.returncode, 1)
            self.assertEqual(result.stderr.count(b"\n"), 1, result.stderr)

    def test_driveWithoutErrorOutput_answers(self):
        result = self.start(redirect="2>&-", input=b'{"do":"state"}\n{"do":"state"}\n')
        self.assertEqual((result.returncode, result.stdout.count(b"\n")), (0, 2))

    def test_driveWithNothing_ends(self):
        result = self.start(redirect="<&- >&- 2>&-")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, b"", b""))

    def test_serveThatCannotPrintItsAddress_saysSoAndEnds(self):
        for redirect in (">&-", ">/dev/full", "<&- >&-"):
            self.assertIn("The address could not be printed: ", self.refused(self.start("serve", redirect)))


    def test_resultThatCannotBePrinted_isToldAndStatus2(self):
        with tempfile.TemporaryDirectory() as directory:
            bundle = os.path.join(FIXTURES, "Sample.bundle")
            recording = os.path.join(directory, "short.rec")
            done = self.start(arguments=["record", recording, "--root", os.path.join(directory, "phone"), "--bundle", bundle])
            self.assertEqual(done.returncode, 0, done.stderr)
            for arguments in (["--help"], ["--version"], ["check", bundle], ["check", "--json", bundle],
                              ["explore", bundle, "--steps", "5", "--seed", "1"], ["replay", "--bundle", bundle, recording]):
                for redirect in (">&-", ">/dev/full"):
                    with self.subTest(arguments=arguments, redirect=redirect):
                        self.assertIn("The result could not be printed: ",
                                      self.refused(self.start(redirect=redirect, arguments=arguments)))


class Arguments(StartTest):
    def test_wrongNumber_isToldWithWhatMayBe(self):
        for option, text, reason in (("--port", "abc", "a port, a whole number from 0 to 65535"),
                                     ("--port", "65536", "a port, a whole number from 0 to 65535"),
                                     ("--idle", "0", "a number of minutes from 0.001 to 525600")):
            told = self.refused(self.start(arguments=["serve", option, text]))
            self.assertEqual(told, f'quietrix-settings: {option}: "{text}" is not {reason}\n')

    def test_noCommand_tellsThose(self):
        for arguments in ([], ["dirve"]):
            self.assertIn("drive, serve, open, record, replay, view, check or explore.",
                          self.refused(self.start(arguments=arguments)))


class Limits(StartTest):
    def least_descriptors(self):
        """With fewer the dynamic loader cannot open the program's libraries, or a sanitizer not look at the memory."""
        for count in range(4, 10):
            if self.start(arguments=["--version"], limits=[(resource.RLIMIT_NOFILE, count)]).returncode == 0:
                return count
        return self.fail("the program does not even tell its version")

    def test_fewDescriptors_areToldOrEnough(self):
        statuses = set()
        for count in range(self.least_descriptors(), 64):
            with self.subTest(count):
                result = self.start(limits=[(resource.RLIMIT_NOFILE, count)])
                statuses.add(result.returncode)
                if result.returncode != 0:
                    self.assertIn("Too few files can be open", self.refused(result))
                else:
                    self.assertEqual(result.stderr, b"")
        self.assertEqual(statuses, {0, 2})

    def test_serveWithFewDescriptors_isToldToo(self):
        self.refused(self.start("serve", limits=[(resource.RLIMIT_NOFILE, 20)]))

    def loads_with(self, bytes):
        return self.start(arguments=["--version"], limits=[(resource.RLIMIT_AS, bytes)]).returncode == 0

    def test_littleMemory_isToldOrEnough(self):
        if not self.loads_with(1024 * MEBIBYTE):
            self.skipTest("a build with sanitizers reserves more memory than can be limited")
        # What the libraries need before the program begins is the dynamic loader's to tell.
        least, enough = 0, 1024 * MEBIBYTE
        while enough - least > 64 * KIBIBYTE:
            middle = (least + enough) // 2
            least, enough = (least, middle) if self.loads_with(middle) else (middle, enough)
        statuses = []
        for bytes in [enough + step * 512 * KIBIBYTE for step in range(16)] + \
                     [enough + step * 16 * MEBIBYTE for step in range(1, 12)]:
            with self.subTest(bytes):
                result = self.start(limits=[(resource.RLIMIT_AS, bytes)])
                statuses.append(result.returncode)
                if result.returncode != 0:
                    self.assertIn("too little memory", self.refused(result))
                else:
                    self.assertEqual(result.stderr, b"")
        self.assertEqual((statuses[0], statuses[-1]), (2, 0))

    @unittest.skipIf(os.geteuid() != 0, "only the superuser can become another user, whose processes are limited")
    def test_noProcesses_areTold(self):
        with tempfile.TemporaryDirectory() as directory:
            os.chmod(directory, 0o777)

            def become_another():
                resource.setrlimit(resource.RLIMIT_NPROC, (0, 0))
                os.setgroups([])
                os.setgid(65534)
                os.setuid(65534)

            try:
                result = subprocess.run([PROGRAM, "drive", "--root", os.path.join(directory, "phone"), "--bundle",
                                         os.path.join(FIXTURES, "Sample.bundle")], input=b"", capture_output=True,
                                        preexec_fn=become_another, timeout=TIME_LIMIT, env=ENVIRONMENT)
            except PermissionError:
                self.skipTest("another user cannot reach the program")
            self.assertIn("temporarily unavailable", self.refused(result))


if __name__ == "__main__":
    PROGRAM, FIXTURES = sys.argv[1:3]
    result = unittest.main(argv=[sys.argv[0], *sys.argv[3:]], exit=False).result
    sys.exit(0 if result.wasSuccessful() and result.testsRun > 0 else 1)
