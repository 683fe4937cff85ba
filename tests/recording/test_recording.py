# SPDX-License-Identifier: MIT
"""Recording the plug-in's phone and replaying it: test_recording.py PROGRAM BUNDLE [unittest arguments]."""
import base64
import copy
import fcntl
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import wave

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.join(HERE, "..", "settings", "channels", "server")]
from loopback_client import EchoServer, PATIENCE, WebSocket  # noqa: E402
from Story import Story, lines, replay, write  # noqa: E402
from QuietrixCase import APPLIED, PROFILES, QuietrixTest, main, profile  # noqa: E402

ENABLED = "com.velmora.QuietrixEnabledOrDisableNotification"


class RecordingTest(QuietrixTest):
    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="quietrix-recording-")
        self.addCleanup(shutil.rmtree, self.directory)
        # Where replays have their roots.
        self.temporary = os.path.join(self.directory, "tmp")
        os.mkdir(self.temporary)
        self.file = os.path.join(self.directory, "story.rec")

    def record(self, **options):
        story = Story(self.PROGRAM, self.BUNDLE, self.file, **options)
        self.addCleanup(story.close)
        story.do("state")
        return story

    def replay(self, *options, file=None):
        """On a machine that lives elsewhere."""
        done = replay(self.PROGRAM, self.BUNDLE, file or self.file, *options,
                      environment={**os.environ, "TMPDIR": self.temporary, "TZ": "<+0545>-05:45"})
        self.assertEqual(os.listdir(self.temporary), [], "the replay's root is still there")
        return done

    def check_same(self, file=None):
        done = self.replay(file=file)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertTrue(done.stdout.startswith("The same: "), done.stdout)
        return done

    def renewed(self):
        """The bytes of a copy whose answers were all replaced by those of a replay."""
        copy = os.path.join(self.directory, "copy.rec")
        recorded = lines(self.file)
        for line in recorded:
            if "answer" in line:
                line["answer"] = {}
        write(copy, recorded)
        done = self.replay("--update", file=copy)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        with open(copy, "rb") as file:
            return file.read()

    def bytes(self):
        with open(self.file, "rb") as file:
            return file.read()

    def alter(self, change):
        """Changes the recording's lines by a function of their list."""
        recorded = lines(self.file)
        change(recorded)
        write(self.file, recorded)


class Stories(RecordingTest):
    def whole_story(self):
        tones = os.path.join(self.directory, "tones")
        os.mkdir(tones)
        with wave.open(os.path.join(tones, "Chord.wav"), "wb") as sound:
            sound.setparams((1, 2, 8000, 4, "NONE", ""))
            sound.writeframes(bytes(8))
        story = self.record(device={"tones": tones, "mailAccount": "me@example.net"})
        story.set(1, True)
        story.bar("right")
        for name, value in (("Title", "Nights"), ("Ring Alert", True)):
            story.set(story.row(name=name), value)
        story.bar("right")
        self.assertIn("Nights", story.names())
        story.tap(story.row(name="Nights"))
        story.tap(story.row(name="Alert Tone"))
        story.do("pickTone", identifier="texttone:Chord")
        story.back()
        story.back()
        # Another process writes and posts between two commands.
        stored = self.read(story, PROFILES)
        stored["profiles"].append(profile("Elsewhere"))
        self.write(story, PROFILES, stored)
        other = self.start(root=story.root)
        other.do("post", name=APPLIED)
        other.do("post", name=ENABLED)
        story.do("wait", event="darwinReceived", name=ENABLED, seconds=100)
        self.assertIn("Elsewhere", story.names())
        story.delete(story.row(name="Nights"))
        story.choose("Delete")
        self.assertNotIn("Nights", story.names())
        story.do("kill", process="SpringBoard")
        story.do("fault", kind="calendarsSilent")
        story.do("device", set={"languages": "de", "idiom": "pad", "clock": "2026-11-20T09:00:00"})
        story.do("advance", seconds=3600)
        story.do("device", set={"clock": "system", "tones": "system"})
        self.assertFalse(story.attempt("device", set={"calendars": "/there/is/none"})["ok"])
        story.do("files")
        self.assertFalse(story.attempt("wait", event="darwinReceived", seconds=0.05)["ok"])
        story.send(b"\xff no command\n")
        story.receive()
        story.send(b"x" * (1 << 20) + b"x\n")
        story.receive()
        other.close()
        story.close()
        return story

    def test_wholeStory_isTheSameThreeTimesUnderLoad(self):
        self.whole_story()
        recorded = self.bytes()
        kinds = {key for line in lines(self.file) for key in line.get("outside", {})}
        self.assertEqual(kinds, {"file", "bytes", "notification"})
        load = [subprocess.Popen([sys.executable, "-c", "while True: pass"]) for _ in range(3)]
        try:
            for _ in range(3):
                self.check_same()
                self.assertEqual(self.renewed(), recorded)
        finally:
            for process in load:
                process.kill()
                process.wait()


    def test_delayedCallWhileAWaitWaits_isMadeAtItsInstant(self):
        story = self.record()
        self.write(story, PROFILES, {"format": 1, "profiles": [profile("A")]})
        story.set(1, True)
        story.tap(story.row(identifier="Miscellaneous"))
        story.tap(story.row(identifier="resetProfiles"))
        story.choose(story.presented["actions"][0]["title"])
        chosen = lines(self.file)[-1]["time"]
        story.do("wait", event="removeFile", seconds=100)
        removed = story.events_of("removeFile")
        self.assertEqual([event["at"] for event in removed], [chosen + 2000])
        story.do("state")
        self.assertIsNone(story.presented)
        story.close()
        self.check_same()
        self.assertEqual(self.renewed(), self.bytes())

    def test_filesOfAnotherProcess_areSeenByTheCommandAfterThem(self):
        story = self.record()
        story.set(1, True)
        for title in ("A", "B"):
            self.write(story, PROFILES, {"format": 1, "profiles": [profile(title)]})
            story.do("post", name=APPLIED)
            self.assertIn(title, story.names())
        os.remove(story.path(PROFILES))
        story.do("post", name=APPLIED)
        self.assertNotIn("B", story.names())
        # The shell's log, in universal time.
        story.do("files")
        self.assertIn(APPLIED, story.answer["files"]["log"])
        story.close()
        self.check_same()


