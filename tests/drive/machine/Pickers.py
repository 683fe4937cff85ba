# SPDX-License-Identifier: MIT
"""The screens of a profile's conditions, times and tone, as the model knows them."""
import Rows
from Screens import SHARE_SHEET, Screen, moved


class Picker(Screen):
    """What has the share button and the profile in its row's user info."""

    def press(self, side, item):
        if side != "right" or item != 0:
            return False
        self.phone.compose()
        return True

    def save(self):
        if not self.record.is_new:
            self.phone.change("update", self.record, self)

    def applied_state_changed(self):
        stored = self.phone.store.fetch(self.record.identifier)
        self.row.info = {"profile": stored or self.record}


class Calendars(Picker):
    name = "QuietrixCalendarsController"

    def load(self):
        self.rows = Rows.calendar_rows()

    def is_tappable(self, row):
        return True

    def value(self, row):
        return self.record[row.identifier] if row.kind == Rows.SWITCH else None

    def make_cell(self, row):
        return {"accessory": 3 if row.identifier in self.record["calendarIdentifiers"] else 0}

    def set(self, row, value):
        value = moved(row, value)
        if value is None:
            return False
        self.record.assign(row.identifier, value)
        self.save()
        return True

    def tap(self, row):
        chosen = list(self.record["calendarIdentifiers"])
        is_chosen = row.identifier in chosen
        if is_chosen:
            chosen = [identifier for identifier in chosen if identifier != row.identifier]
        else:
            chosen.append(row.identifier)
        self.record.assign("calendarIdentifiers", chosen)
        if row.cell:
            row.cell["accessory"] = 0 if is_chosen else 3
        self.save()

    def applied_state_changed(self):
        super().applied_state_changed()
        self.row.info["calendars"] = None


class EventStatus(Picker):
    name = "QuietrixEventStatusController"

    def load(self):
        self.rows = Rows.status_rows()

    def is_tappable(self, row):
        return True

    def make_cell(self, row):
        chosen = Rows.STATUSES.index(row.identifier) == self.record["applyProfileEventStatus"]
        return {"accessory": 3 if chosen else 0}

    def tap(self, row):
        old = self.record["applyProfileEventStatus"]
        if 0 <= old < len(Rows.STATUSES) and self.rows[old].cell:
            self.rows[old].cell["accessory"] = 0
        if row.cell:
            row.cell["accessory"] = 3
        self.record.assign("applyProfileEventStatus", Rows.STATUSES.index(row.identifier))
        self.save()

    def applied_state_changed(self):
        pass  # it shows the record that it was handed


class Networks(Picker):
    name = "QuietrixWifiController"

    def load(self):
        self.rows = Rows.network_rows()

    def value(self, row):
        return row.cell["on"] if row.cell else None

    def make_cell(self, row):
        return {"on": row.identifier in self.record["wifiNetworks"]}

    def set(self, row, value):
        value = moved(row, value)
        if value is None:
            return False
        row.cell["on"] = value
        networks = list(self.record["wifiNetworks"])
        if row.identifier in networks:
            networks = [ssid for ssid in networks if ssid != row.identifier]
        else:
            networks.append(row.identifier)
        self.record.assign("wifiNetworks", networks)
        self.save()
        for twin in self.rows:
            if twin is not row and twin.identifier == row.identifier:
                twin.cell = None
        return True

    def saved(self, record):
        self.row.info = {"profile": self.phone.store.fetch(record.identifier) or record}


class Tone(Picker):
    name = "QuietrixAlertToneController"

    def load(self):
        self.standard = self.chosen = self.record["alertToneIdentifier"] or "texttone:Calendar Alert"

    def press(self, side, item):
        if side != "right" or item != 0:
            return False
        self.phone.present("sheet", actions=SHARE_SHEET, handlers=(("share",), None, None))
        return True

    def pick_tone(self, identifier):
        if identifier is not None and identifier not in Rows.TONES:
            return False
        self.chosen = identifier
        self.record.assign("alertToneIdentifier", identifier or self.standard)
        if self.record.is_new:
            self.phone.announce_data_update()
        else:
            self.save()
        return True


class Hours(Screen):
    name = "QXDateRangeController"

    def load(self):
        self.tag = 0
        self.texts = {}
        self.time = self.time_of(0)

    @property
    def record(self):
        return self.row.info

    def time_of(self, row):
        text = self.record["endTime" if row else "startTime"]
        return text if minutes(text) is not None else None

    def look_at_pane(self):
        for row, label in enumerate(("From", "To")):
            self.texts.setdefault(row, f'{label} {self.record["endTime" if row else "startTime"]}')

    def pick_row(self, row):
        if not isinstance(row, int) or row not in (0, 1):
            return False
        self.tag = row
        self.time = self.time_of(row)
        return True

    def pick_time(self, time):
        picked = minutes(time)
        if picked is None:
            return False
        self.time = time
        other = minutes(self.record["startTime" if self.tag else "endTime"]) or 0
        start, end = (other, picked) if self.tag else (picked, other)
        if end <= start:
            message = "Invalid configuration, 'To' time cannot be less than 'From' time."
            self.phone.present("alert", title="Error", message=message, actions=("Close",), handlers=(None,))
            return True
        self.record.assign("endTime" if self.tag else "startTime", time)
        self.texts.pop(self.tag, None)
        if self.record.is_new:
            self.phone.announce_data_update()
        else:
            self.phone.change("update", self.record, self)
        return True

    def applied_state_changed(self):
        self.row.info = self.phone.store.fetch(self.record.identifier) or self.record


def minutes(text):
    """Minutes since midnight of a time as "5:00 PM"; None for what is none."""
    if not isinstance(text, str):
        return None
    clock, _, half = text.partition(" ")
    hour, _, minute = clock.partition(":")
    if half not in ("AM", "PM") or not (hour.isdigit() and minute.isdigit() and len(minute) == 2):
        return None
    if not (1 <= int(hour) <= 12 and int(minute) < 60):
        return None
    return (int(hour) % 12 + (12 if half == "PM" else 0)) * 60 + int(minute)
