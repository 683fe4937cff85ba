# SPDX-License-Identifier: MIT
"""The profile editor and its active hours through the drive channel: test_editor.py PROGRAM BUNDLE [arguments]."""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from QuietrixCase import APPLIED, PROFILES, QuietrixTest, main, profile  # noqa: E402

SET = "setPreferenceValue:specifier:"
GET = "readPreferenceValue:"
DATA_UPDATE = "com.velmora.ProfileDataUpdateNotification"
INVALID = "Invalid configuration, 'To' time cannot be less than 'From' time."


def work(**values):
    return profile("Work", **{"allDay": False, "startTime": "9:00 AM", "endTime": "5:00 PM", "playAlert": True,
                              "alertToneIdentifier": "texttone:Calendar Alert", **values})


class EditorTest(QuietrixTest):
    def edit(self, *profiles, **options):
        """The editor of the first of the profiles, on a phone with all of them."""
        drive = self.open(list(profiles), switch=True, **options)
        drive.tap(drive.row(name=profiles[0]["title"]))
        self.assertEqual(drive.screen["class"], "QuietrixProflePreferencesController")
        return drive

    def saved(self, drive, title="Work"):
        return next(entry for entry in self.read(drive, PROFILES)["profiles"] if entry["title"] == title)

    @staticmethod
    def story(drive):
        """Store calls and row changes, in order."""
        told = []
        for event in drive.events:
            if event["event"] == "store" and event["call"] != "reload":
                told.append((event["call"], event["ok"]))
            elif event["event"] in ("insert", "remove"):
                told.append((event["event"], event["index"], event["name"]))
        return told


class Rows(EditorTest):
    TABLE = [
        (None, 0, None, None, None, None, None),
        ("Title", 8, "title", SET, GET, None, "QXEditableTableCell"),
        (None, 0, None, None, None, None, None),
        ("Enable", 6, "enabled", SET, GET, None, "QXSwitchCell"),
        ("Schedule", 0, None, None, None, None, None),
        ("All Day", 6, "allDay", "setAllDayModeEnabled:specifier:", GET, None, "QXSwitchCell"),
        ("Active Hours", 1, None, None, None, "QXDateRangeController", "QXDateRangeCell"),
        ("Ringer Volume & Vibrate", 0, None, None, None, None, None),
        ("Playback Volume", 5, "playBackVolume", SET, GET, None, "QXSliderCell"),
        ("Ringer Volume", 5, "ringerVolume", SET, GET, None, "QXSliderCell"),
        ("Vibrate", 6, "vibrate", SET, GET, None, "QXSwitchCell"),
        ("Alerts", 0, None, None, None, None, None),
        ("Ring Alert", 6, "playAlert", SET, GET, None, "QXSwitchCell"),
        ("Alert Tone", 1, "alertToneIdentifier", SET, GET, "QuietrixAlertToneController", None),
        ("Vibrate Alert", 6, "vibrateAlert", SET, GET, None, "QXSwitchCell"),
        ("Wake Up Screen", 6, "wakeUpScreen", SET, GET, None, "QXSwitchCell"),
        (None, 0, None, None, None, None, None),
        ("Do not Disturb", 6, "dnDEnabled", SET, GET, None, "QXSwitchCell"),
        (None, 0, None, None, None, None, None),
        ("Show on StatusBar", 6, "showOnStatusBar", SET, GET, None, "QXSwitchCell"),
        ("WiFi Networks", 0, None, None, None, None, None),
        ("WiFi Networks", 1, "wifiNetworks", None, None, "QuietrixWifiController", None),
        ("Calendars", 0, None, None, None, None, None),
        ("Calendar", 1, "calendarIdentifiers", SET, GET, "QuietrixCalendarsController", None),
        (None, 0, "CopyRightHeader", None, None, None, None),
    ]
    PROFILE = {"class": "QXProfile", "identifier": "ID-Work"}

    def test_enabledTimedWithAlert_are25(self):
        drive = self.edit(work())
        self.assertEqual([tuple(row[key] for key in ("name", "kind", "identifier", "set", "get", "detail", "cellClass"))
                          for row in drive.rows], self.TABLE)
        rows = drive.rows
        self.assertEqual(rows[1]["properties"], {"value": "Work", "placeholder": "Required", "autoCaps": "words",
                                                 "noAutoCorrect": False})
        for index in (3, 5, 10, 12, 14, 15):
            self.assertEqual(rows[index]["properties"], {"default": True}, index)
        self.assertEqual(rows[17]["properties"], {"default": False})
        self.assertEqual(rows[19]["properties"], {"default": False, "iconImage": "StatusBar"})
        self.assertEqual((rows[6]["properties"], rows[6]["height"], rows[6]["userInfo"]),
                         ({"height": 64.0}, 64, self.PROFILE))
        for index in (8, 9):
            self.assertEqual((rows[index]["properties"], rows[index]["height"]),
                             ({"min": 0, "max": 1, "leftImage": "SpeakerMute@2x", "rightImage": "SpeakerMax@2x"}, 70))
        self.assertEqual(rows[13]["userInfo"], {"keys": ["profile"]})
        self.assertEqual(rows[21]["userInfo"], {"keys": ["profile"]})
        self.assertEqual(rows[23]["userInfo"], {"keys": ["calendars", "profile"]})
        self.assertEqual(rows[13]["detailText"], "Calendar Alert")
        self.assertTrue(rows[24]["properties"]["footerText"].startswith(self.version_notice()))

    def test_hoursRow_hasItsFourLabels(self):
        drive = self.edit(work())
        blue = "#007affff"
        self.assertEqual(drive.row(name="Active Hours")["labels"], [
            {"tag": 21, "text": "From", "frame": [16, 10, 150, 20], "colour": "#000000ff", "alignment": 0},
            {"tag": 22, "text": "9:00 AM", "frame": [255, 10, 100, 20], "colour": blue, "alignment": 2},
            {"tag": 23, "text": "To", "frame": [16, 34, 150, 20], "colour": "#000000ff", "alignment": 0},
            {"tag": 24, "text": "5:00 PM", "frame": [255, 34, 100, 20], "colour": blue, "alignment": 2}])

    def test_sliderRow_hasItsTitleAboveItsControl(self):
        row = self.edit(work()).row(name="Ringer Volume")
        self.assertLessEqual(row["titleFrame"][1] + row["titleFrame"][3], row["controlFrame"][1])

    def test_phone_decidesOnImagesAndStatusBarRows(self):
        drive = self.edit(work(), device={"scale": "3.0", "statusBarLibrary": "false"})
        self.assertEqual(drive.row(name="Ringer Volume")["properties"]["leftImage"], "SpeakerMute@3x")
        self.assertEqual(drive.screen["count"], 23)
        self.assertEqual(drive.names()[17:19], ["Do not Disturb", "WiFi Networks"])

    def test_bar_wearsTheProductsColourAndSharesTheMessage(self):
        drive = self.edit(work())
        bar = drive.screen["bar"]
        self.assertEqual((drive.screen["title"], bar["barTint"], bar["tint"], bar["statusBarStyle"]),
                         ("Work", {"pattern": "nav", "alpha": 1}, "#ffffffff", 1))
        self.assertEqual(([item["image"] for item in bar["right"]], bar["left"]), (["twitter"], []))
        drive.bar("right", 0)
        self.assertEqual(drive.presented["kind"], "social")
        self.assertTrue(drive.presented["text"].startswith("I'm Loving #Quietrix"))


