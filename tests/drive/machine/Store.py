# SPDX-License-Identifier: MIT
"""One process's store of profiles: what it has read, and which records it has handed out."""
from Disk import BROKEN, NO_FILE, profiles_of, with_entry, without
from Records import Record

EMPTY = {"format": 1, "profiles": []}


class Store:
    def __init__(self, disk):
        self.disk = disk
        self.root = EMPTY
        self.seen = None
        self.is_bad = False
        self.records = {}

    def take_over(self):
        """Whether the file can be used."""
        if self.seen == self.disk.version:
            return not self.is_bad
        self.seen = self.disk.version
        self.is_bad = self.disk.root == BROKEN
        if not self.is_bad:
            self.root = EMPTY if self.disk.root == NO_FILE else self.disk.root
            self.records = {}
        return not self.is_bad

    def reload(self):
        self.take_over()
        self.records = {name: record for name, record in self.records.items() if not record.is_touched}

    def fetch(self, identifier):
        """The present record, or None."""
        self.take_over()
        entry = profiles_of(self.root).get(identifier)
        return self._record(identifier, entry) if entry is not None else None

    def _record(self, identifier, entry):
        if identifier not in self.records:
            self.records[identifier] = Record(entry)
        return self.records[identifier]

    def profiles(self, enabled):
        self.take_over()
        records = [self._record(*item) for item in profiles_of(self.root).items()]
        return [record for record in records if record["enabled"] is enabled]

    # Changes: None when done, else what the error must name.

    def add(self, record):
        if record is None:
            return "nil"
        if not self.take_over():
            return "com.velmora.quietrix.profiles.plist"
        if record.identifier in profiles_of(self.root):
            return record.identifier
        self._write({**self.root, "profiles": self.root["profiles"] + [record.whole()]}, record)
        return None

    def update(self, record):
        if record is None:
            return "nil"
        if not self.take_over():
            return "com.velmora.quietrix.profiles.plist"
        entry = profiles_of(self.root).get(record.identifier)
        if entry is None:
            return record.identifier
        self._write(with_entry(self.root, record.identifier, record.written_over(entry)), record)
        return None

    def delete(self, record):
        if not self.take_over():
            return "com.velmora.quietrix.profiles.plist"
        if record.identifier not in profiles_of(self.root):
            return record.identifier
        self._write(without(self.root, record.identifier), None)
        self.records.pop(record.identifier, None)
        return None

    def _write(self, root, record):
        self.disk.write(root)
        self.root, self.seen = root, self.disk.version
        if record is None:
            return
        record.saved()
        self.records.pop(record.identifier, None)
