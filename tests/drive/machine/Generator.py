# SPDX-License-Identifier: MIT
"""Random commands and outside changes, chosen by what the model says is on the screen."""
import random

import Rows
from Disk import BROKEN, SWITCH
from Machine import MAIN, SECOND
from Phone import ADDED, APPLIED, CHANGED, DELETED, RELAYED
from Pickers import Hours, Tone
from Rows import GROUP, LINK, SLIDER, TEXT
from Screens import Editor, RootList, SettingsList

TITLES = ("Work", "Home", "Gym", "", "Caf\u00e9 \u2615", "A rather long title that goes on and on", "New Profile", "\u202eabc",
          "'%@' & <b>", "\U0001F634")
TIMES = ("12:00 AM", "6:30 AM", "9:00 AM", "9:01 AM", "12:00 PM", "4:59 PM", "5:00 PM", "5:01 PM", "11:59 PM")
NO_TIMES = ("25:00 PM", "17:00", "", 5, None)
BAD_LINES = ("no json", "{", "[]", "7", '"tap"', "null", "{}", '{"do":7}', '{"do":"nothing"}', '{"do":"tap"',
             '{"do":"state","count":-1}', '{"do":"state","from":"0"}', '{"do":"state","id":null}',
             '{"do":"tap","row":"1"}', '{"do":"tap","row":null}', '{"do":"set","row":1}', '{"do":"bar","side":"up","item":0}',
             '{"do":"choose"}', '{"do":"compose","result":"lost"}', '{"do":"post","name":""}', '{"do":"dark","on":1}',
             '{"do":"advance","seconds":-1}', '{"do":"advance","seconds":"1"}', '{"do":"pickTone"}', '{"do":"link","item":-1}')
BAD_VALUES = (None, "on", 3, [], {}, True, 0.5)
BROKEN_FILES = ("", "no property list", "bplist00\u0001", "<plist version=\"1.0\"><array>")
NOBODY_KNOWS = {"futureKey": [1, {"two": 2.5}], "note": "kept", "flag": False}
BAD_TYPES = {"title": 7, "enabled": "yes", "calendarIdentifiers": ["Home/personal", 7], "wifiNetworks": "Office",
             "startTime": False, "ringerVolume": "loud", "applyProfileEventStatus": 1.5, "vibrate": 2}