class Changes(EditorTest):
    def test_eachChange_isInTheFileAtOnce(self):
        drive = self.edit(work())
        for identifier, value in (("title", "Work"), ("playBackVolume", 0.25), ("ringerVolume", 0.75),
                                  ("vibrate", True), ("vibrateAlert", True), ("wakeUpScreen", True),
                                  ("dnDEnabled", True), ("showOnStatusBar", True)):
            drive.set(drive.row(identifier=identifier), value)
            self.assertEqual(self.saved(drive)[identifier], value)
            self.assertEqual(drive.row(identifier=identifier)["value"], value)

    def test_title_isTheScreensTooAfterTheEngineHasAnswered(self):
        drive = self.edit(work())
        drive.set(drive.row(identifier="title"), "Office")
        self.assertEqual((drive.screen["title"], self.saved(drive, "Office")["identifier"]), ("Office", "ID-Work"))
        self.assertEqual(self.story(drive), [("update", True)])

    def test_allDay_takesTwoRowsAndGivesOneBack(self):
        drive = self.edit(work())
        drive.set(drive.row(identifier="allDay"), True)
        self.assertEqual(self.story(drive),
                         [("update", True), ("remove", 6, "Active Hours"), ("remove", 7, "Playback Volume")])
        self.assertIs(self.saved(drive)["allDay"], True)
        # The engine's answer has rebuilt the rows since.
        self.assertEqual(drive.names()[5:8], ["All Day", "Ringer Volume & Vibrate", "Playback Volume"])
        drive.set(drive.row(identifier="allDay"), False)
        self.assertEqual(self.story(drive), [("update", True), ("insert", 6, "Active Hours")])

    def test_enable_removesFromBelowAndInsertsFromAbove(self):
        drive = self.edit(work())
        drive.set(drive.row(identifier="enabled"), False)
        story = self.story(drive)
        self.assertEqual(story[0], ("update", True))
        self.assertEqual([entry[1] for entry in story[1:]], list(range(23, 3, -1)))
        self.assertEqual([row["identifier"] for row in drive.rows], [None, "title", None, "enabled",
                                                                     "CopyRightHeader"])
        drive.set(drive.row(identifier="enabled"), True)
        story = self.story(drive)
        self.assertEqual([entry[1] for entry in story[1:]], list(range(4, 24)))
        self.assertEqual(drive.screen["count"], 25)

    def test_ringAlert_bringsTheToneRow(self):
        drive = self.edit(work(playAlert=False, alertToneIdentifier="texttone:Chord"))
        drive.set(drive.row(identifier="playAlert"), True)
        self.assertEqual(self.story(drive), [("update", True), ("insert", 13, "Alert Tone")])
        self.assertEqual(drive.row(name="Alert Tone")["detailText"], "Chord")

    def test_bodyOfASwitchRow_movesNothing(self):
        drive = self.edit(work())
        answer = drive.attempt("tap", row=drive.row(identifier="allDay")["index"])
        self.assertFalse(answer["ok"])
        self.assertEqual(self.story(drive), [])
        self.assertIs(drive.row(identifier="allDay")["value"], False)

    def test_failedSave_showsTheErrorAndKeepsWhatWasTyped(self):
        drive = self.edit(work())
        with open(drive.path(PROFILES), "wb") as file:
            file.write(b"no property list")
        drive.set(drive.row(identifier="title"), "Office")
        self.assertEqual((drive.presented["kind"], drive.presented["title"]), ("alert", "Error"))
        self.assertIn(PROFILES, drive.presented["message"])
        drive.choose("Close")
        self.assertEqual((drive.row(identifier="title")["value"], drive.screen["title"]), ("Office", "Office"))
        with open(drive.path(PROFILES), "rb") as file:
            self.assertEqual(file.read(), b"no property list")

    def test_changesHereAndInAnotherProcess_areBothInTheFile(self):
        drive = self.edit(work(), profile("Home"))
        other = self.start(root=drive.root)
        other.tap(other.row(name="Home"))
        other.set(other.row(identifier="vibrate"), True)
        drive.set(drive.row(identifier="dnDEnabled"), True)
        other.set(other.row(identifier="wakeUpScreen"), True)
        home, mine = self.saved(drive, "Home"), self.saved(drive)
        self.assertEqual((home["vibrate"], home["wakeUpScreen"], mine["dnDEnabled"]), (True, True, True))

    def test_profileChangedElsewhere_isShown(self):
        drive = self.edit(work())
        self.write(drive, PROFILES, {"format": 1, "profiles": [work(endTime="6:00 PM")]})
        drive.do("post", name=APPLIED)
        self.assertEqual(drive.row(name="Active Hours")["labels"][3]["text"], "6:00 PM")


