# SPDX-License-Identifier: MIT
"""One process of the program under test, by its own id only: what is killed here was started here."""
import os
import select
import signal
import sys

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from Drive import Drive  # noqa: E402


class Process(Drive):
    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self._read_errors = 0

    def ask(self, line):
        """The answer to one line, as it is."""
        self.send(line.encode() + b"\n")
        return self.receive()

    def answers_within(self, seconds):
        """Whether anything of an answer has come by then."""
        return bool(select.select([self.process.stdout], [], [], seconds)[0])

    def rest_of_output(self):
        """What an ended process has written and nobody has read."""
        pieces = [self._buffer]
        while piece := os.read(self.process.stdout.fileno(), 1 << 20):
            pieces.append(piece)
        return b"".join(pieces)

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()

    def shells(self):
        """The ids of this process's system shell; it has one child."""
        children = f"/proc/{self.process.pid}/task/{self.process.pid}/children"
        with open(children, encoding="ascii") as file:
            found = [int(child) for child in file.read().split()]
        return [child for child in found if self._is_shell(child)]

    @staticmethod
    def _is_shell(child):
        try:
            with open(f"/proc/{child}/stat", encoding="utf-8") as file:
                return "(SpringBoard)" in file.read()
        except OSError:
            return False

    def new_error_lines(self):
        """What has come on standard error since the last time, without the name of the program."""
        size = os.fstat(self._errors.fileno()).st_size
        text = os.pread(self._errors.fileno(), size - self._read_errors, self._read_errors).decode(errors="replace")
        self._read_errors = size
        return [line.split(": ", 1)[-1] if line.startswith(("quietrix-settings: ", "SpringBoard: ")) else line
                for line in text.splitlines()]
