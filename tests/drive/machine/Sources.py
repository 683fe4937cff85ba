# SPDX-License-Identifier: MIT
"""What the phones under test find on their machine: calendars, networks and tones."""
import os
import shutil
import tempfile
import wave

import Outside
from Rows import CALENDARS, NETWORKS

COLOURS = ("#0000ff", "#00ff00")


class Sources:
    """A folder with the calendars, networks and tones of the phones under test."""

    def __init__(self):
        # In memory where that can be had: the program syncs each change.
        memory = "/dev/shm"
        parent = memory if os.path.isdir(memory) and os.access(memory, os.W_OK) else None
        self.directory = tempfile.mkdtemp(prefix="quietrix-machine-", dir=parent)
        for (account, identifier, name), colour in zip(CALENDARS, COLOURS):
            folder = os.path.join(self.directory, "calendars", identifier)
            os.makedirs(folder)
            for file_name, text in (("displayname", name), ("color", colour)):
                with open(os.path.join(folder, file_name), "w", encoding="utf-8") as file:
                    file.write(text + "\n")
        Outside.replace_with_list(self._path("networks.plist"), [{"SSID": name} for name in NETWORKS])
        os.makedirs(self._path("tones"))
        for name in ("Bell", "Chord"):
            with wave.open(self._path(f"tones/{name}.wav"), "wb") as sound:
                sound.setparams((1, 2, 8000, 0, "NONE", ""))
                sound.writeframes(b"\0\0" * 80)

    def _path(self, name):
        return os.path.join(self.directory, name)

    def device(self):
        return {"clock": "2026-11-20T09:00:00", "mailAccount": "user@example.org", "calendars": self._path("calendars"),
                "networks": self._path("networks.plist"), "tones": self._path("tones")}

    def remove(self):
        shutil.rmtree(self.directory, ignore_errors=True)