class NewProfile(EditorTest):
    def setUp(self):
        self.drive = self.open([profile("Home")], switch=True)
        self.drive.bar("right", 0)

    def test_bar_hasCancelAndSave(self):
        bar = self.drive.screen["bar"]
        self.assertEqual([(item["system"], item["action"]) for item in bar["left"] + bar["right"]],
                         [(1, "dismissVieControllerAction:"), (3, "addProfileAction:")])
        self.assertEqual((self.drive.screen["modals"], bar["barTint"]), (1, {"pattern": "nav", "alpha": 1}))

    def test_saved_isInListAndFile(self):
        self.drive.set(self.drive.row(identifier="title"), "Gym")
        if not self.drive.row(identifier="enabled")["value"]:
            self.drive.set(self.drive.row(identifier="enabled"), True)
        self.drive.set(self.drive.row(identifier="ringerVolume"), 0.5)
        self.assertEqual(self.story(self.drive), [])
        self.drive.bar("right", 0)
        self.assertEqual(self.story(self.drive), [("add", True)])
        self.assertEqual((self.drive.screen["modals"], self.drive.screen["class"]),
                         (0, "QuietrixPreferencesController"))
        self.assertIn("Gym", self.drive.names())
        self.assertEqual(self.saved(self.drive, "Gym")["ringerVolume"], 0.5)
        self.assertNotIn("newProfile", self.saved(self.drive, "Gym"))

    def test_hours_areAnnouncedAndShown(self):
        if not self.drive.row(identifier="enabled")["value"]:
            self.drive.set(self.drive.row(identifier="enabled"), True)
        if self.drive.row(identifier="allDay")["value"]:
            self.drive.set(self.drive.row(identifier="allDay"), False)
        self.drive.tap(self.drive.row(name="Active Hours"))
        self.drive.do("pickTimeRow", row=1)
        self.drive.do("pickTime", time="11:59 PM")
        self.assertEqual([event["name"] for event in self.drive.events_of("local")], [DATA_UPDATE])
        self.assertEqual(self.story(self.drive), [])
        self.drive.back()
        self.assertEqual(self.drive.row(name="Active Hours")["labels"][3]["text"], "11:59 PM")
        self.drive.bar("right", 0)
        self.assertEqual(self.saved(self.drive, "New Profile")["endTime"], "11:59 PM")


