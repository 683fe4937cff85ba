# SPDX-License-Identifier: MIT
"""The serve channel of the real program: test_serve.py PROGRAM FIXTURES [unittest arguments]."""
import json
import os
import random
import select
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import unittest
import wave

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [os.path.join(HERE, "server"), os.path.join(HERE, "..", "..", "drive")]
from Drive import Drive  # noqa: E402
from loopback_client import EchoServer, PATIENCE, TEXT, WebSocket  # noqa: E402

PROGRAM = ""
FIXTURES = ""


class Page:
    """A connection that speaks the screen protocol."""

    def __init__(self, server):
        self.socket = WebSocket(server)
        self.socket.connection.settimeout(PATIENCE)
        self.id = 0

    def receive(self):
        kind, payload = self.socket.receive()
        assert kind == TEXT, (kind, payload)
        return json.loads(payload)

    def begin(self, command, **fields):
        """Sends a command and gives its id."""
        self.id += 1
        self.socket.send(json.dumps({"do": command, "id": self.id, **fields}))
        return self.id

    def answer(self, command):
        """The answer to the command of that id; what comes before it is passed over."""
        while (message := self.receive()).get("id") != command:
            pass
        return message

    def attempt(self, command, **fields):
        """Sends a command and gives its answer."""
        return self.answer(self.begin(command, **fields))

    def do(self, command, **fields):
        answer = self.attempt(command, **fields)
        assert answer["ok"], answer["error"]
        return answer["state"]

    def quiet(self):
        """Whether nothing has come."""
        return not select.select([self.socket.connection], [], [], 0)[0]

    def close(self):
        self.socket.__exit__()


def free_port():
    """A port that nobody listens on now, and that no other test is given for "any free one"."""
    while True:
        port = random.randrange(20000, 32000)
        with socket.socket() as probe:
            if probe.connect_ex(("127.0.0.1", port)) != 0:
                return port


class ServeTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = os.path.join(directory.name, "phone")
        self.bundle = os.path.join(FIXTURES, "Sample.bundle")
        self.tones = os.path.join(directory.name, "tones")
        os.mkdir(self.tones)
        self.server = EchoServer(PROGRAM, "serve", "--root", self.root, "--bundle", self.bundle, "--device",
                                 f"tones={self.tones}")
        self.addCleanup(self.server.clean)

    def page(self):
        page = Page(self.server)
        self.addCleanup(page.close)
        return page

    def test_address_isOneLine(self):
        self.assertRegex(self.server.url, r"^Quietrix Settings is at http://127\.0\.0\.1:\d+/#secret=[0-9a-f]{64}$")

    def test_pages_showTheSamePhone(self):
        one, other = self.page(), self.page()
        other.do("state")
        self.assertEqual(one.do("state")["screen"]["class"], "SampleController")
        revision = one.do("set", row=1, value=False)["revision"]
        pushed = other.receive()
        self.assertNotIn("ok", pushed)
        self.assertIs(pushed["state"]["screen"]["rows"][1]["value"], False)
        self.assertEqual(pushed["state"]["revision"], revision)

    def test_actingPage_isNotPushedItsOwnAnswer(self):
        page = self.page()
        page.do("set", row=1, value=False)
        page.do("state")
        self.assertTrue(page.quiet())

    def test_changeByItself_isPushedWithTheRowsLastAskedFor(self):
        page, silent = self.page(), self.page()
        page.do("state", **{"from": 5, "count": 1})
        with Drive(PROGRAM, self.bundle, root=self.root) as other:
            other.do("post", name="com.velmora.SampleChangedNotification")
        pushed = page.receive()["state"]
        self.assertEqual([row["value"] for row in pushed["screen"]["rows"]], [1])
        self.assertIn("darwinReceived", [event["event"] for event in pushed["events"]])
        self.assertTrue(silent.quiet(), "it has asked for nothing")

    def test_changeWhileAStateIsWritten_isPushedToo(self):
        page = self.page()
        page.do("state", **{"from": 5, "count": 1})
        with Drive(PROGRAM, self.bundle, root=self.root) as other:
            other.do("post", name="com.velmora.SampleUnsettledNotification")
        while (rows := page.receive()["state"]["screen"]["rows"])[0]["value"] == 0:
            pass
        self.assertEqual([row["value"] for row in rows], [1])

    def test_badMessages_areAnswered(self):
        page = self.page()
        for text in ("", "nonsense", "[]", '{"do":"fly"}'):
            page.socket.send(text)
            self.assertFalse(page.receive()["ok"])
        page.do("state")

    def test_staleScreenRowAndAlert_areRefusedToTheSlowerPage(self):
        one, other = self.page(), self.page()
        screen = one.do("state")["screen"]
        row, alert = screen["rows"][9], screen["rows"][7]
        self.assertEqual(other.do("state")["screen"], screen)
        one.do("delete", key=row["key"], screen=screen["id"])
        for fields in ({}, {"row": 7}):
            answer = other.attempt("delete", key=row["key"], screen=screen["id"], **fields)
            self.assertEqual((answer["ok"], answer["stale"]), (False, True))
            self.assertEqual(answer["state"]["screen"]["count"], 9)
        asked = other.do("tap", key=alert["key"])["presented"]["id"]
        one.do("choose", action="Close", presented=asked)
        one.do("tap", key=alert["key"])
        self.assertIs(other.attempt("choose", action="Close", presented=asked)["stale"], True)
        one.do("choose", action="Close")
        one.do("back", screen=screen["id"])
        answer = other.attempt("back", screen=screen["id"])
        self.assertEqual((answer["stale"], answer["state"]["screen"]["class"]), (True, "SettingsRootController"))

    def test_events_areToldToWhoWantsThem(self):
        quiet, other = self.page(), self.page()
        self.assertEqual(quiet.do("state", events=False)["events"], [])
        other.do("state")
        other.do("post", name="com.velmora.Other")
        self.assertEqual(quiet.do("post", name="com.velmora.Other")["events"], [])
        other.receive()
        other.do("set", row=1, value=False)
        self.assertEqual(quiet.receive()["state"]["events"], [])
        self.assertNotEqual(quiet.do("post", name="com.velmora.Other", events=True)["events"], [])

    def test_closedPage_leavesTheOthersAlone(self):
        page, gone = self.page(), self.page()
        gone.do("state")
        gone.close()
        page.do("set", row=1, value=False)
        self.assertIs(page.do("state")["screen"]["rows"][1]["value"], False)

    def test_image_isServedOnlyOnceAStateHasNamedIt(self):
        self.assertEqual(self.server.get("/image/icon").status, 404)
        self.assertEqual(self.server.get("/image/..%2F..%2Fetc%2Fpasswd").status, 404)

    def test_sound_isThatOfTheDevicesTone(self):
        path = os.path.join(self.tones, "Door.wav")
        with wave.open(path, "wb") as file:
            file.setnchannels(1)
            file.setsampwidth(1)
            file.setframerate(8000)
            file.writeframes(bytes(range(256)))
        answer = self.server.get("/sounds/texttone%3ADoor")
        with open(path, "rb") as file:
            self.assertEqual((answer.status, answer.body), (200, file.read()))
        self.assertEqual(answer.field("content-type"), "audio/wav")
        head = self.server.get("/sounds/texttone%3ADoor", method="HEAD")
        self.assertEqual(head.field("content-length"), str(len(answer.body)))

    def test_unknownSound_isNotFoundAndNamed(self):
        answer = self.server.get("/sounds/texttone%3ANothing")
        self.assertEqual((answer.status, answer.field("content-type")), (404, "text/plain; charset=utf-8"))
        self.assertIn(b"texttone:Nothing", answer.body)
        for name in ("Door", "texttone:..%2FDoor", "texttone:%2Fetc%2Fpasswd", "..%2FDoor.wav"):
            self.assertEqual(self.server.get("/sounds/" + name).status, 404, name)

    def test_soundWhileAPageWaits_comesAtOnce(self):
        page = self.page()
        page.begin("wait", event="never", seconds=1000)
        self.assertEqual(self.server.get("/sounds/texttone%3ACalendar%20Alert").status, 200)
        self.assertTrue(page.quiet())

    def test_wait_holdsUpItsOwnConnectionOnly(self):
        waiting, other = self.page(), self.page()
        waiting.do("state")
        wait = waiting.begin("wait", event="darwin", name="awaited", seconds=1000)
        behind = waiting.begin("state")
        self.assertIs(other.do("set", row=1, value=False)["screen"]["rows"][1]["value"], False)
        pushed = waiting.receive()
        self.assertNotIn("ok", pushed)
        self.assertIs(pushed["state"]["screen"]["rows"][1]["value"], False)
        other.do("post", name="awaited")
        while "ok" not in (answer := waiting.receive()):
            pass
        self.assertEqual((answer["id"], answer["ok"]), (wait, True))
        self.assertTrue(waiting.answer(behind)["ok"])

    def test_wait_endsInVainWhenItsTimeIsOver(self):
        page = self.page()
        page.do("state")
        answer = page.attempt("wait", event="never", seconds=0.05)
        self.assertIs(answer["ok"], False)
        self.assertIn("never", answer["error"])
        page.do("state")

    def test_waits_ofManyConnectionsEndInTheirOwnTime(self):
        pages = [self.page() for _ in range(8)]
        waits = [(page, page.begin("wait", event="never", seconds=seconds / 100)) for seconds, page in enumerate(pages)]
        for page, wait in reversed(waits):
            self.assertIs(page.answer(wait)["ok"], False)

    def test_waitOfAConnectionThatGoes_leavesTheOthersAlone(self):
        for _ in range(20):
            waiting = Page(self.server)
            waiting.begin("wait", event="never", seconds=1000)
            waiting.begin("set", row=1, value=False)
            waiting.close()
        page = self.page()
        self.assertIs(page.do("state")["screen"]["rows"][1]["value"], True, "what stood behind a wait is not done")

    def test_commandsSentBeforeClosing_areDone(self):
        going = Page(self.server)
        going.begin("set", row=1, value=False)
        going.close()
        page = self.page()
        while page.do("state")["screen"]["rows"][1]["value"]:
            continue

    def test_longMessage_costsItsConnectionOnly(self):
        page, other = self.page(), self.page()
        page.socket.send('{"do":"state","text":"' + "x" * (1 << 20) + '"}')
        self.assertEqual(page.socket.close_code(), 1009)
        other.do("state")

    def test_senderThatGoesOn_isAnsweredInItsTurn(self):
        flooding, other = self.page(), self.page()
        over = threading.Event()

        def read():
            while not over.is_set():
                if not select.select([flooding.socket.connection], [], [], 0.01)[0]:
                    continue
                if flooding.socket.receive()[0] is None:
                    return

        def write():
            command = json.dumps({"do": "state", "from": 0, "count": 0, "padding": "x" * 1000})
            while not over.is_set():
                flooding.socket.send(command)
        threads = [threading.Thread(target=work) for work in (read, write)]
        for thread in threads:
            thread.start()
        try:
            for value in (False, True) * 10:
                self.assertIs(other.do("set", row=1, value=value)["screen"]["rows"][1]["value"], value)
        finally:
            over.set()
            # Whoever is stuck in a send gets an error now.
            flooding.socket.connection.shutdown(socket.SHUT_RDWR)
            for thread in threads:
                thread.join()
        other.do("state")

    def test_oldSecret_isClosedWithItsCodeAndNobodyIsThere(self):
        with WebSocket(self.server, first=json.dumps({"secret": "0" * 64})) as stranger:
            stranger.send(json.dumps({"do": "set", "row": 1, "value": False}))
            self.assertEqual(stranger.close_code(), 4401)
        with WebSocket(self.server, first=json.dumps({"do": "set", "row": 1, "value": False})) as stranger:
            self.assertEqual(stranger.close_code(), 4401)
        self.assertIs(self.page().do("state")["screen"]["rows"][1]["value"], True)

    def test_signal_endsWithStatusZero(self):
        for ending in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(ending):
                server = EchoServer(PROGRAM, "serve", "--root", self.root, "--bundle", self.bundle)
                self.addCleanup(server.clean)
                page = Page(server)
                page.do("state")
                server.process.send_signal(ending)
                self.assertEqual(server.process.wait(PATIENCE), 0)
                page.close()

    def test_signal_endsAWaitToo(self):
        page = self.page()
        page.do("state")
        page.socket.send(json.dumps({"do": "wait", "event": "never", "seconds": 1000000}))
        self.server.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.server.process.wait(PATIENCE), 0)

    def test_portInUse_isOneLineAndStatusTwo(self):
        result = subprocess.run([PROGRAM, "serve", "--root", self.root, "--bundle", self.bundle, "--port",
                                 str(self.server.port)], capture_output=True, text=True, timeout=PATIENCE)
        self.assertEqual(result.returncode, 2)
        self.assertIn(str(self.server.port), result.stderr)
        self.assertEqual(result.stderr.count("\n"), 1)
        self.assertEqual(result.stdout, "")


