# SPDX-License-Identifier: MIT
"""Rows of the screens, as far as the channel shows them, and the row tables."""
from Records import Record

GROUP, LINK, SLIDER, SWITCH, STATIC, TEXT, BUTTON = 0, 1, 5, 6, 7, 8, 13

CALENDARS = (("Home", "Home/personal", "Personal"), ("Work", "Work/meetings", "Meetings"))
NETWORKS = ("Office", "Caf\u00e9", "Office")
TONES = {"texttone:Calendar Alert": "Calendar Alert", "texttone:Bell": "Bell", "texttone:Chord": "Chord"}
STATUSES = ("All", "Accepted", "Tentative", "Declined/Cancelled")
COPYRIGHT = "CopyRightHeader"


class Row:
    """One row. What its cell took when it was made is in `cell`, None as long as nobody has looked at it."""

    def __init__(self, name, kind, identifier=None, default=None, detail=None, info=None, confirms=None):
        self.name = name
        self.kind = kind
        self.identifier = identifier
        self.default = default
        self.detail = detail
        self.info = info
        self.confirms = confirms
        self.text = None
        self.cell = None

    def shown_info(self):
        if isinstance(self.info, Record):
            return {"class": "QXProfile", "identifier": self.info.identifier}
        if isinstance(self.info, dict):
            return {"keys": sorted(self.info)}
        if isinstance(self.info, tuple):
            return {"class": "EKCalendar", "identifier": self.info[1]}
        return self.info


def group(name=None, identifier=None):
    return Row(name, GROUP, identifier)


def switch(name, identifier, default):
    return Row(name, SWITCH, identifier, default)


def copyright_row():
    return group(None, COPYRIGHT)


def hours_row(record):
    return Row("Active Hours", LINK, detail="QXDateRangeController", info=record)


def tone_row(record):
    return Row("Alert Tone", LINK, "alertToneIdentifier", detail="QuietrixAlertToneController",
               info={"profile": record})


def title_row(record):
    row = Row("Title", TEXT, "title")
    row.text = record["title"] if record else None
    return row


def plays_alert(record):
    return bool(record and record["enabled"] and record["playAlert"])


def enabled_rows(record):
    """What the editor shows of an enabled profile."""
    rows = [group("Schedule"), switch("All Day", "allDay", True)]
    if not record["allDay"]:
        rows.append(hours_row(record))
    rows += [group("Ringer Volume & Vibrate"), Row("Playback Volume", SLIDER, "playBackVolume"),
             Row("Ringer Volume", SLIDER, "ringerVolume"), switch("Vibrate", "vibrate", True),
             group("Alerts"), switch("Ring Alert", "playAlert", True)]
    if plays_alert(record):
        rows.append(tone_row(record))
    rows += [switch("Vibrate Alert", "vibrateAlert", True), switch("Wake Up Screen", "wakeUpScreen", True),
             group(), switch("Do not Disturb", "dnDEnabled", False),
             group(), switch("Show on StatusBar", "showOnStatusBar", False),
             group("WiFi Networks"),
             Row("WiFi Networks", LINK, "wifiNetworks", detail="QuietrixWifiController", info={"profile": record}),
             group("Calendars"),
             Row("Calendar", LINK, "calendarIdentifiers", detail="QuietrixCalendarsController",
                 info={"calendars": None, "profile": record})]
    return rows


def editor_rows(record):
    rows = [group(), title_row(record), group(), switch("Enable", "enabled", True)]
    if record and record["enabled"]:
        rows += enabled_rows(record)
    return rows + [copyright_row()]


def calendar_rows():
    rows = [switch("Ignore All Day Events", "allDayEventsIgnored", True)]
    for title, identifier, name in CALENDARS:
        rows += [group(title), Row(name, LINK, identifier, info=("calendar", identifier))]
    return rows + [copyright_row()]


def network_rows():
    return [Row(ssid, SWITCH, ssid, info={"SSID": ssid}) for ssid in NETWORKS] + [copyright_row()]


def status_rows():
    return [Row(title, STATIC, title) for title in STATUSES] + [copyright_row()]


def miscellaneous_rows():
    return [group("Reset Profiles"), Row("Reset Profiles", BUTTON, "resetProfiles", confirms="reset"),
            group("Contact Velmora", COPYRIGHT), Row("Report Problem", BUTTON, "report", confirms="report")]


def settings_rows():
    return [group(), Row("Quietrix Go", LINK, "QuietrixPreferences.bundle")]
