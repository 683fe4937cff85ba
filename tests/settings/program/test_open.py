# SPDX-License-Identifier: MIT
"""Servers that are found, started by need and end by themselves: test_open.py PROGRAM FIXTURES [unittest arguments]."""
import fcntl
import hashlib
import os
import re
import select
import shutil
import signal
import socket
import stat
import struct
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "channels", "server"))
from loopback_client import PATIENCE, TEXT, WebSocket  # noqa: E402

PROGRAM = ""
ADDRESS = re.compile(r"^Quietrix Settings is at (http://127\.0\.0\.1:(\d+)/#secret=([0-9a-f]{64}))$")


class Address:
    """What a client needs to know of a server."""

    def __init__(self, line):
        self.url, port, self.secret = ADDRESS.match(line).groups()
        self.port = int(port)
        self.host = f"127.0.0.1:{port}"
        self.origin = f"http://{self.host}"

    def connect(self):
        return socket.create_connection(("127.0.0.1", self.port), timeout=PATIENCE)

    def fields(self, **changes):
        fields = {"Host": self.host, **{name.replace("_", "-"): value for name, value in changes.items()}}
        return "".join(f"{name}: {value}\r\n" for name, value in fields.items() if value is not None)


class OpenTest(unittest.TestCase):
    def setUp(self):
        self.directory = Path(tempfile.mkdtemp(prefix="quietrix-open-"))
        self.addCleanup(shutil.rmtree, self.directory)
        self.root = str(self.directory / "phone")
        self.runtime = self.directory / "run"
        self.runtime.mkdir(mode=0o700)
        self.programs = self.directory / "bin"
        self.programs.mkdir()
        self.opened = self.directory / "opened"
        self.put("xdg-open", f'printf "%s\\n" "$@" >>"{self.opened}"')
        self.put("systemctl", "exit 3")
        self.environment = {**os.environ, "PATH": f"{self.programs}:{os.environ['PATH']}", "DISPLAY": ":none",
                            "XDG_RUNTIME_DIR": str(self.runtime), "XDG_DATA_HOME": str(self.directory / "data")}
        self.addCleanup(self.end_servers)

    def put(self, name, script):
        (self.programs / name).write_text(f"#!/bin/sh\n{script}\n", encoding="utf-8")
        (self.programs / name).chmod(0o755)

    def records(self):
        return sorted(self.runtime.glob("quietrix-settings/running-*"))

    def end_servers(self):
        for record in self.records():
            process = int(record.stem.split("-")[2])
            # Only one of ours has the directory in its environment.
            environment = Path(f"/proc/{process}/environ")
            if environment.exists() and str(self.runtime).encode() in environment.read_bytes():
                os.kill(process, signal.SIGTERM)
                self.until_ended(process)

    def end_unfound_server(self):
        """The one that has this test's directory in its environment."""
        servers = []
        for process in Path("/proc").glob("[0-9]*"):
            try:
                if b"\0serve\0" in (process / "cmdline").read_bytes() and str(self.directory).encode() in (process / "environ").read_bytes():
                    servers.append(int(process.name))
            except OSError:
                continue
        [server] = servers
        os.kill(server, signal.SIGTERM)
        self.until_ended(server)

    def until_ended(self, process):
        try:
            descriptor = os.pidfd_open(process)
        except ProcessLookupError:
            return
        self.assertTrue(select.select([descriptor], [], [], PATIENCE)[0], "the server does not end")
        os.close(descriptor)

    def start(self, *arguments, **options):
        return subprocess.Popen([PROGRAM, *arguments], env=self.environment, stdin=subprocess.DEVNULL, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)

    def open(self, *arguments):
        """Ends, although the server that it may have started goes on."""
        process = self.start("open", *(arguments or ("--root", self.root)))
        output, errors = process.communicate(timeout=PATIENCE)
        return process.returncode, output, errors

    def opens(self, *arguments):
        status, output, errors = self.open(*arguments)
        self.assertEqual((status, errors), (0, ""))
        return Address(output.rstrip("\n"))

    def serve(self, *arguments):
        server = self.start("serve", "--root", self.root, *arguments)
        self.addCleanup(server.stdout.close)
        self.addCleanup(server.stderr.close)
        self.addCleanup(server.wait)
        self.addCleanup(server.kill)
        return server, Address(server.stdout.readline().rstrip("\n"))

    def test_open_startsAServerOnce(self):
        first, second = self.opens(), self.opens()
        self.assertEqual(first.url, second.url)
        [record] = self.records()
        self.assertEqual(stat.S_IMODE(record.stat().st_mode), 0o600)
        with first.connect() as connection:
            connection.sendall(f"GET / HTTP/1.1\r\n{first.fields()}\r\n".encode())
            self.assertTrue(connection.recv(64).startswith(b"HTTP/1.1 "))

    def test_open_givesTheBrowserAFileAndNoSecret(self):
        os.mkfifo(self.opened)
        process = self.start("open", "--root", self.root)
        with open(self.opened, encoding="utf-8") as pipe:
            shown = Path(pipe.read().rstrip("\n"))
        output, _ = process.communicate(timeout=PATIENCE)
        self.assertEqual([shown], self.records())
        self.assertIn(f'content="0; url={Address(output.rstrip()).url}"', shown.read_text(encoding="utf-8"))

    def test_twoAtOnce_showTheSameServer(self):
        both = [self.start("open", "--root", self.root) for _ in range(2)]
        lines = [process.communicate(timeout=PATIENCE)[0] for process in both]
        self.assertEqual(lines[0], lines[1])
        self.assertEqual(len(self.records()), 1)

    def refused(self, *arguments):
        """What it says in one line instead of an address."""
        status, output, errors = self.open(*arguments)
        self.assertEqual((status, output, errors.count("\n")), (2, "", 1), errors)
        return errors

    def test_anotherThatDoesNotEnd_isNamed(self):
        # Stopped, say, at a terminal.
        folder = self.runtime / "quietrix-settings"
        folder.mkdir(mode=0o700)
        opening = folder / ("opening-" + hashlib.sha256(self.root.encode()).hexdigest())
        with open(opening, "w+", encoding="ascii", opener=lambda path, flags: os.open(path, flags, 0o600)) as held:
            fcntl.flock(held, fcntl.LOCK_EX)
            self.assertIn("Another process has been opening the page of this phone for 1 second;",
                          self.refused("--root", self.root, "--patience", "1"))
            held.write("4711\n")
            held.flush()
            self.assertIn("The process 4711 has been opening", self.refused("--root", self.root, "--patience", "1"))
            fcntl.flock(held, fcntl.LOCK_UN)
            self.opens()
            held.seek(0)
            self.assertNotIn("4711", held.read(), "whoever has it is who stands there")

    def test_serverThatDoesNotBegin_isEnded(self):
        locks = Path(self.root, ".locks")
        locks.mkdir(mode=0o700, parents=True)
        with open(locks / "root", "w+", encoding="ascii", opener=lambda path, flags: os.open(path, flags, 0o600)) as held:
            def lock_byte(position):
                f_ofd_setlk = 37
                fcntl.fcntl(held, f_ofd_setlk, struct.pack("hhqqi4x", fcntl.F_WRLCK, os.SEEK_SET, position, 1, 0))

            # Whoever fills a root has the second byte, and the next one waits with the first.
            lock_byte(1)
            self.assertIn("The server that was started said nothing for 1 second and was ended;",
                          self.refused("--root", self.root, "--patience", "1"))
            self.assertEqual(self.records(), [])
            lock_byte(0)

    def test_serviceManagerThatDoesNotAnswer_isNotNeeded(self):
        self.put("systemctl", "exec sleep 1000")
        usual = str(self.directory / "data/quietrix/phone")
        self.assertEqual(self.opens("--root", usual).url, self.opens("--root", usual).url)

    def test_serverThatRuns_isFoundByItsRootHoweverWritten(self):
        server, address = self.serve()
        os.symlink(self.root, self.directory / "link")
        self.assertEqual(self.opens("--root", str(self.directory / "link")).url, address.url)
        self.assertNotEqual(self.opens("--root", str(self.directory / "other")).url, address.url)
        os.chdir(self.directory)
        self.addCleanup(os.chdir, "/")
        self.assertEqual(self.opens("--root", "./new/").url, self.opens("--root", str(self.directory / "new")).url)
        self.assertEqual(len(self.records()), 3)
        server.terminate()
        self.assertEqual(server.wait(PATIENCE), 0)
        self.assertEqual(len(self.records()), 2, "an ended server takes its file away")

    def test_serverThatWasKilled_isNotFound(self):
        server, address = self.serve()
        [left] = self.records()
        server.kill()
        server.wait()
        self.assertTrue(left.exists())
        self.assertNotEqual(self.opens().url, address.url)
        self.assertFalse(left.exists())

    def test_serverThatCannotBegin_isOneLine(self):
        Path(self.root).write_text("no directory", encoding="utf-8")
        status, output, errors = self.open()
        self.assertEqual((status, output, errors.count("\n")), (2, "", 1))
        self.assertTrue(errors.startswith("quietrix-settings: "), errors)
        self.assertIn(self.root, errors)
        self.assertEqual(self.records(), [])

    def test_foreignRuntimeDirectory_isNotUsed(self):
        self.runtime.chmod(0o755)
        server, _ = self.serve()
        self.assertFalse((self.runtime / "quietrix-settings").exists())
        server.terminate()
        self.assertIn("Other programs do not find this server", server.stderr.read())
        self.runtime.chmod(0o700)

    def test_withoutAPlaceToFindServers_saysWhyNoBrowserOpens(self):
        for mode, directory, reason in ((0o700, "", "XDG_RUNTIME_DIR is not set."), (0o755, str(self.runtime), "is open to other users."),
                                        (0o700, "run", '"run" is no absolute path.')):
            with self.subTest(reason):
                self.runtime.chmod(mode)
                self.environment["XDG_RUNTIME_DIR"] = directory
                process = self.start("open", "--root", self.root)
                output, errors = process.communicate(timeout=PATIENCE)
                Address(output.rstrip("\n"))
                self.end_unfound_server()
                self.assertEqual((process.returncode, errors.count("\n")), (0, 1))
                self.assertIn("No browser is opened", errors)
                self.assertTrue(errors.endswith(reason + "\n"), errors)
                self.assertFalse(self.opened.exists())
        self.runtime.chmod(0o700)

    def test_socketOfTheServiceManager_isAskedForTheUsualRoot(self):
        calls = self.directory / "calls"
        self.put("systemctl", f"""echo "$*" >>"{calls}"
[ "$4" = quietrix-settings.service ] || exit 0
mkfifo "{self.directory}/started"
"{PROGRAM}" serve </dev/null >"{self.directory}/started" 2>/dev/null &
read -r line <"{self.directory}/started"
""")
        self.assertEqual(self.opens("--root", self.root).port, self.opens("--root", self.root).port)
        self.assertFalse(calls.exists(), "another root is none of the service manager's")
        self.opens("--root", str(self.directory / "data/quietrix/phone"))
        self.assertEqual(calls.read_text(encoding="utf-8").splitlines(),
                         ["--user --quiet is-active quietrix-settings.socket", "--user --quiet start quietrix-settings.service"])
        self.assertEqual(len(self.records()), 2)

    def activated(self, listener, *arguments, process="$$", count="1"):
        """Started as a service manager does, with the socket as descriptor 3."""
        script = f'exec 3<&{listener.fileno()}; LISTEN_PID={process} LISTEN_FDS={count} exec "$0" "$@"'
        server = subprocess.Popen(["sh", "-c", script, PROGRAM, "serve", "--root", self.root, *arguments],
                                  env=self.environment, pass_fds=[listener.fileno()], stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        for cleanup in (server.stdout.close, server.stderr.close, server.wait, server.kill):
            self.addCleanup(cleanup)
        return server

    def listener(self, host="127.0.0.1"):
        listener = socket.create_server((host, 0))
        self.addCleanup(listener.close)
        return listener

    def test_handedOverSocket_isServedAgainAfterAnIdleEnd(self):
        listener = self.listener()
        server = self.activated(listener, "--idle", "0.005")
        address = Address(server.stdout.readline().rstrip("\n"))
        self.assertEqual(address.port, listener.getsockname()[1])
        self.assertEqual(server.wait(PATIENCE), 0)
        self.assertEqual(self.records(), [])
        # Somebody comes while nobody serves, waits for the next one, and keeps that from ending.
        page = socket.create_connection(listener.getsockname(), timeout=PATIENCE)
        server = self.activated(listener, "--idle", "0.05")
        self.assertEqual(Address(server.stdout.readline().rstrip("\n")).url, address.url)
        address.connect = lambda: page
        with WebSocket(address) as socket_:
            # Longer than its patience.
            socket_.send('{"do":"wait","event":"none","seconds":4}')
            kind, payload = socket_.receive()
            self.assertEqual(kind, TEXT)
            self.assertIn('"ok":false', payload if isinstance(payload, str) else payload.decode())
            self.assertIsNone(server.poll())
        self.assertEqual(server.wait(PATIENCE), 0)

    def test_foundByOpen_waitsForThePageAnew(self):
        server, address = self.serve("--idle", "0.05")
        with WebSocket(address):
            [record] = self.records()
            os.utime(record, (0, 0))
            self.assertEqual(self.opens().url, address.url)
            begin = time.monotonic()
        self.assertEqual(server.wait(PATIENCE), 0)
        self.assertGreaterEqual(time.monotonic() - begin, 2 * 0.05 * 60)
        self.assertEqual(list((self.runtime / "quietrix-settings").glob("*running*")), [])

    def test_handedOverSocket_isNotGivenOn(self):
        server = self.activated(self.listener())
        server.stdout.readline()
        children = Path(f"/proc/{server.pid}/task/{server.pid}/children").read_text(encoding="ascii").split()
        self.assertTrue(children, "the system shell runs")
        for child in children:
            variables = Path(f"/proc/{child}/environ").read_bytes().split(b"\0")
            self.assertEqual([each for each in variables if each.startswith(b"LISTEN_")], [])

    def test_otherSockets_areRefused(self):
        for listener, count, reason in ((self.listener(), "2", '"2" sockets'), (self.listener("0.0.0.0"), "1", "127.0.0.1"),
                                        (socket.socket(), "1", "listens")):
            self.addCleanup(listener.close)
            server = self.activated(listener, count=count)
            output, errors = server.communicate(timeout=PATIENCE)
            self.assertEqual((server.returncode, output, errors.count("\n")), (2, "", 1), errors)
            self.assertIn(reason, errors)

    def test_socketForAnotherProcess_isLeftAlone(self):
        listener = self.listener()
        server = self.activated(listener, process="1")
        self.assertNotEqual(Address(server.stdout.readline().rstrip("\n")).port, listener.getsockname()[1])

    def test_readiness_isToldOnce(self):
        manager = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(manager.close)
        manager.bind(str(self.directory / "notify"))
        manager.settimeout(PATIENCE)
        self.environment["NOTIFY_SOCKET"] = str(self.directory / "notify")
        self.serve()
        self.assertEqual(manager.recv(100), b"READY=1")

    def test_idleTime_isCheckedAndNotForAWatchedServer(self):
        for arguments in (("--idle", "0"), ("--idle", "soon"), ("--idle", "1", "--watch")):
            server = self.start("serve", "--root", self.root, *arguments)
            output, errors = server.communicate(timeout=PATIENCE)
            self.assertEqual((server.returncode, output, errors.count("\n")), (2, "", 1), errors)
            self.assertIn("--idle", errors)


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    sys.argv.pop(1)
    unittest.main()
