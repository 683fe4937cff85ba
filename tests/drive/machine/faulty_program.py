#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The program with a fault planted between it and whoever drives it: faulty_program.py, with the environment variables
REAL_PROGRAM and FAULT. What it is started with goes on to the real program.

drop    every third movement of a control is answered, and never done
lose    each write of the profiles file loses the last profile, once there are two
echo    a command that is done is answered twice
shift   a change that names a row is done to the one after it
"""
import json
import os
import plistlib
import subprocess
import sys

PROFILES = "var/mobile/Library/Preferences/com.velmora.quietrix.profiles.plist"


def lose_a_profile(root):
    path = os.path.join(root, PROFILES)
    try:
        with open(path, "rb") as file:
            contents = plistlib.load(file)
    except FileNotFoundError:
        return
    if len(contents["profiles"]) > 1:
        contents["profiles"].pop()
        with open(path + ".faulty", "wb") as file:
            plistlib.dump(contents, file, fmt=plistlib.FMT_BINARY)
        os.rename(path + ".faulty", path)


def main():
    fault = os.environ["FAULT"]
    root = sys.argv[sys.argv.index("--root") + 1]
    moves = 0
    with subprocess.Popen([os.environ["REAL_PROGRAM"], *sys.argv[1:]], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE) as program:
        for line in sys.stdin.buffer:
            try:
                command = json.loads(line)
            except ValueError:
                command = {}
            is_move = isinstance(command, dict) and command.get("do") == "set"
            moves += is_move
            if is_move and fault == "drop" and moves % 3 == 0:
                line = json.dumps({**command, "do": "state"}).encode() + b"\n"
            if is_move and fault == "shift" and isinstance(command.get("row"), int):
                line = json.dumps({**command, "row": command["row"] + 1}).encode() + b"\n"
            program.stdin.write(line)
            program.stdin.flush()
            answer = program.stdout.readline()
            if fault == "lose":
                lose_a_profile(root)
            sys.stdout.buffer.write(answer * (2 if fault == "echo" and is_move else 1))
            sys.stdout.buffer.flush()
        program.stdin.close()
        return program.wait()


if __name__ == "__main__":
    sys.exit(main())