class Differences(RecordingTest):
    def setUp(self):
        super().setUp()
        story = self.record()
        story.set(1, True)
        story.close()

    def test_changedAnswer_isToldWithItsCommandAndPath(self):
        def change(recorded):
            recorded[3]["answer"]["state"]["screen"]["rows"][1]["value"] = False
        self.alter(change)
        done = self.replay()
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertEqual(done.stdout, f'{self.file}:4: {{"do": "set", "row": 1, "value": true}}\n'
                         "  state.screen.rows[1].value\n    was: false\n    is:  true\n")

    def test_anotherBuildOfTheBundle_isComparedToo(self):
        bundle = os.path.join(self.directory, "QuietrixPreferences.bundle")
        shutil.copytree(self.BUNDLE, bundle)
        table = os.path.join(bundle, "en.lproj", "Localizable.strings")
        with open(table, encoding="utf-8") as file:
            text = file.read()
        with open(table, "w", encoding="utf-8") as file:
            file.write(text.replace('= "Active Profiles";', '= "Busy Profiles";'))
        done = replay(self.PROGRAM, bundle, self.file)
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertIn('was: "Active Profiles"\n    is:  "Busy Profiles"\n', done.stdout)

    def test_update_renewsTheAnswersAlone(self):
        recorded = self.bytes()

        def change(lines_):
            lines_[3]["answer"]["state"]["screen"]["title"] = "Another"
        self.alter(change)
        done = self.replay("--update")
        self.assertEqual((done.returncode, done.stdout), (0, "Renewed: 1 of 2 answers.\n"))
        self.assertEqual(self.bytes(), recorded)
        self.check_same()


