# SPDX-License-Identifier: MIT
"""A phone that is recorded while a test drives it, and replays of what was recorded."""
import json
import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "drive"))
from Drive import Drive  # noqa: E402


class Story(Drive):
    """A Drive whose program writes the recording `file`."""

    def __init__(self, program, bundle, file, **options):
        self.file = file
        super().__init__(program, bundle, channel=["record", file], **options)


def replay(program, bundle, file, *options, environment=None):
    """The ended process of a replay, with its texts."""
    return subprocess.run([program, "replay", "--bundle", bundle, file, *options], stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, timeout=300, env=environment)


def lines(file):
    """The recording's lines as objects."""
    with open(file, "rb") as recording:
        return [json.loads(line) for line in recording.read().splitlines()]


def write(file, objects):
    """A recording of these lines."""
    with open(file, "w", encoding="utf-8") as recording:
        for each in objects:
            recording.write(json.dumps(each, ensure_ascii=False, separators=(",", ":")) + "\n")
