# SPDX-License-Identifier: MIT
"""A program that is started anew when it has changed: test_watch.py PROGRAM SOURCE_TREE [unittest arguments].

Works on a bundle that is compiled once here; how that goes wrong stands in its Info list.
"""
import json
import os
import plistlib
import random
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parent / "channels" / "server"), str(HERE.parent.parent / "drive")]
from Drive import Drive  # noqa: E402
from loopback_client import CLOSE, EchoServer, PATIENCE, TEXT, WebSocket  # noqa: E402

PROGRAM = ""
TREE = Path()
COMPILED = Path()
SERVICE_RESTART = 1012


class Page:
    """A page that comes back when it is sent back."""

    def __init__(self, server):
        self.server = server
        self.id = 0
        self.states = []
        self.codes = []
        self.connect()

    def connect(self):
        self.socket = WebSocket(self.server)
        self.socket.connection.settimeout(PATIENCE)
        self.begin("state")

    def begin(self, command, **fields):
        self.id += 1
        self.socket.send(json.dumps({"do": command, "id": self.id, **fields}))
        return self.id

    def receive(self):
        """The next message; None when the socket was closed."""
        kind, payload = self.socket.receive()
        if kind == TEXT:
            message = json.loads(payload)
            self.states.append(message["state"])
            return message
        self.codes.append(int.from_bytes(payload[:2], "big") if kind == CLOSE else None)
        return None

    def answer(self, command):
        """None when the connection ended before it came."""
        while (message := self.receive()) is not None:
            if message.get("id") == command:
                return message
        return None

    def do(self, command, **fields):
        answer = self.answer(self.begin(command, **fields))
        assert answer and answer["ok"], answer
        return answer["state"]

    def come_back(self):
        self.close()
        self.connect()

    def until(self, wanted):
        """The first state that is so, on this connection or on the ones behind it."""
        while True:
            message = self.receive()
            if message is None:
                self.come_back()
            elif wanted(message["state"]):
                return message["state"]

    def close(self):
        self.socket.__exit__()


def free_port():
    while True:
        port = random.randrange(20000, 32000)
        with socket.socket() as probe:
            if probe.connect_ex(("127.0.0.1", port)) != 0:
                return port


def children(process):
    text = Path(f"/proc/{process}/task/{process}/children").read_text(encoding="ascii")
    return [int(child) for child in text.split()]


def is_running(process):
    try:
        return Path(f"/proc/{process}/stat").read_text(encoding="ascii").rsplit(")", 1)[1].split()[0] != "Z"
    except FileNotFoundError:
        return False


def wait_until(condition, what):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"never: {what}")
        time.sleep(0.02)  # Between two looks at what nobody tells of.


def build_of(state):
    return state["build"]["state"]


class WatchTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.mkdtemp(prefix="quietrix-watch-")
        self.addCleanup(shutil.rmtree, directory, ignore_errors=True)
        self.folder = Path(directory)
        self.root = self.folder / "phone"
        self.typed = self.folder / "typed"
        self.bundle = self.folder / "Watched.bundle"
        self.source = self.folder / "source" / "Watched.cpp"
        self.make_bundle()

    def make_bundle(self):
        self.bundle.mkdir()
        shutil.copyfile(COMPILED, self.bundle / "Watched")
        self.write_info()

    def write_info(self, text="told text", mode=""):
        """As editors do: a file of another name takes the place."""
        entries = {"CFBundleExecutable": "Watched", "NSPrincipalClass": "WatchedController",
                   "PlatformInterfaceVersion": 1, "Mode": mode, "Text": text, "Typed": str(self.typed)}
        new = self.bundle / "Info.plist.new"
        new.write_bytes(plistlib.dumps(entries))
        new.rename(self.bundle / "Info.plist")

    def serve(self, *arguments):
        self.server = EchoServer(PROGRAM, "serve", "--watch", "--root", str(self.root), "--bundle", str(self.bundle),
                                 *arguments)
        self.addCleanup(self.server.clean)
        # Ended as its user would: by force, its programs would end behind this test's back.
        self.addCleanup(self.end)
        return self.server

    def end(self):
        if self.server.process.poll() is None:
            self.server.process.send_signal(signal.SIGINT)
            self.assertEqual(self.server.process.wait(PATIENCE), 0)

    def page(self, opened=True):
        page = Page(self.server)
        self.addCleanup(page.close)
        if opened:
            page.do("tap", row=1)
        return page

    def names(self, state):
        return [row["name"] for row in state["screen"]["rows"]]

    def program(self):
        """The process that serves."""
        return children(self.server.process.pid)[0]

    def test_bundleChanged_theSameScreenOnTheSameSocket(self):
        self.serve()
        one, other = self.page(), self.page(opened=False)
        before = one.do("device", set={"languages": "de", "clock": "2026-11-20T09:00:00"})
        one.do("advance", seconds=3600)
        one.do("dark", on=True)
        before = one.do("fault", kind="slow", milliseconds=1)
        self.assertIsNone(before["build"]["error"])
        first = self.program()
        self.write_info(text="another text")
        for page in (one, other):
            state = page.until(lambda state: "another text" in self.names(state))
            self.assertEqual(page.codes, [SERVICE_RESTART])
            self.assertEqual(build_of(state), "ready")
            self.assertIsNone(state["build"]["pathEnded"])
            self.assertEqual(state["screen"]["id"], before["screen"]["id"])
            self.assertEqual(state["screen"]["class"], "WatchedInnerController")
            # The text is what its row is known by.
            self.assertEqual([row["key"] for row in state["screen"]["rows"]][:3],
                             [row["key"] for row in before["screen"]["rows"]][:3])
            self.assertEqual((state["device"]["language"], state["device"]["darkMode"], state["device"]["clock"]),
                             ("de", True, "2026-11-20T10:00:00"))
            self.assertEqual((state["faults"], state["faultMilliseconds"]), (["slow"], 1))
        wait_until(lambda: not is_running(first), "the program before has ended")
        # A number that another page may still name is nobody else's.
        new = one.do("back")
        new = one.do("tap", row=1)
        self.assertGreater(new["screen"]["id"], before["screen"]["id"])

    def test_newProgramAborts_theOldOneGoesOnUntilItIsMended(self):
        self.serve()
        page = self.page(opened=False)
        program = self.program()
        self.write_info(mode="abort")
        state = page.until(lambda state: build_of(state) == "refused")
        self.assertIn("was ended by signal 6", state["build"]["error"]["text"])
        self.assertEqual(page.do("tap", row=1)["screen"]["class"], "WatchedInnerController")
        self.assertEqual(children(self.server.process.pid), [program])
        self.assertEqual(page.codes, [])
        self.write_info(text="mended")
        state = page.until(lambda state: "mended" in self.names(state))
        self.assertIsNone(state["build"]["error"])

    def test_newProgramHangs_isOvertakenByTheNext(self):
        self.serve()
        page = self.page()
        self.write_info(mode="hang")
        wait_until(lambda: len(children(self.server.process.pid)) == 2, "the next program is tried")
        self.write_info(text="mended")
        page.until(lambda state: "mended" in self.names(state))
        wait_until(lambda: len(children(self.server.process.pid)) == 1, "only one program is left")

    def test_screenCannotBeOpenedAgain_theFirstOneSaysSo(self):
        self.serve()
        page = self.page()
        self.write_info(mode="abortInner")
        state = page.until(lambda state: state["build"]["pathEnded"])
        self.assertIn("could not be opened again: the program was ended by signal 6", state["build"]["pathEnded"])
        self.assertEqual(state["screen"]["class"], "WatchedController")
        self.write_info(text="mended")
        page.until(lambda state: state["build"]["pathEnded"] is None)

    def test_codeWrittenInPieces_isTakenOnlyAsAWhole(self):
        self.serve()
        page = self.page()
        code = (self.bundle / "Watched").read_bytes()
        (self.bundle / "Watched").unlink()
        with open(self.bundle / "Watched", "wb") as file:
            file.write(code[:5000])
            file.flush()
            # Longer than the quiet after which a file that nobody writes is taken.
            time.sleep(0.5)
            self.assertEqual(build_of(page.do("state")), "ready")
            file.write(code[5000:])
        page.until(lambda state: page.codes)
        self.assertEqual({build_of(state) for state in page.states}, {"ready"})

    def test_unloadableCode_isRefusedWithTheReason(self):
        self.serve()
        page = self.page()
        # As a linker does; the program that has loaded it would not survive it otherwise.
        (self.bundle / "Watched").unlink()
        (self.bundle / "Watched").write_bytes(b"nonsense")
        state = page.until(lambda state: build_of(state) == "refused")
        self.assertIn("Watched", state["build"]["error"]["text"])
        self.assertEqual(page.do("state")["screen"]["class"], "WatchedInnerController")
        self.assertEqual(page.codes, [])

    def test_bundleRemovedAndMadeAnew_isTaken(self):
        self.serve()
        page = self.page()
        shutil.rmtree(self.bundle)
        self.make_bundle()
        self.write_info(text="made anew")
        page.until(lambda state: "made anew" in self.names(state))
        self.write_info(text="watched again")
        page.until(lambda state: "watched again" in self.names(state))

    def test_pressesWhileItRestarts_areDoneOnceOrNotAtAll(self):
        self.serve("--device", "tones=" + str(self.folder))
        page = self.page()
        answered, sent = [], 0
        self.write_info(text="version 0")
        while len(page.codes) < 3:
            value = f"text {sent}"
            sent += 1
            try:
                answer = page.answer(page.begin("set", row=1, value=value))
            except OSError:
                answer = None
            if answer is None:
                page.come_back()
                self.write_info(text=f"version {sent}")
            elif answer["ok"]:
                answered.append(value)
        done = self.typed.read_text(encoding="utf-8").splitlines()
        self.assertEqual(len(done), len(set(done)))
        self.assertLessEqual(set(answered), set(done))
        self.assertEqual(done, [f"text {number}" for number in range(sent) if f"text {number}" in set(done)])

    def test_programKilled_isStartedAgainAtTheSameAddress(self):
        self.serve()
        page = self.page()
        # One that ends as soon as it serves would be left alone.
        time.sleep(1.1)
        with Drive(PROGRAM, str(self.bundle), root=str(self.root)) as other:
            os.kill(self.program(), signal.SIGKILL)
            state = page.until(lambda state: state["build"]["pathEnded"])
            other.do("state")
        self.assertEqual(state["build"]["pathEnded"],
                         "The program was ended by signal 9 (Killed), and was started again.")
        self.assertEqual(state["screen"]["class"], "WatchedController")

    def test_watcherKilled_theProgramEnds(self):
        self.serve()
        self.page()
        program = self.program()
        self.server.process.kill()
        wait_until(lambda: not is_running(program), "the program has ended")
        with self.assertRaises(OSError):
            self.server.connect()

    def test_build_takesTheFirstErrorAndTheNewText(self):
        self.source.parent.mkdir()
        good = (HERE / "Watched.cpp").read_text(encoding="utf-8")
        self.source.write_text(good, encoding="utf-8")
        built = self.folder / "built"
        self.serve("--sources", str(self.source.parent), "--build",
                   f"g++ -std=c++23 -fPIC -shared -I {TREE} {self.source} -o {self.bundle}/Watched && touch {built}")
        page = self.page()
        shown = page.do("state")
        wait_until(built.exists, "what is there is built at the start")
        page.until(lambda state: page.codes and build_of(state) == "ready")

        self.source.write_text(good.replace("if (!specifiers_) {", "if (!specifiers_) { oops", 1), encoding="utf-8")
        state = page.until(lambda state: build_of(state) == "failed")
        error = state["build"]["error"]
        line = 1 + good[:good.index("if (!specifiers_) {")].count("\n")
        self.assertEqual((error["file"], error["line"]), (str(self.source), line))
        self.assertIn("oops", error["text"])
        self.assertEqual(page.do("back")["screen"]["class"], "WatchedController")
        page.do("tap", row=1)

        self.source.write_text(good.replace("first text", "second text"), encoding="utf-8")
        state = page.until(lambda state: "second text" in self.names(state))
        self.assertEqual(state["screen"]["class"], "WatchedInnerController")
        self.assertEqual(len(page.codes), 2)
        self.assertIsNone(state["build"]["error"])
        self.assertNotEqual(shown["screen"]["class"], "")

    def test_buildThatNeverEnds_theProgramGoesOnAndNothingIsLeftBehind(self):
        self.source.parent.mkdir()
        ids = self.folder / "ids"
        self.serve("--sources", str(self.source.parent), "--build", f"echo $$ >> {ids}; sleep 1000 & echo $! >> {ids}; wait")
        page = self.page()
        page.until(lambda state: build_of(state) == "building")
        wait_until(lambda: ids.exists() and len(ids.read_text().split()) == 2, "the build runs")
        self.assertEqual(page.do("back")["screen"]["class"], "WatchedController")
        # One more build would follow, and not at the same time.
        self.source.write_text("changed", encoding="utf-8")
        self.assertEqual(build_of(page.do("tap", row=1)), "building")
        self.end()
        for process in map(int, ids.read_text().split()):
            wait_until(lambda process=process: not is_running(process), "the build has ended")

    def test_changesWhileABuildRuns_areBuiltBehindIt(self):
        self.source.parent.mkdir()
        self.source.write_text("one", encoding="utf-8")
        goes_on, log = self.folder / "go", self.folder / "log"
        self.serve("--sources", str(self.source.parent), "--build",
                   f"cat {self.source} >> {log}; echo >> {log}; until test -e {goes_on}; do sleep 0.05; done")
        wait_until(lambda: log.exists() and log.read_text().strip(), "the first build runs")
        for text in ("two", "three"):
            self.source.write_text(text, encoding="utf-8")
        # Longer than the quiet before a build.
        time.sleep(0.3)
        goes_on.touch()
        page = self.page()
        page.until(lambda state: build_of(state) == "ready")
        self.assertEqual(log.read_text().split(), ["one", "three"])

    def test_portInUse_isOneLineAndStatus2(self):
        with socket.socket() as taken:
            taken.bind(("127.0.0.1", 0))
            taken.listen()
            port = taken.getsockname()[1]
            done = subprocess.run([PROGRAM, "serve", "--watch", "--root", self.root, "--bundle", self.bundle, "--port",
                                   str(port)], capture_output=True, text=True, timeout=PATIENCE, check=False)
        self.assertEqual((done.returncode, done.stdout, done.stderr),
                         (2, "", f"quietrix-settings: Port {port} of 127.0.0.1 is in use by another program.\n"))

    def test_secret_standsInNoCommandLineAndNoEnvironment(self):
        self.serve("--port", str(free_port()))
        for process in (self.server.process.pid, self.program()):
            for name in ("cmdline", "environ"):
                self.assertNotIn(self.server.secret.encode(), Path(f"/proc/{process}/{name}").read_bytes())


if __name__ == "__main__":
    PROGRAM, TREE = sys.argv[1], Path(sys.argv[2])
    with tempfile.TemporaryDirectory(prefix="quietrix-watch-") as made:
        COMPILED = Path(made) / "Watched"
        subprocess.run(["g++", "-std=c++23", "-fPIC", "-shared", "-I", TREE, HERE / "Watched.cpp", "-o", COMPILED],
                       check=True)
        run = unittest.main(argv=sys.argv[:1] + sys.argv[3:], exit=False)
    sys.exit(0 if run.result.wasSuccessful() and run.result.testsRun else 1)