class ActiveHours(EditorTest):
    def setUp(self):
        self.drive = self.edit(work())
        self.drive.tap(self.drive.row(name="Active Hours"))

    @property
    def pane(self):
        return self.drive.screen["pane"]

    def test_opened_showsBothTimesAndPicksFrom(self):
        self.assertEqual((self.drive.screen["class"], self.drive.screen["title"]),
                         ("QXDateRangeController", "Active Hours"))
        self.assertEqual(self.pane, {"rows": ["From 9:00 AM", "To 5:00 PM"], "selected": 0, "tag": 0,
                                     "time": "9:00 AM"})
        self.assertEqual(self.drive.screen["bar"]["barTint"], None)

    def test_rowSelected_movesThePickerAndSavesNothing(self):
        self.drive.do("pickTimeRow", row=1)
        self.assertEqual(self.pane, {"rows": ["From 9:00 AM", "To 5:00 PM"], "selected": 1, "tag": 1,
                                     "time": "5:00 PM"})
        self.assertEqual(self.story(self.drive), [])

    def test_laterTo_isSavedOnce(self):
        self.drive.do("pickTimeRow", row=1)
        self.drive.do("pickTime", time="5:01 PM")
        self.assertEqual(self.story(self.drive), [("update", True)])
        self.assertEqual((self.saved(self.drive)["endTime"], self.pane["rows"][1]), ("5:01 PM", "To 5:01 PM"))
        self.assertEqual((self.pane["selected"], self.pane["tag"]), (1, 1))
        self.drive.back()
        self.assertEqual(self.drive.row(name="Active Hours")["labels"][3]["text"], "5:01 PM")

    def test_fromOneMinuteBeforeTo_isSaved(self):
        self.drive.do("pickTime", time="4:59 PM")
        self.assertEqual((self.story(self.drive), self.saved(self.drive)["startTime"]), ([("update", True)], "4:59 PM"))

    def test_equalOrOverMidnight_isRefused(self):
        for row, time in ((1, "9:00 AM"), (0, "5:00 PM"), (0, "11:00 PM"), (1, "1:00 AM")):
            with self.subTest(time):
                self.drive.do("pickTimeRow", row=row)
                self.drive.do("pickTime", time=time)
                self.assertEqual(self.drive.presented, {
                    "kind": "alert", "title": "Error", "message": INVALID,
                    "actions": [{"title": "Close", "style": "cancel"}]})
                self.assertEqual((self.story(self.drive), self.pane["time"]), ([], time))
                self.drive.choose("Close")
                saved = self.saved(self.drive)
                self.assertEqual((saved["startTime"], saved["endTime"]), ("9:00 AM", "5:00 PM"))
                self.assertEqual(self.pane["rows"], ["From 9:00 AM", "To 5:00 PM"])

    def test_badMoves_areRefused(self):
        for command, fields in (("pickTimeRow", {"row": 2}), ("pickTimeRow", {"row": -1}),
                                ("pickTime", {"time": "25:00 PM"}), ("pickTime", {"time": "17:00"}),
                                ("pickTime", {})):
            answer = self.drive.attempt(command, **fields)
            self.assertFalse(answer["ok"], fields)
            self.assertTrue(answer["error"])
        self.drive.back()
        self.assertFalse(self.drive.attempt("pickTime", time="5:00 PM")["ok"])

    def test_changedElsewhere_isTakenAtTheNextLook(self):
        self.write(self.drive, PROFILES, {"format": 1, "profiles": [work(startTime="7:00 AM")]})
        self.drive.do("post", name=APPLIED)
        self.assertEqual(self.pane["time"], "9:00 AM")
        self.drive.do("pickTimeRow", row=0)
        self.assertEqual(self.pane["time"], "7:00 AM")


if __name__ == "__main__":
    main()
