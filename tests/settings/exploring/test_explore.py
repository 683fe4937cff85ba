# SPDX-License-Identifier: MIT
"""The command "explore" with a bundle that has one mistake at a time, and with those that have to be clean:
test_explore.py PROGRAM FIXTURES OWN_BUNDLE RINGER [unittest arguments]."""
import json
import os
import signal
import subprocess
import sys
import tempfile
import unittest

PATIENCE = 200
# Enough for each planted mistake with this seed, many times over.
STEPS = "3000"
SEED = "7"


class ExploreTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="quietrix-explore-test-")
        self.addCleanup(directory.cleanup)
        self.directory = directory.name
        # Where the phones' roots come and go.
        self.scratch = os.path.join(self.directory, "scratch")
        os.mkdir(self.scratch)
        self.recording = self.path("found.rec")
        self.fragile = os.path.join(FIXTURES, "Fragile.bundle")

    def path(self, name):
        return os.path.join(self.directory, name)

    def run_program(self, *arguments):
        done = subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, timeout=PATIENCE, check=False,
                              cwd=self.directory, env={**os.environ, "TMPDIR": self.scratch})
        self.assertEqual(os.listdir(self.scratch), [])
        return done

    def explore(self, *arguments):
        return self.run_program("explore", *arguments)

    def find(self, mistake, *arguments, seed=SEED):
        """The failure that is found where that mistake was planted."""
        done = self.explore(self.fragile, "--device", f"model={mistake}", "--steps", STEPS, "--seed", seed, "--json",
                            "--out", self.recording, *arguments)
        self.assertEqual(done.returncode, 1, done.stdout + done.stderr)
        self.assertEqual(done.stderr, "")
        failure = json.loads(done.stdout)["failure"]
        self.assertTrue(failure["isRepeatable"])
        return failure

    def replay(self, *arguments):
        return self.run_program("replay", "--bundle", self.fragile, self.recording, *arguments)


class Planted(ExploreTest):
    def test_death_isShortenedToWhatLeadsThereAndDiesInItsReplay(self):
        failure = self.find("dies")
        self.assertEqual((failure["invariant"], failure["subject"]), ("died", "signal 6 (Aborted)"))
        commands = [json.loads(line) for line in failure["commands"]]
        self.assertEqual(len(commands), 3, commands)
        self.assertEqual(commands[-1]["do"], "set")
        self.assertEqual(sorted(command["do"] for command in commands)[-2:], ["set", "tap"])
        done = self.replay()
        self.assertEqual(done.returncode, 1)
        self.assertIn(f"{self.recording}:6: {failure['commands'][-1]}\n"
                      "  The program died of it: signal 6 (Aborted).\n", done.stdout)

    def test_deathThatWasMended_isTold(self):
        self.find("dies", seed="25")
        with open(self.recording, encoding="utf-8") as file:
            lines = file.readlines()
        head = json.loads(lines[0])
        head["device"]["model"] = "sound"
        with open(self.recording, "w", encoding="utf-8") as file:
            file.writelines([json.dumps(head) + "\n", *lines[1:]])
        done = self.replay()
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("died of it when it was recorded (signal 6 (Aborted)); now it lives.", done.stdout)
        # By its name alone, as one types it.
        done = self.run_program("replay", "--bundle", self.fragile, "--update", "found.rec")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        done = self.replay()
        self.assertRegex(done.stdout, r"^The same: 4 answers\.$")

    def test_hang_isToldAndHangsInItsReplay(self):
        # Each try that hangs is waited for: one that is found soon needs few.
        failure = self.find("hangs", "--patience", "4", seed="25")
        self.assertEqual((failure["invariant"], failure["subject"]), ("died", "no answer"))
        self.assertEqual(len(failure["commands"]), 3)
        done = self.replay()
        self.assertEqual(done.returncode, 1)
        self.assertIn("The program gives no answer, as when it was recorded.", done.stdout)

    def test_memoryThatGrows_isFoundInTheRoundsThatDoIt(self):
        failure = self.find("leaks", seed="4")
        self.assertEqual(failure["invariant"], "memoryGrows")
        self.assertRegex(failure["text"], r"take 2\d\d\d bytes more each time")
        self.assertEqual(failure["commands"][-3], "40 times:")
        self.assertEqual(json.loads(failure["commands"][-1])["do"], "tap")

    def test_screenThatStays_isTold(self):
        failure = self.find("stays")
        self.assertEqual((failure["invariant"], failure["subject"]), ("screenStays", "FragileInnerController"))
        self.assertLessEqual(len(failure["commands"]), 3)
        done = self.replay()
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertTrue(done.stdout.startswith("The same: "), done.stdout)

    def test_looksThatDiffer_areTold(self):
        failure = self.find("differs")
        self.assertIn(failure["invariant"], ("looksDifferent", "refusedChanged"))
        self.assertIn("screen.rows[3].value was ", failure["text"])
        self.assertLessEqual(len(failure["commands"]), 2)

    def test_peopleAreToldHowToSeeItAgain(self):
        done = self.explore(self.fragile, "--device", "model=dies", "--steps", STEPS, "--seed", SEED)
        lines = done.stdout.splitlines()
        self.assertEqual(lines[0], "The program died: signal 6 (Aborted). [died]")
        self.assertIn('See it again: quietrix-settings replay "explore-7.rec"', lines)
        self.assertTrue(os.path.exists(self.path("explore-7.rec")))