class Files(RecordingTest):
    def refused(self, reason):
        done = self.replay()
        self.assertEqual((done.returncode, done.stdout), (2, ""), done.stderr)
        self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
        self.assertIn(reason, done.stderr)

    def test_foreignFiles_areToldInOneLine(self):
        for text in (b"", b"\x00\xff", b"{}\n", b"no recording\n", b'{"format":"another"}\n', b"[" * 100_000 + b"\n"):
            with open(self.file, "wb") as file:
                file.write(text)
            with self.subTest(text=text[:20]):
                self.refused("no recording of a phone")
        with open(self.file, "wb"):
            pass
        self.refused(f"{self.file}: This is no recording")
        os.remove(self.file)
        self.refused("No such file")

    def test_otherVersion_saysWhatToDo(self):
        self.record().close()
        self.alter(lambda recorded: recorded[0].update(version=2))
        self.refused("version 2, and this program reads version 1: replay it with the program that made it")

    def test_truncatedBeginning_isNoRecording(self):
        self.record().close()
        with open(self.file, "r+b") as file:
            file.truncate(200)
        self.refused("no recording of a phone")

    def test_lineThatIsWrong_isNamed(self):
        self.record().close()
        for change, reason in ((lambda all: all[2].update(time="soon"), 'Line 3: "time" must be'),
                               (lambda all: all.insert(2, all[1]), "Line 3: The phone has been started before"),
                               (lambda all: all[2].update(time=-1), 'Line 3: "time" must be'),
                               (lambda all: all[2].update(found=[{"tones": 1}]), 'Line 3: "tones" must be'),
                               (lambda all: all[0]["device"].update(idiom="desk"), 'Line 1: The device option "idiom"'),
                               (lambda all: all[0].update(clock="noon"), "Line 1: \"noon\" is no date"),
                               (lambda all: all[0].update(bundle="Other.bundle"), 'bundle "Other.bundle"')):
            recorded = lines(self.file)
            change(recorded)
            kept = self.bytes()
            write(self.file, recorded)
            with self.subTest(reason=reason):
                self.refused(reason)
            with open(self.file, "wb") as file:
                file.write(kept)

    def test_fileOutsideTheRoot_isNotWritten(self):
        self.record().close()
        victim = os.path.join(self.BUNDLE, "recorded.txt")
        change = {"time": 0, "outside": {"file": "/Library/PreferenceBundles/QuietrixPreferences.bundle/recorded.txt",
                                         "bytes": base64.b64encode(b"text").decode()}}
        self.alter(lambda recorded: recorded.insert(2, change))
        self.refused("is not the phone's own")
        self.assertFalse(os.path.exists(victim))

    def test_killedWhileItRecords_replaysUpToThere(self):
        story = self.record()
        story.set(1, True)
        story.process.send_signal(signal.SIGKILL)
        story.process.wait()
        self.assertIn("The recording was cut off after line 4", self.check_same().stderr)
        with open(self.file, "ab") as file:
            file.write(b'{"time":99,"comma')
        self.assertIn("The recording was cut off after line 4", self.check_same().stderr)

    def test_fileThatHasSomething_isNotWrittenOver(self):
        with open(self.file, "w", encoding="utf-8") as file:
            file.write("precious")
        done = subprocess.run([self.PROGRAM, "record", "--bundle", self.BUNDLE, "--root",
                               os.path.join(self.directory, "root"), self.file], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=100)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertIn("not written over", done.stderr)
        self.assertEqual(self.bytes(), b"precious")

    def test_twoThatBeginAtTheSameTime_leaveTheFileToOne(self):
        with open(self.file, "wb") as first:
            # As a recorder has it that has not written anything yet.
            fcntl.flock(first, fcntl.LOCK_EX)
            done = subprocess.run([self.PROGRAM, "record", "--bundle", self.BUNDLE, "--root",
                                   os.path.join(self.directory, "root"), self.file], stdin=subprocess.DEVNULL,
                                  capture_output=True, text=True, timeout=100)
        self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (2, "", 1))
        self.assertIn("another program is recording into it", done.stderr)
        self.assertEqual(self.bytes(), b"")



