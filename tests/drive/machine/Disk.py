# SPDX-License-Identifier: MIT
"""What the model knows of the files: the profiles and the switch. Whatever is in here is replaced rather than
changed in place, so that a store may hold on to what it has read."""
import plistlib
import xml.parsers.expat

from Records import AnyOrder, differences, same

SWITCH = "com.velmora.quietrix.enabled"
NO_FILE = "no file"
BROKEN = "broken"


def profiles_of(root):
    """The entries that are profiles, in their order: the first of each identifier."""
    found = {}
    for entry in root["profiles"] if isinstance(root, dict) else ():
        identifier = entry.get("identifier") if isinstance(entry, dict) else None
        if isinstance(identifier, str) and identifier and identifier not in found:
            found[identifier] = entry
    return found


def without(root, identifier):
    """The root without the profile and without what else bears its identifier."""
    left = [entry for entry in root["profiles"]
            if not (isinstance(entry, dict) and entry.get("identifier") == identifier)]
    return {**root, "profiles": left}


def with_entry(root, identifier, entry):
    entries = list(root["profiles"])
    place = next(i for i, old in enumerate(entries) if isinstance(old, dict) and old.get("identifier") == identifier)
    entries[place] = entry
    return {**root, "profiles": entries}


class Disk:
    def __init__(self, settings):
        self.root = NO_FILE
        self.version = 0
        self.settings = settings

    def write(self, root):
        self.root = root
        self.version += 1

    def compare(self, profiles, settings):
        """What is wrong with the files as they were found, or None. Orders that were open are taken over."""
        if not isinstance(profiles, type(self.root)) or (not isinstance(self.root, dict) and profiles != self.root):
            return f"the profiles file is {describe(profiles)} and not {describe(self.root)}"
        if isinstance(self.root, dict):
            problem = self._compare_roots(profiles)
            if problem:
                return problem
            self._take_orders_from(profiles)
        if not same(self.settings, settings):
            return f"the settings file holds {describe(settings)} and not {describe(self.settings)}"
        return None

    def _take_orders_from(self, found):
        # The one change in place: whoever holds the entry has read the order that the file has.
        for entry, its in zip(self.root["profiles"], found["profiles"]):
            for key, value in entry.items() if isinstance(entry, dict) else ():
                if isinstance(value, AnyOrder):
                    entry[key] = its[key]

    def _compare_roots(self, found):
        mine = {key: value for key, value in self.root.items() if key != "profiles"}
        its = {key: value for key, value in found.items() if key != "profiles"}
        if not same(mine, its):
            return f"the profiles file has {its} beside its profiles and not {mine}"
        wanted, present = profiles_of(self.root), profiles_of(found)
        if list(wanted) != list(present):
            return f"the profiles file holds the profiles {list(present)} and not {list(wanted)}"
        for identifier, entry in wanted.items():
            keys = differences(entry, present[identifier])
            if keys:
                values = {key: (present[identifier].get(key), entry.get(key)) for key in keys}
                return f"the profile {identifier} holds what nobody meant (found, meant): {values}"
        if len(self.root["profiles"]) != len(found["profiles"]):
            return "entries that are no profiles were lost or made"
        for one, other in zip(self.root["profiles"], found["profiles"]):
            is_profile = isinstance(one, dict) and any(one is entry for entry in wanted.values())
            if not is_profile and not same(one, other):
                return f"an entry that is no profile has changed from {one} to {other}"
        return None


def describe(value):
    return value if isinstance(value, str) else repr(value)


def read_plist(path, meant_broken=False):
    """The property list's root, NO_FILE or BROKEN."""
    try:
        with open(path, "rb") as file:
            data = file.read()
    except FileNotFoundError:
        return NO_FILE
    try:
        return plistlib.loads(data)
    except (plistlib.InvalidFileException, ValueError, xml.parsers.expat.ExpatError, EOFError):
        return BROKEN if meant_broken or data else "empty"