class Restarts(unittest.TestCase):
    """Starts on the same root, with and without the same port."""

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = directory.name
        self.runtime = self.made("runtime", 0o700)
        self.root = os.path.join(self.directory, "phone")

    def made(self, name, mode):
        path = os.path.join(self.directory, name)
        os.mkdir(path)
        os.chmod(path, mode)
        return path

    def start(self, *arguments, root=None, runtime=None):
        environment = {**os.environ, "XDG_RUNTIME_DIR": runtime or self.runtime}
        if runtime == "":
            del environment["XDG_RUNTIME_DIR"]
        server = EchoServer(PROGRAM, "serve", "--root", root or self.root, "--bundle",
                            os.path.join(FIXTURES, "Sample.bundle"), *arguments, env=environment)
        self.addCleanup(server.clean)
        return server

    def end(self, server):
        """Ends it as its user would; gives what it said on standard error."""
        server.process.terminate()
        output, errors = server.process.communicate(timeout=PATIENCE)
        self.assertEqual((output, server.process.returncode), ("", 0))
        return errors

    def restarted(self, server, *arguments, **options):
        self.end(server)
        return self.start("--port", str(server.port), *arguments, **options)

    def kept(self):
        """What outlives a program; the pages that lead to those that run do not."""
        folder = os.path.join(self.runtime, "quietrix-settings")
        return [os.path.join(folder, name) for name in sorted(os.listdir(folder)) if not name.endswith(".html")]

    def test_sameRootAndPort_takeTheSecretOverWhicheverWayItEnded(self):
        first = self.start("--port", str(free_port()))
        second = self.restarted(first)
        self.assertEqual(second.url, first.url)
        second.process.kill()
        second.process.wait()
        third = self.start("--port", str(first.port))
        self.assertEqual(third.url, first.url)
        Page(third).close()
        self.assertEqual(self.end(third), "")

    def test_file_isItsOwnersOnly(self):
        self.start("--port", str(free_port()))
        file, = self.kept()
        self.assertEqual(os.stat(file).st_mode & 0o777, 0o600)
        self.assertEqual(os.stat(os.path.dirname(file)).st_mode & 0o777, 0o700)

    def test_newSecret_shutsOldPagesOutForGood(self):
        first = self.start("--port", str(free_port()))
        second = self.restarted(first, "--new-secret")
        self.assertNotEqual(second.secret, first.secret)
        with WebSocket(second, first=json.dumps({"secret": first.secret})) as page:
            self.assertEqual(page.close_code(), 4401)
        self.assertEqual(self.restarted(second).secret, second.secret)

    def test_anyFreePort_keepsNothing(self):
        for port in ([], ["--port", "0"]):
            self.end(self.start(*port))
        self.assertEqual([files for _, _, files in os.walk(self.runtime) if files], [])

    def test_otherRootOnThePort_hasItsOwnSecret(self):
        first = self.start("--port", str(free_port()))
        other = self.restarted(first, root=os.path.join(self.directory, "other"))
        self.assertNotEqual(other.secret, first.secret)
        self.assertEqual(self.restarted(other).secret, first.secret)

    def test_twoProgramsOnOneRoot_haveAFileEach(self):
        one, other = self.start("--port", str(free_port())), self.start("--port", str(free_port()))
        self.assertNotEqual(one.secret, other.secret)
        self.assertEqual(len(self.kept()), 2)
        self.assertEqual(self.restarted(one).secret, one.secret)
        self.assertEqual(self.restarted(other).secret, other.secret)

    def test_startOnAPortInUse_leavesTheRunningOnesSecret(self):
        first = self.start("--port", str(free_port()))
        with self.assertRaisesRegex(RuntimeError, "in use"):
            self.start("--port", str(first.port), "--new-secret")
        self.assertEqual(self.restarted(first).secret, first.secret)

    def test_withoutARuntimeDirectory_eachStartHasItsOwnAndSaysNothing(self):
        first = self.start("--port", str(free_port()), runtime="")
        second = self.restarted(first, runtime="")
        self.assertNotEqual(second.secret, first.secret)
        self.assertEqual(self.end(second), "")

    def test_runtimeDirectoryThatOthersMayEnter_isNotUsedAndNamed(self):
        open_one = self.made("open", 0o755)
        first = self.start("--port", str(free_port()), runtime=open_one)
        errors = self.end(first)
        # Neither the secret is kept there nor the way to the running server.
        self.assertEqual([open_one in line for line in errors.splitlines()], [True, True], errors)
        self.assertEqual(os.listdir(open_one), [])

    def test_pagesThatComeAndGoWhileTheProgramIsStartedAnew_goOn(self):
        server = self.start("--port", str(free_port()))
        for value in (False, True, False):
            server = self.restarted(server)
            page = Page(server)
            self.assertIs(page.do("set", row=1, value=value)["screen"]["rows"][1]["value"], value)
            page.close()


if __name__ == "__main__":
    PROGRAM, FIXTURES = sys.argv[1:3]
    result = unittest.main(argv=[sys.argv[0], *sys.argv[3:]], exit=False).result
    sys.exit(0 if result.wasSuccessful() and result.testsRun > 0 else 1)