class ViewTest(RecordingTest):
    """The command that shows a recording; what it answers, line by line, is tested beside its code."""
    STRANGER = 65534

    def refused(self, reason, file=None, **options):
        done = subprocess.run([self.PROGRAM, "view", file or self.file], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=300, **options)
        self.assertEqual((done.returncode, done.stdout), (2, ""), done)
        self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
        self.assertIn(reason, done.stderr)

    def view(self, *options):
        server = EchoServer(self.PROGRAM, "view", self.file, *options,
                            env={**os.environ, "TMPDIR": self.temporary, "XDG_DATA_HOME": self.directory})
        self.addCleanup(server.clean)
        return server

    @staticmethod
    def ask(page, **command):
        page.send(json.dumps(command))
        return json.loads(page.receive()[1])

    def test_recording_isShownAndNothingIsDoneToIt(self):
        story = self.record()
        story.set(1, True)
        story.close()
        before = self.bytes()
        server = self.view()
        self.assertRegex(server.url, r"^Quietrix Settings is at http://127\.0\.0\.1:\d+/\?workbench=timeline#secret=[0-9a-f]{64}$")
        recorded = lines(self.file)
        with WebSocket(server) as page:
            page.connection.settimeout(PATIENCE)
            shown = self.ask(page, do="state")["state"]
            self.assertEqual(shown["screen"], recorded[-2]["answer"]["state"]["screen"])
            self.assertEqual(self.ask(page, do="moments", **{"from": 0})["moments"][2]["command"], recorded[3]["command"])
            self.assertEqual(self.ask(page, do="moment", at=1)["state"]["screen"], recorded[2]["answer"]["state"]["screen"])
            for command in ("set", "back", "device", "kill", "fault"):
                self.assertFalse(self.ask(page, do=command, row=1, value=False)["ok"])
            self.assertEqual(self.ask(page, do="state")["state"], shown)
        self.assertEqual(server.get("/").status, 200)
        self.assertEqual(server.get("/image/nav").status, 200)
        # What a screen loads from the phone itself came with the recording.
        self.assertEqual(server.get("/image/SpeakerMax@2x").status, 200)
        self.assertEqual(server.get("/image/..%2FInfo").status, 404)
        self.assertEqual(server.get("/sounds/texttone:Chord").status, 404)
        server.process.send_signal(signal.SIGTERM)
        self.assertEqual((*server.process.communicate(timeout=PATIENCE), server.process.returncode), ("", "", 0))
        self.assertEqual(self.bytes(), before)
        self.assertEqual(sorted(os.listdir(self.directory)), ["story.rec", "tmp"])
        self.assertEqual(os.listdir(self.temporary), [], "images are still there")

    def test_killed_leavesNothingThatTheNextOneDoesNotClear(self):
        self.record().close()
        first, living = self.view(), self.view()
        both = set(os.listdir(self.temporary))
        first.process.kill()
        first.process.wait()
        self.assertEqual(set(os.listdir(self.temporary)), both, "it could do nothing about it")
        third = self.view()
        left = set(os.listdir(self.temporary))
        self.assertEqual((len(both), len(left), len(left & both)), (2, 2, 1))
        for server in (living, third):
            self.assertEqual(server.get("/image/SpeakerMax@2x").status, 200)

    def test_phonesOfTheSameRoot_liveOnBesideIt(self):
        root = os.path.join(self.directory, "phone")
        story = self.record(root=root)
        story.set(1, True)
        self.write(story, PROFILES, {"format": 1, "profiles": [profile("A"), profile("B"), profile("C")]})
        story.do("post", name=APPLIED)
        story.close()
        before, recorded = self.bytes(), lines(self.file)[-2]["answer"]["state"]["screen"]
        driven = self.start(root=root)
        served = EchoServer(self.PROGRAM, "serve", "--root", root, "--bundle", self.BUNDLE)
        self.addCleanup(served.clean)
        with WebSocket(self.view()) as page, WebSocket(served) as other:
            for each in (page, other):
                each.connection.settimeout(PATIENCE)
            shown = self.ask(other, do="state")
            for title in ("B", "A", "C"):
                driven.delete(driven.row(name=title))
                driven.choose("Delete")
                # A page is told by itself.
                while title in [row["name"] for row in shown["state"]["screen"]["rows"]]:
                    shown = json.loads(other.receive()[1])
                self.assertEqual(self.ask(page, do="state")["state"]["screen"], recorded)
            self.assertEqual(self.read(driven, PROFILES)["profiles"], [])
        self.assertEqual(self.bytes(), before)

    def test_killedWhileItRecorded_showsWhatThereIs(self):
        story = self.record()
        story.set(1, True)
        story.process.send_signal(signal.SIGKILL)
        story.process.wait()
        with open(self.file, "ab") as file:
            file.write(b'{"time":99,"comma')
        with WebSocket(self.view()) as page:
            page.connection.settimeout(PATIENCE)
            recording = self.ask(page, do="state")["state"]["recording"]
            self.assertEqual((recording["whole"], recording["moments"]), (False, 3))

    def test_whatCannotBeShown_isToldInOneLine(self):
        self.refused("could not be opened: No such file", file=os.path.join(self.directory, "missing"))
        self.refused("is no regular file", file=self.directory)
        fifo = os.path.join(self.directory, "fifo")
        os.mkfifo(fifo)
        self.refused("is no regular file", file=fifo)
        self.refused("This is no recording of a phone", file=__file__)
        self.record().close()
        recorded = lines(self.file)
        for change, reason in ((lambda all: all[0].update(version=2), "is of version 2, and this program reads version 1"),
                               (lambda all: all[2].update(time="soon"), 'Line 3: "time" must be'),
                               (lambda all: all.__delitem__(slice(2, None)), "There is nothing to be seen")):
            changed = copy.deepcopy(recorded)
            change(changed)
            write(self.file, changed)
            with self.subTest(reason=reason):
                self.refused(reason)

    def test_bundleThatIsMissing_isToldAndAnotherPhonesImagesAreNotTaken(self):
        self.record().close()
        done = subprocess.run([self.PROGRAM, "view", self.file, "--bundle", "/nowhere"], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=100)
        self.assertEqual((done.returncode, done.stderr), (2, 'quietrix-settings: The bundle "/nowhere" is not a directory.\n'))
        recorded = lines(self.file)
        recorded[0]["bundle"] = "Other.bundle"
        write(self.file, recorded)
        self.assertEqual(self.view().get("/image/nav").status, 404)
        self.assertEqual(self.view("--bundle", self.BUNDLE).get("/image/nav").status, 200)

    @unittest.skipUnless(os.geteuid() == 0, "only root can be somebody else")
    def test_anotherUsersFile_isTold(self):
        if subprocess.run(["test", "-x", self.PROGRAM], check=False, user=self.STRANGER).returncode != 0:
            self.skipTest("the program lies where nobody else can start it")
        self.record().close()
        os.chmod(self.directory, 0o755)
        self.refused("could not be opened: Permission denied", user=self.STRANGER)


if __name__ == "__main__":
    main()
