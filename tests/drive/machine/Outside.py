# SPDX-License-Identifier: MIT
"""Changes of the profiles file as an engine makes them that rewrites it: the whole file in one piece, at a moment when
nobody else writes."""
import os
import plistlib
import socket

from Disk import profiles_of, with_entry, without

NOTIFICATIONS = "private/var/run/notifications"


def changed(root, change):
    """The root after the change, or None where there is nothing to change."""
    kind = change["change"]
    if kind == "add":
        entry = change["entry"]
        is_there = entry["identifier"] in profiles_of(root)
        return None if is_there else {**root, "profiles": root["profiles"] + [entry]}
    if kind == "root":
        return {**root, **change["values"]}
    if kind == "foreign":
        return {**root, "profiles": root["profiles"] + [change["value"]]}
    identifiers = list(profiles_of(root))
    if not identifiers:
        return None
    identifier = identifiers[change["profile"] % len(identifiers)]
    entry = profiles_of(root)[identifier]
    if kind == "set":
        return with_entry(root, identifier, {**entry, **change["values"]})
    if kind == "forget":
        return with_entry(root, identifier, {key: value for key, value in entry.items() if key != change["key"]})
    if kind == "delete":
        return without(root, identifier)
    # Last: to the end of the list.
    left = without(root, identifier)
    return {**left, "profiles": left["profiles"] + [entry]}


def replace(path, data):
    temporary = path + ".outside"
    with open(temporary, "wb") as file:
        file.write(data)
    os.rename(temporary, path)


def replace_with_list(path, root):
    replace(path, plistlib.dumps(root, fmt=plistlib.FMT_BINARY))


def post(root_directory, name):
    """As another process does, to every socket that is there."""
    directory = os.open(os.path.join(root_directory, NOTIFICATIONS), os.O_RDONLY | os.O_DIRECTORY)
    try:
        for entry in os.listdir(directory):
            if entry.endswith(".socket"):
                # Through the descriptor: a socket's address is short, whatever the root's path.
                _send(f"/proc/self/fd/{directory}/{entry}", name)
    finally:
        os.close(directory)


def _send(address, name):
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as sender:
        try:
            sender.sendto(name.encode(), address)
        except (ConnectionRefusedError, FileNotFoundError):
            pass  # of a process that was killed
