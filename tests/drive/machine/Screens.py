# SPDX-License-Identifier: MIT
"""The screens as the model knows them: their rows, what each command does on them, and how they follow the
notifications. A method that answers a command gives whether it acts."""
import Rows
from Disk import SWITCH
from Records import Record
from Rows import BUTTON, GROUP, LINK, SLIDER, TEXT, Row

# Rows of the editor that open a screen and tell their value all the same.
GETTER_LINKS = ("alertToneIdentifier", "calendarIdentifiers")
SHARE_SHEET = ("Share \U0001F618", "Follow @velmora", "Cancel")


# By the name under which rows open them.
SCREENS = {}


class Screen:
    """A screen of `name` on a phone. Rows stay the same objects as long as the phone keeps them."""
    name = ""

    def __init_subclass__(cls):
        SCREENS[cls.name] = cls

    def __init__(self, phone, row=None):
        self.phone = phone
        self.row = row
        self.rows = []
        self.opened = None
        self.load()

    def load(self):
        pass

    @property
    def record(self):
        return self.row.info["profile"]

    def section_row(self, index):
        return 0 <= index < len(self.rows) and self.rows[index].kind != GROUP

    # What a row shows.

    def value(self, row):
        """What the row's control shows, or its getter gives."""
        return None

    def make_cell(self, row):
        """What the cell of the row takes when it is made; its keys are fields of the channel's rows."""
        return {}

    def look(self, row):
        if row.cell is None:
            row.cell = self.make_cell(row)

    def can_delete(self, row):
        return False

    # Commands.

    def is_tappable(self, row):
        return bool(row.detail) or row.kind == BUTTON

    def tap(self, row):
        if row.confirms:
            self.phone.ask(row.confirms, self)
        elif row.detail:
            self.opened = row
            self.phone.push(SCREENS[row.detail](self.phone, row))

    def set(self, row, value):
        """Moves the row's control, if the value is one for it."""
        return False

    def press(self, side, item):
        return False

    # Life and notifications.

    def appear(self):
        if self.opened:
            self.opened.cell = None
            self.opened = None

    def applied_state_changed(self):
        pass

    def data_updated(self):
        pass

    def links(self):
        return []

    def insert(self, index, row):
        index = min(max(index, 0), len(self.rows))
        self.phone.tell("insert", index, row.name)
        self.rows.insert(index, row)

    def remove(self, index):
        if 0 <= index < len(self.rows):
            self.phone.tell("remove", index, self.rows[index].name)
            self.rows.pop(index).cell = None


def moved(row, value):
    """The value that the row's control takes for this one, or None."""
    if row.kind == Rows.SWITCH and isinstance(value, bool):
        return value
    if row.kind == SLIDER and isinstance(value, (int, float)) and not isinstance(value, bool):
        return min(max(float(value), 0.0), 1.0)
    return value if row.kind == TEXT and isinstance(value, str) else None


class SettingsList(Screen):
    name = "SettingsRootController"

    def load(self):
        self.rows = Rows.settings_rows()

    def is_tappable(self, row):
        return True

    def tap(self, row):
        self.phone.open_bundle()


class RootList(Screen):
    name = "QuietrixPreferencesController"

    def load(self):
        settings = self.phone.disk.settings
        self.settings = dict(settings) if isinstance(settings, dict) else None
        self.is_editing = False
        self.listed = {True: None, False: None}
        self.build()

    def build(self):
        self.opened = None
        self.rows = [Rows.group(), Rows.switch("Enabled", SWITCH, None)]
        if self.settings and self.settings.get(SWITCH) is True:
            self.rows += [Rows.group("Active Profiles")] + self.profile_rows(True)
            self.rows += [Rows.group("Inactive Profiles")] + self.profile_rows(False)
        self.rows += [Rows.group("About", Rows.COPYRIGHT),
                      Row("Miscellaneous", LINK, "Miscellaneous", detail="QuietrixMiscController")]

    def profile_rows(self, enabled):
        if self.listed[enabled] is None:
            rows = [Row(record["title"], LINK, "title", detail=Editor.name, info=record)
                    for record in self.phone.store.profiles(enabled)]
            self.listed[enabled] = rows or [Row("No Profiles", Rows.STATIC)]
        return list(self.listed[enabled])

    def refresh(self):
        self.phone.store.reload()
        self.listed = {True: None, False: None}

    def applied_state_changed(self):
        self.refresh()
        self.phone.rebuilds.append(self)

    def value(self, row):
        return (self.settings or {}).get(SWITCH) is True if row.kind == Rows.SWITCH else None

    def make_cell(self, row):
        if not isinstance(row.info, Record):
            return {}
        times = "All Day" if row.info["allDay"] else f'{row.info["startTime"]} - {row.info["endTime"]}'
        return {"detailText": times}

    def can_delete(self, row):
        return isinstance(row.info, Record)

    def delete(self, row):
        self.is_editing = True
        message = f"Are you sure you want to delete the profile '{row.info['title']}'?"
        self.phone.present("sheet", message=message, actions=("Delete", "Cancel"),
                           handlers=(("confirm_deletion", self, row.info), ("stop_editing", self)))

    def confirm_deletion(self, record):
        index = next((i for i, row in enumerate(self.rows)
                      if isinstance(row.info, Record) and row.info.identifier == record.identifier), -1)
        self.remove(index)
        self.is_editing = False
        self.phone.change("delete", record, self)

    def set(self, row, value):
        value = moved(row, value)
        if value is None:
            return False
        if self.settings is not None:
            self.settings = {**self.settings, SWITCH: value}
            self.phone.disk.settings = self.settings
        if value:
            rows = [Rows.group("Active Profiles")] + self.profile_rows(True)
            rows += [Rows.group("Inactive Profiles")] + self.profile_rows(False)
            for index, inserted in enumerate(rows):
                self.insert(2 + index, inserted)
        else:
            for index in range(len(self.rows) - 3, 1, -1):
                self.remove(index)
        self.phone.post("com.velmora.QuietrixEnabledOrDisableNotification")
        self.build()
        return True

    def press(self, side, item):
        if side != "right" or item > 1:
            return False
        if item == 0:
            self.phone.add_profile()
        else:
            self.phone.present("sheet", actions=SHARE_SHEET, handlers=(("share",), None, None))
        return True


