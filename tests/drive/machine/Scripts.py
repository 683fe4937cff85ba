# SPDX-License-Identifier: MIT
"""Entries of a run and the drive script that holds them.

An entry is a command (a dictionary with "do"), a line that is sent as it is ({"line": TEXT}), or an outside change (a
dictionary with "outside"). In a script the first two are what `drive` takes, and an outside change is a comment line,
which `drive` refuses and a replay understands.
"""
import json

OUTSIDE = "# outside "


def line_of(entry):
    """What the program is sent for a command or a line."""
    return entry["line"] if "line" in entry else json.dumps(entry)


def command_of(entry):
    """The command that the program will see in it; an empty one for a line that is no JSON object."""
    if "line" not in entry:
        return entry
    try:
        value = json.loads(entry["line"])
    except ValueError:
        return {}
    return value if isinstance(value, dict) else {}


def script_of(entries, comments=()):
    lines = [f"# {comment}" for comment in comments]
    for entry in entries:
        lines.append(OUTSIDE + json.dumps(entry) if "outside" in entry else line_of(entry))
    return "\n".join(lines) + "\n"


def entries_of(script):
    entries = []
    for line in script.splitlines():
        if line.startswith(OUTSIDE):
            entries.append(json.loads(line[len(OUTSIDE):]))
        elif line and not line.startswith("# "):
            entries.append(_parsed(line))
    return entries


def _parsed(line):
    try:
        value = json.loads(line)
    except ValueError:
        return {"line": line}
    is_command = isinstance(value, dict) and isinstance(value.get("do"), str)
    return value if is_command else {"line": line}
