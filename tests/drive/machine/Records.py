# SPDX-License-Identifier: MIT
"""Profiles as the model knows them: the keys with their defaults, records as screens hold them, and what a record
makes of the file's entry when it is saved."""

TEXT, FLAG, REAL, INTEGER, TEXTS = "text", "flag", "real", "integer", "texts"

# Key, type, what a missing key means. A profile without a tone has none.
KEYS = {
    "identifier": (TEXT, ""), "title": (TEXT, "New Profile"), "enabled": (FLAG, True), "allDay": (FLAG, True),
    "startTime": (TEXT, "9:00 AM"), "endTime": (TEXT, "5:00 PM"), "playBackVolume": (REAL, 0.0),
    "ringerVolume": (REAL, 0.0), "vibrate": (FLAG, True), "playAlert": (FLAG, True),
    "alertToneIdentifier": (TEXT, None), "vibrateAlert": (FLAG, True), "wakeUpScreen": (FLAG, True),
    "dnDEnabled": (FLAG, False), "showOnStatusBar": (FLAG, False), "wifiNetworks": (TEXTS, []),
    "calendarIdentifiers": (TEXTS, []), "allDayEventsIgnored": (FLAG, True), "applyProfileEventStatus": (INTEGER, 0),
}
COLLECTIONS = ("wifiNetworks", "calendarIdentifiers")


class AnyOrder(list):
    """A list of two writers: what is in it is known, its order is not."""


def takes(key, value):
    """Whether a record takes the file's value for this key."""
    kind = KEYS[key][0]
    if kind == TEXT:
        return isinstance(value, str)
    if kind == FLAG:
        return isinstance(value, bool) or (isinstance(value, int) and value in (0, 1))
    if kind == REAL:
        return isinstance(value, (int, float)) and not isinstance(value, bool)
    if kind == INTEGER:
        return isinstance(value, int) and not isinstance(value, bool)
    return isinstance(value, list) and all(isinstance(element, str) for element in value)


def meaning(key, value):
    """The value as a record holds it; of a list with other elements its strings."""
    if KEYS[key][0] == TEXTS and isinstance(value, list):
        value = [element for element in value if isinstance(element, str)]
    if value is None or not takes(key, value):
        value = KEYS[key][1]
    if KEYS[key][0] == FLAG:
        return bool(value)
    if KEYS[key][0] == REAL:
        return float(value)
    return list(value) if KEYS[key][0] == TEXTS else value


class Record:
    """What a screen has in hand of one profile."""

    def __init__(self, entry, is_new=False):
        self.values = {key: meaning(key, entry.get(key)) for key in KEYS}
        self.is_new = is_new
        self.made_from = {key: list(self.values[key]) for key in COLLECTIONS}
        self.set_keys = set()
        self.is_touched = False

    @property
    def identifier(self):
        return self.values["identifier"]

    def __getitem__(self, key):
        return self.values[key]

    def assign(self, key, value):
        self.is_touched = True
        self.values[key] = value
        self.set_keys.add(key)

    def saved(self):
        """What was handed over is what the record was made from."""
        self.made_from = {key: list(self.values[key]) for key in COLLECTIONS}
        self.set_keys.clear()
        self.is_touched = False

    def whole(self):
        """What a new profile is in the file."""
        return {key: value for key, value in self.values.items() if value is not None}

    def written_over(self, entry):
        """The file's entry once this record is saved."""
        written = dict(entry)
        for key in self.set_keys:
            value = self.values[key]
            if value is None:
                written.pop(key, None)
                continue
            if key in COLLECTIONS:
                present = entry.get(key, [])
                if isinstance(present, list):
                    value = self._merged(key, list(present))
                value = type(value)(value)
            written[key] = value
        return written

    def _merged(self, key, present):
        mine, before = self.values[key], self.made_from[key]
        if present == before:
            return list(mine)
        merged = [element for element in present
                  if not isinstance(element, str) or element in mine or element not in before]
        merged += [element for element in mine if element not in before and element not in merged]
        return AnyOrder(merged)


def same(one, other):
    """Equal in value and in type."""
    if isinstance(one, AnyOrder) or isinstance(other, AnyOrder):
        return isinstance(one, list) and isinstance(other, list) and sorted(map(repr, one)) == sorted(map(repr, other))
    if isinstance(one, list) and isinstance(other, list):
        return len(one) == len(other) and all(map(same, one, other))
    if isinstance(one, dict) and isinstance(other, dict):
        return one.keys() == other.keys() and all(same(one[key], other[key]) for key in one)
    return type(one) is type(other) and one == other


def differences(entry, other):
    """The keys in which the two entries of one profile do not mean the same: a missing key is its default, and a
    whole number may stand for a real one."""
    found = []
    for key in entry.keys() | other.keys():
        mine, its = entry.get(key), other.get(key)
        if key in KEYS and (mine is None or takes(key, mine)) and (its is None or takes(key, its)):
            ordered = not isinstance(mine, AnyOrder)
            mine, its = meaning(key, mine), meaning(key, its)
            if not ordered:
                mine, its = sorted(mine), sorted(its)
        if not same(mine, its):
            found.append(key)
    return sorted(found)