class Editor(Screen):
    name = "QuietrixProflePreferencesController"

    def load(self):
        self.is_for_new = self.row.info.is_new
        self.build()

    @property
    def record(self):
        return self.shown

    def build(self):
        self.opened = None
        self.shown = self.row.info
        self.rows = Rows.editor_rows(self.shown)

    def value(self, row):
        if row.kind == TEXT:
            return row.text if row.text is not None else ""
        if row.kind not in (Rows.SWITCH, SLIDER) and row.identifier not in GETTER_LINKS:
            return None
        value = self.shown[row.identifier] if self.shown else None
        return row.default if value is None else value

    def make_cell(self, row):
        if row.identifier == "alertToneIdentifier":
            tone = self.shown and self.shown["alertToneIdentifier"]
            return {"detailText": tone.split(":")[-1] if tone else "None"}
        if row.name == "Active Hours":
            return {"times": (row.info["startTime"], row.info["endTime"])}
        return {}

    def set(self, row, value):
        value = moved(row, value)
        if value is None:
            return False
        if row.kind == TEXT:
            if value == self.value(row):
                return True
            if row.text is not None:
                row.text = value
        if self.shown:
            self.shown.assign(row.identifier, value)
        self.save()
        if row.identifier == "enabled":
            self.show_or_hide_enabled_rows()
        elif row.identifier == "playAlert":
            self.show_or_hide_tone()
        elif row.identifier == "allDay":
            if self.shown and self.shown["allDay"]:
                self.remove(6)
                self.remove(7)
            else:
                self.insert(6, Rows.hours_row(self.shown))
        return True

    def show_or_hide_enabled_rows(self):
        if self.shown and self.shown["enabled"]:
            for index, row in enumerate(Rows.enabled_rows(self.shown)):
                self.insert(4 + index, row)
        else:
            for index in range(len(self.rows) - 2, 3, -1):
                self.remove(index)

    def show_or_hide_tone(self):
        if Rows.plays_alert(self.shown):
            self.insert(self.last_with("playAlert") + 1, Rows.tone_row(self.shown))
        else:
            self.remove(self.last_with("alertToneIdentifier"))

    def last_with(self, identifier):
        return max((i for i, row in enumerate(self.rows) if row.identifier == identifier), default=-1)

    def save(self):
        if not (self.shown and self.shown.is_new):
            self.phone.change("update", self.shown, self)

    def press(self, side, item):
        if item != 0 or (side == "left" and not self.is_for_new):
            return False
        if not self.is_for_new:
            self.phone.compose()
        elif side == "left":
            self.phone.dismiss_modal()
        else:
            self.phone.change("add", self.shown, self)
        return True

    def links(self):
        return [row for row in self.rows if row.identifier == "calendarIdentifiers"][:1]

    def applied_state_changed(self):
        self.row.info = self.phone.store.fetch(self.shown.identifier if self.shown else "")
        self.build()

    def data_updated(self):
        self.save()
        stored = self.phone.store.fetch(self.shown.identifier if self.shown else "")
        if stored:
            self.row.info = stored
        self.build()


class Miscellaneous(Screen):
    name = "QuietrixMiscController"

    def load(self):
        self.rows = Rows.miscellaneous_rows()

    def press(self, side, item):
        if side != "right" or item != 0:
            return False
        self.phone.present("sheet", actions=SHARE_SHEET, handlers=(("share",), None, None))
        return True
