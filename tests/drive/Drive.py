# SPDX-License-Identifier: MIT
"""Drives a real Settings application through its standard input and output, for end-to-end tests.

    with Drive(program, bundle, device={"clock": "2026-11-20T09:00:00"}) as phone:
        phone.tap(phone.row(name="Detail"))
        assert phone.screen["class"] == "SampleDetailController"

Each command waits for its answer, at most `time_limit` seconds of real time; the process is ended by its id when
the block is left, and its root directory, unless one was given, is removed.
"""
import json
import os
import select
import shutil
import subprocess
import tempfile
import time


class Refused(AssertionError):
    """The application answered a command with "ok" false."""


class Drive:
    def __init__(self, program, bundle, root=None, device=None, time_limit=180, environment=None,
                 channel=("drive",)):
        self._own_root = tempfile.mkdtemp(prefix="quietrix-drive-") if root is None else None
        self.root = root or os.path.join(self._own_root, "phone")
        self._time_limit = time_limit
        self._buffer = b""
        self._errors = tempfile.TemporaryFile()
        arguments = [program, *channel, "--root", self.root, *(["--bundle", bundle] if bundle else [])]
        for key, value in (device or {}).items():
            arguments += ["--device", f"{key}={value}"]
        self.process = subprocess.Popen(arguments, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=self._errors, env=environment)
        os.set_blocking(self.process.stdout.fileno(), False)
        self.state = None
        self.answer = None
        # The commands so far.
        self.sent = []

    def __enter__(self):
        try:
            self.do("state")
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends the input, waits for the process, and removes the root if it was made here."""
        try:
            self.process.stdin.close()
        except BrokenPipeError:
            pass
        try:
            self.process.wait(self._time_limit)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            raise
        finally:
            self.process.stdout.close()
            self._errors.close()
            if self._own_root:
                shutil.rmtree(self._own_root, ignore_errors=True)
                self._own_root = None

    def send(self, data):
        """Writes bytes as they are."""
        self.process.stdin.write(data)
        self.process.stdin.flush()

    def receive(self):
        """The next answer."""
        deadline = time.monotonic() + self._time_limit
        while b"\n" not in self._buffer:
            left = deadline - time.monotonic()
            readable, _, _ = select.select([self.process.stdout], [], [], max(left, 0))
            if not readable:
                raise AssertionError(f"no answer within {self._time_limit} s; standard error:\n{self.errors()}")
            piece = os.read(self.process.stdout.fileno(), 1 << 20)
            if not piece:
                raise AssertionError(f"the application ended without an answer; standard error:\n{self.errors()}")
            self._buffer += piece
        line, _, self._buffer = self._buffer.partition(b"\n")
        self.answer = json.loads(line)
        self.state = self.answer["state"]
        return self.answer

    def attempt(self, command, **fields):
        """Sends one command and gives its answer, whatever it is."""
        self.sent.append({"do": command, **fields})
        self.send(json.dumps(self.sent[-1]).encode() + b"\n")
        return self.receive()

    def do(self, command, **fields):
        """Sends one command and gives the state; an answer that is not ok is an error."""
        answer = self.attempt(command, **fields)
        if not answer["ok"]:
            raise Refused(f"{command} {fields}: {answer['error']}")
        return self.state

    def errors(self):
        """What the application has written to standard error so far."""
        self._errors.seek(0)
        return self._errors.read().decode(errors="replace")

    # What the user does.

    def tap(self, row):
        return self.do("tap", row=self._index(row))

    def set(self, row, value):
        return self.do("set", row=self._index(row), value=value)

    def delete(self, row):
        return self.do("delete", row=self._index(row))

    def choose(self, title):
        return self.do("choose", action=title)

    def bar(self, side, item=0):
        return self.do("bar", side=side, item=item)

    def back(self):
        return self.do("back")

    # What the user sees.

    @property
    def screen(self):
        return self.state["screen"]

    @property
    def rows(self):
        return self.screen["rows"]

    @property
    def presented(self):
        """What is presented, without its number, which is another each time."""
        shown = self.state["presented"]
        return shown and {field: value for field, value in shown.items() if field != "id"}

    @property
    def presented_id(self):
        return self.state["presented"]["id"]

    @property
    def events(self):
        return self.state["events"]

    def events_of(self, kind):
        return [event for event in self.events if event["event"] == kind]

    def names(self):
        return [row["name"] for row in self.rows]

    def row(self, **fields):
        """The one row with these fields."""
        found = [row for row in self.rows if all(row[key] == value for key, value in fields.items())]
        if len(found) != 1:
            raise AssertionError(f"{len(found)} rows with {fields}, of {self.names()}")
        return found[0]

    def path(self, phone_path):
        """Where a phone path is on this machine."""
        return os.path.join(self.root, phone_path.lstrip("/"))

    @staticmethod
    def _index(row):
        return row if isinstance(row, int) else row["index"]