class Sound(ExploreTest):
    def check_clean(self, bundle, *arguments):
        done = self.explore(bundle, "--json", "--out", self.recording, *arguments)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertFalse(os.path.exists(self.recording))
        return json.loads(done.stdout)

    def test_ownBundle_isCleanAndSeenDeep(self):
        self.assertGreaterEqual(len(self.check_clean(OWN, "--steps", "400", "--seed", "1")["screens"]), 7)

    def test_ringer_isCleanAndSeenDeep(self):
        self.assertGreaterEqual(len(self.check_clean(RINGER, "--steps", "400", "--seed", "1")["screens"]), 5)

    def test_sameSeed_makesTheSameStepsByteForByte(self):
        traces = []
        for name, seed in (("one", "3"), ("two", "3"), ("three", "4")):
            self.check_clean(self.fragile, "--steps", "150", "--seed", seed, "--trace", self.path(name))
            with open(self.path(name), "rb") as file:
                traces.append(file.read())
        self.assertGreater(traces[0].count(b"\n"), 140)
        self.assertEqual(traces[0], traces[1])
        self.assertNotEqual(traces[0], traces[2])

    def test_root_isWhereItBeginsAndLeftAlone(self):
        stored = self.path("phone/var/mobile/Library/Preferences/com.example.fragile.plist")
        os.makedirs(os.path.dirname(stored))
        with open(stored, "wb") as file:
            file.write(b"anything")
        self.check_clean(self.fragile, "--steps", "60", "--seed", "1", "--root", self.path("phone"))
        found = [os.path.join(path, name) for path, _, names in os.walk(self.path("phone")) for name in names]
        self.assertEqual(found, [stored])


class Beginning(ExploreTest):
    def check_refused(self, reason, *arguments):
        done = self.explore(*arguments, "--steps", "10")
        self.assertEqual(done.returncode, 2, done.stdout + done.stderr)
        self.assertEqual(done.stdout, "")
        self.assertIn(reason, done.stderr)
        self.assertEqual(done.stderr.count("\n"), 1)

    def test_whatCannotBegin_isOneLine(self):
        self.check_refused("is not a directory", self.path("nowhere"))
        self.check_refused("MissingClass", os.path.join(FIXTURES, "MissingClass.bundle"))
        self.check_refused("is made up", self.fragile, "--device", "networks=system")
        self.check_refused('--steps: "0" is not a whole number from 1 to 1000000000', self.fragile, "--steps", "0")
        self.check_refused('--seed: "-1" is not a whole number', self.fragile, "--seed", "-1")
        self.check_refused('--patience: "1h" is not a whole number from 1 to 3600', self.fragile, "--patience", "1h")
        self.check_refused("cannot be written", self.fragile, "--trace", self.path("no/such/directory"))

    def test_placeOfTheRecording_isLookedAtBeforeItBegins(self):
        pipe = self.path("pipe")
        os.mkfifo(pipe)
        for path, reason in ((self.path("absent/found.rec"), "No such file or directory"),
                             (pipe, "It is no regular file"), (self.directory, "It is no regular file")):
            trace = self.path("trace")
            self.check_refused(f'The recording "{path}" could not be written: {reason}.', self.fragile, "--out", path,
                               "--trace", trace)
            self.assertFalse(os.path.exists(trace))

    def test_recordingThatCannotBeWrittenInTheEnd_isToldBesideWhatWasFound(self):
        os.mkdir(self.path("gone"))
        trace = self.path("trace")
        os.mkfifo(trace)
        arguments = [PROGRAM, "explore", self.fragile, "--device", "model=dies", "--steps", STEPS, "--seed", SEED,
                     "--out", self.path("gone/found.rec"), "--trace", trace]
        with subprocess.Popen(arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, cwd=self.directory,
                              env={**os.environ, "TMPDIR": self.scratch}) as process:
            # It goes on once somebody reads what it traces.
            with open(trace, "rb") as file:
                os.rmdir(self.path("gone"))
                file.read()
            output, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual(process.returncode, 2)
        self.assertIn("The program died: signal 6 (Aborted). [died]", output)
        self.assertIn("could not be written: No such file or directory.", errors)
        self.assertEqual(errors.count("\n"), 1)

    def test_interrupted_leavesNothingBehind(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with subprocess.Popen([PROGRAM, "explore", OWN, "--steps", "1000000", "--trace", self.path("trace")],
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, cwd=self.directory,
                                  env={**os.environ, "TMPDIR": self.scratch}) as process:
                while not (os.path.exists(self.path("trace")) and os.path.getsize(self.path("trace"))):
                    self.assertIsNone(process.poll())
                process.send_signal(number)
                output, errors = process.communicate(timeout=PATIENCE)
            self.assertEqual((process.returncode, output, errors), (128 + number, "", "quietrix-settings: Interrupted.\n"))
            self.assertEqual(os.listdir(self.scratch), [])
            os.remove(self.path("trace"))


if __name__ == "__main__":
    PROGRAM, FIXTURES, OWN, RINGER = sys.argv[1:5]
    unittest.main(argv=sys.argv[:1] + sys.argv[5:], verbosity=2)
