# SPDX-License-Identifier: MIT
"""The serve channel of the real program: test_serve.py PROGRAM FIXTURES [unittest arguments]."""
import json
import os
import select
import signal
import subprocess
import sys
import tempfile
import unittest
import wave

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [os.path.join(HERE, "server"), os.path.join(HERE, "..", "drive")]
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

    def attempt(self, command, **fields):
        """Sends a command and gives its answer; pushes that come first are kept."""
        self.id += 1
        self.socket.send(json.dumps({"do": command, "id": self.id, **fields}))
        while (message := self.receive()).get("id") != self.id:
            pass
        return message

    def do(self, command, **fields):
        answer = self.attempt(command, **fields)
        assert answer["ok"], answer["error"]
        return answer["state"]

    def quiet(self):
        """Whether nothing has come."""
        return not select.select([self.socket.connection], [], [], 0)[0]

    def close(self):
        self.socket.__exit__()


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
        self.assertRegex(self.server.url, r"^Quietrix Settings is at http://127\.0\.0\.1:\d+/\?secret=[0-9a-f]{64}$")

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

    def test_soundWhileTheApplicationWaits_comesAfterwards(self):
        page = self.page()
        page.do("state")
        page.socket.send(json.dumps({"do": "wait", "event": "never", "seconds": 0.2}))
        self.assertEqual(self.server.get("/sounds/texttone%3ACalendar%20Alert").status, 200)

    def test_signal_endsWithStatusZero(self):
        for ending in (signal.SIGTERM, signal.SIGINT):
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


if __name__ == "__main__":
    PROGRAM, FIXTURES = sys.argv[1:3]
    result = unittest.main(argv=[sys.argv[0], *sys.argv[3:]], exit=False).result
    sys.exit(0 if result.wasSuccessful() and result.testsRun > 0 else 1)