class Generator:
    def __init__(self, seed):
        self._random = random.Random(seed)
        self._made = 0

    def next(self, machine):
        """The next entry for what is shown now."""
        if machine.found_root == BROKEN and self._random.random() < 0.2:
            return {"outside": "mend", "post": self._one(None, APPLIED)}
        if self._random.random() < 0.07:
            return self._outside(machine)
        if machine.is_running(SECOND) and self._random.random() < 0.12:
            return {"outside": "command", "command": self._command(machine.world.phones[SECOND])}
        if self._random.random() < 0.04:
            return {"line": self._one(*BAD_LINES)}
        return self._command(machine.world.phones[MAIN])

    def _one(self, *choices):
        return self._random.choice(choices)

    def _weighted(self, choices):
        return self._random.choices([choice for choice, _ in choices], [weight for _, weight in choices])[0]

    # Commands

    def _command(self, phone):
        command = self._window(phone, self._action(phone))
        if self._random.random() < 0.02:
            command["id"] = self._one(1, "one", -5)
        return command

    def _window(self, phone, command):
        """Mostly a few rows: looking at all of them is most of the work."""
        chance = self._random.random()
        if chance < 0.7:
            command["from"] = self._random.randrange(max(len(phone.screen.rows), 1))
            command["count"] = self._one(0, 1, 2, 3)
        elif chance < 0.75:
            command["from"] = self._one(0, 5, 1000)
        return command

    def _action(self, phone):
        if phone.presented and self._random.random() < 0.85:
            return self._answer_to(phone)
        anywhere = self._weighted((("screen", 80), ("back", 7), ("state", 3), ("any row", 5), ("post", 3), ("dark", 1),
                                   ("advance", 1), ("open", 1), ("wait", 1), ("nowhere", 2), ("bar", 2)))
        if anywhere == "screen":
            return self._on_screen(phone)
        if anywhere == "any row":
            return self._any_row(phone)
        if anywhere == "post":
            return {"do": "post", "name": self._one(*RELAYED, "com.velmora.Other")}
        if anywhere == "dark":
            return {"do": "dark", "on": self._one(True, False)}
        if anywhere == "advance":
            return {"do": "advance", "seconds": self._one(0, 0.5, 1, 2, 10)}
        if anywhere == "wait":
            return {"do": "wait", "event": "darwinReceived", "seconds": 0}
        if anywhere == "nowhere":
            return self._one({"do": "choose", "action": "Close"}, {"do": "compose", "result": "sent"},
                             {"do": "pickTime", "time": "5:00 PM"}, {"do": "pickTone", "identifier": None},
                             {"do": "link", "item": 0}, {"do": "pickTimeRow", "row": 1}, {"do": "edit", "on": True})
        if anywhere == "bar":
            return {"do": "bar", "side": self._one("left", "right"), "item": self._one(0, 1, 2)}
        return {"do": anywhere}

    def _answer_to(self, phone):
        top = phone.presented[-1]
        if top.kind in ("social", "mail"):
            return {"do": "compose", "result": self._one("sent", "saved", "cancelled", "failed")}
        if top.kind == "activity":
            return {"do": "advance", "seconds": self._one(0.5, 1, 2, 3)}
        return {"do": "choose", "action": self._one(*top.actions)}

    def _any_row(self, phone):
        row = self._one(-1, len(phone.screen.rows), 1000, self._random.randrange(max(len(phone.screen.rows), 1)))
        action = self._one("tap", "set", "delete")
        command = {"do": action, "row": row}
        if action == "set":
            command["value"] = self._one(*BAD_VALUES)
        return command

    def _on_screen(self, phone):
        screen = phone.screen
        if isinstance(screen, SettingsList):
            return {"do": "tap", "row": 1}
        if isinstance(screen, Hours):
            if self._random.random() < 0.3:
                return {"do": "pickTimeRow", "row": self._one(0, 1, 1, 2)}
            return {"do": "pickTime", "time": self._one(*TIMES, *NO_TIMES) if self._random.random() < 0.2
                    else self._one(*TIMES)}
        if isinstance(screen, Tone):
            return {"do": "pickTone", "identifier": self._one(*Rows.TONES, None, "texttone:Nowhere")}
        if isinstance(screen, RootList):
            return self._on_root_list(screen)
        if isinstance(screen, Editor):
            return self._in_editor(screen)
        rows = [index for index, row in enumerate(screen.rows) if row.kind != GROUP]
        return self._act_on(screen, self._one(*rows))

    def _on_root_list(self, screen):
        profiles = [index for index, row in enumerate(screen.rows) if screen.can_delete(row)]
        is_on = bool(screen.settings and screen.settings.get(SWITCH))
        add = {"do": "bar", "side": "right", "item": 0}
        if not is_on and self._random.random() < 0.7:
            return {"do": "set", "row": 1, "value": True}
        if not profiles and self._random.random() < 0.5:
            return add
        what = self._weighted((("open", 60 if profiles else 0), ("delete", 8 if profiles else 0), ("switch", 4), ("edit", 2),
                               ("add", 10 if len(profiles) < 6 else 1), ("share", 2), ("miscellaneous", 3)))
        if what == "open":
            return {"do": "tap", "row": self._one(*profiles)}
        if what == "delete":
            return {"do": "delete", "row": self._one(*profiles)}
        if what == "switch":
            return {"do": "set", "row": 1, "value": self._one(True, True, False)}
        if what == "edit":
            return {"do": "edit", "on": self._one(True, False)}
        if what == "miscellaneous":
            return {"do": "tap", "row": len(screen.rows) - 1}
        return add if what == "add" else {"do": "bar", "side": "right", "item": 1}

    def _in_editor(self, screen):
        if screen.is_for_new and self._random.random() < (0.12 if screen.shown else 0.5):
            return {"do": "bar", "side": self._one("right", "right", "left") if screen.shown else "left", "item": 0}
        if screen.links() and self._random.random() < 0.06:
            return {"do": "link", "item": self._one(0, 0, 0, 1)}
        rows = [index for index, row in enumerate(screen.rows) if row.kind != GROUP]
        return self._act_on(screen, self._one(*rows))

    def _act_on(self, screen, index):
        row = screen.rows[index]
        if row.kind == LINK or (screen.is_tappable(row) and self._random.random() < 0.6):
            return {"do": "tap", "row": index}
        if row.kind == TEXT:
            value = self._one(*TITLES)
        elif row.kind == SLIDER:
            value = self._one(0, 0.25, 0.5, 1, 2, -1)
        elif row.kind == Rows.SWITCH:
            value = self._switched(screen, row)
        else:
            return {"do": "tap", "row": index}
        return {"do": "set", "row": index, "value": value}

    def _switched(self, screen, row):
        # What hides most rows is mostly put back.
        if row.identifier == "enabled" and self._random.random() < 0.8:
            return True
        if row.identifier == "playAlert" and self._random.random() < 0.6:
            return True
        if row.identifier == "allDay" and self._random.random() < 0.6:
            return False
        return self._one(True, False)

    # Outside changes

    def _outside(self, machine):
        second = machine.is_running(SECOND)
        what = self._weighted((("file", 40), ("both", 30 if second else 0), ("start", 0 if second else 25), ("end", 2 if second else 0),
                               ("kill", 8), ("killShell", 3), ("removeProfiles", 4), ("break", 4), ("restart", 2),
                               ("removeNotifications", 1)))
        if what == "file":
            return {"outside": "file", **self._file_change(), "post": self._name_or_none()}
        if what == "both":
            return {"outside": "both", "first": self._change(machine.world.phones[MAIN]),
                    "second": self._change(machine.world.phones[SECOND])}
        if what == "kill":
            return {"outside": "kill", "during": self._change(machine.world.phones[MAIN]),
                    "after": self._one(0, 0.0005, 0.001, 0.002, 0.003, 0.005, 0.01)}
        if what == "break":
            return {"outside": "break", "bytes": self._one(*BROKEN_FILES), "post": self._one(None, APPLIED)}
        if what == "removeProfiles":
            return {"outside": what, "post": self._one(None, DELETED, APPLIED)}
        return {"outside": what}

    def _name_or_none(self):
        return self._one(None, APPLIED, APPLIED, ADDED, CHANGED, DELETED)

    def _change(self, phone):
        """A command that is likely to change the store."""
        if phone.presented:
            return self._answer_to(phone) if phone.presented[-1].kind == "sheet" else {"do": "state"}
        return self._on_screen(phone)

    def _file_change(self):
        profile = self._random.randrange(8)
        what = self._weighted((("set", 50), ("add", 10), ("delete", 8), ("last", 5), ("forget", 5), ("foreign", 2), ("root", 2),
                               ("bad type", 5), ("unknown", 5)))
        if what == "set":
            return {"change": "set", "profile": profile, "values": self._values()}
        if what == "add":
            self._made += 1
            return {"change": "add", "entry": {"identifier": f"OUTSIDE-{self._made}", "title": self._one(*TITLES), **self._values()}}
        if what == "forget":
            return {"change": "forget", "profile": profile, "key": self._one("alertToneIdentifier", "vibrate", "wifiNetworks")}
        if what == "foreign":
            return {"change": "foreign", "value": self._one("no profile", {"title": "nobody's"}, [1, 2.5], {"identifier": 7})}
        if what == "root":
            return {"change": "root", "values": {"engineState": self._one(1, "text", [True])}}
        if what == "bad type":
            key = self._one(*BAD_TYPES)
            return {"change": "set", "profile": profile, "values": {key: BAD_TYPES[key]}}
        if what == "unknown":
            return {"change": "set", "profile": profile, "values": dict(NOBODY_KNOWS)}
        return {"change": what, "profile": profile}

    def _values(self):
        pool = {"title": self._one(*TITLES), "enabled": self._one(True, True, False), "allDay": self._one(True, False),
                "startTime": self._one(*TIMES[:4]), "endTime": self._one(*TIMES[4:]), "ringerVolume": self._one(0.0, 0.5, 1.0),
                "vibrate": self._one(True, False), "playAlert": self._one(True, False), "dnDEnabled": self._one(True, False),
                "alertToneIdentifier": self._one(*Rows.TONES), "wifiNetworks": self._one([], ["Office"], ["Elsewhere", "Caf\u00e9"]),
                "calendarIdentifiers": self._one([], ["Home/personal"], ["gone", "Work/meetings"]),
                "allDayEventsIgnored": self._one(True, False), "applyProfileEventStatus": self._one(0, 1, 2, 3, 9)}
        return {key: pool[key] for key in self._random.sample(sorted(pool), self._one(1, 1, 2, 4))}
