# SPDX-License-Identifier: MIT
"""The pickers of a profile's conditions through the drive channel: test_conditions.py PROGRAM BUNDLE [arguments]."""
import os
import plistlib
import shutil
import sys
import tempfile
import wave

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from QuietrixCase import APPLIED, PROFILES, QuietrixTest, main, profile  # noqa: E402

SET = "setPreferenceValue:specifier:"
GET = "readPreferenceValue:"
DATA_UPDATE = "com.velmora.ProfileDataUpdateNotification"
KNOWN_NETWORKS = "/var/mobile/Library/Preferences/known-networks.plist"
FOOTER = "When turned on Quietrix Go ignores the 'all day' events for the below selected calendars."
CALENDARS = {
    "work": {"reviews": ("Reviews", "#0000ff"), "meetings": ("Meetings", "#00ff00")},
    "Home": {"family": ("Family", "#ff0000")},
    "iCloud": {"family": ("Family", "#123456")},
}


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


class ConditionsTest(QuietrixTest):
    def setUp(self):
        self.sources = tempfile.mkdtemp(prefix="quietrix-sources-")
        self.addCleanup(shutil.rmtree, self.sources)
        self.calendars = os.path.join(self.sources, "calendars")
        for account, folders in CALENDARS.items():
            for folder, (name, colour) in folders.items():
                place = os.path.join(self.calendars, account, folder)
                write(os.path.join(place, "displayname"), name + "\n")
                write(os.path.join(place, "color"), colour + "\n")
        self.networks = os.path.join(self.sources, "networks.plist")
        with open(self.networks, "wb") as file:
            plistlib.dump([{"SSID": name} for name in ("Office", "Caf\u00e9", "Office")], file)
        self.tones = os.path.join(self.sources, "tones")
        os.makedirs(self.tones)
        for name in ("Chord", "message-new-instant"):
            with wave.open(os.path.join(self.tones, name + ".wav"), "wb") as sound:
                sound.setnchannels(1)
                sound.setsampwidth(2)
                sound.setframerate(8000)
                sound.writeframes(b"\0\0" * 80)

    def edit(self, device=None, **values):
        """The editor of a profile with these values, on a phone with the sample sources."""
        drive = self.open([profile("Work", playAlert=True, **values)], switch=True, device={
            "calendars": self.calendars, "networks": self.networks, "tones": self.tones, **(device or {})})
        drive.tap(drive.row(name="Work"))
        return drive

    def new(self):
        """The editor of a new profile."""
        drive = self.open([], switch=True, device={"calendars": self.calendars, "networks": self.networks,
                                                   "tones": self.tones})
        drive.bar("right", 0)
        for identifier in ("enabled", "playAlert"):
            if not drive.row(identifier=identifier)["value"]:
                drive.set(drive.row(identifier=identifier), True)
        return drive

    def saved(self, drive):
        return self.read(drive, PROFILES)["profiles"][0]

    @staticmethod
    def updates(drive):
        return [event["ok"] for event in drive.events_of("store") if event["call"] == "update"]

    @staticmethod
    def checked(drive):
        return [row["name"] for row in drive.rows if row["accessory"] == 3]


class Calendars(ConditionsTest):
    def open_picker(self, **values):
        drive = self.edit(**values)
        drive.tap(drive.row(identifier="calendarIdentifiers"))
        self.assertEqual(drive.screen["class"], "QuietrixCalendarsController")
        return drive

    def test_rows_areTheSwitchAndTheGroupsIgnoringCase(self):
        drive = self.open_picker()
        self.assertEqual([(row["name"], row["kind"]) for row in drive.rows],
                         [("Ignore All Day Events", 6), ("Home", 0), ("Family", 1), ("iCloud", 0), ("Family", 1),
                          ("work", 0), ("Meetings", 1), ("Reviews", 1), (None, 0)])
        switch = drive.rows[0]
        self.assertEqual((switch["identifier"], switch["set"], switch["get"], switch["cellClass"], switch["properties"]),
                         ("allDayEventsIgnored", SET, GET, "QXSwitchCell", {"default": True, "footerText": FOOTER}))
        home, cloud = drive.rows[2], drive.rows[4]
        self.assertEqual((home["cellClass"], home["set"], home["detail"], home["properties"]),
                         ("QXCalendarTableCell", None, None, {"iconImage": {"swatch": "#ff0000ff"}}))
        self.assertEqual(cloud["properties"], {"iconImage": {"swatch": "#123456ff"}})
        self.assertEqual(home["userInfo"], {"class": "EKCalendar", "identifier": "Home/family"})
        self.assertEqual(home["identifier"], "Home/family")
        self.assertNotEqual(home["identifier"], cloud["identifier"])
        self.assertEqual(drive.rows[8]["identifier"], "CopyRightHeader")
        self.assertIsNone(drive.screen["missing"])

    def test_identifiers_outliveARestartAndARenaming(self):
        first = [row["identifier"] for row in self.open_picker().rows]
        write(os.path.join(self.calendars, "Home", "family", "displayname"), "All of us\n")
        drive = self.open_picker()
        self.assertEqual([row["identifier"] for row in drive.rows], first)
        self.assertEqual(drive.rows[2]["name"], "All of us")

    def test_eachTap_isOneUpdateAndTheListKeepsItsOrder(self):
        drive = self.open_picker()
        reviews, family = drive.row(name="Reviews"), drive.rows[2]
        drive.tap(reviews)
        self.assertEqual(self.updates(drive), [True])
        drive.tap(family)
        self.assertEqual(self.saved(drive)["calendarIdentifiers"], [reviews["identifier"], family["identifier"]])
        self.assertEqual(self.checked(drive), ["Family", "Reviews"])
        drive.tap(reviews)
        drive.tap(reviews)
        self.assertEqual(self.saved(drive)["calendarIdentifiers"], [family["identifier"], reviews["identifier"]])

    def test_switch_opensAsTheProfileSays(self):
        for ignored in (False, True):
            self.assertIs(self.open_picker(allDayEventsIgnored=ignored).rows[0]["value"], ignored)

    def test_switchAndItsBody_areTwoThings(self):
        drive = self.open_picker(allDayEventsIgnored=False)
        self.assertIs(drive.rows[0]["value"], False)
        drive.set(drive.rows[0], True)
        self.assertIs(self.saved(drive)["allDayEventsIgnored"], True)
        drive.tap(drive.rows[0])
        self.assertEqual((self.saved(drive)["calendarIdentifiers"], self.checked(drive)),
                         (["allDayEventsIgnored"], ["Ignore All Day Events"]))
        self.assertIs(self.saved(drive)["allDayEventsIgnored"], True)

    def test_calendarAddedMeanwhile_comesWithTheNextQuestion(self):
        drive = self.open_picker()
        write(os.path.join(self.calendars, "Home", "garden", "displayname"), "Garden\n")
        drive.back()
        drive.do("post", name=APPLIED)
        drive.tap(drive.row(identifier="calendarIdentifiers"))
        self.assertIn("Garden", drive.names())

    def test_brokenFile_isLeftOutAndNamed(self):
        write(os.path.join(self.calendars, "Home", "broken.ics"), "no calendar at all\n")
        write(os.path.join(self.calendars, "Home", "torn.ics"), "BEGIN:VCALENDAR\nand then anything\n")
        drive = self.open_picker()
        self.assertEqual(drive.screen["count"], 9)
        self.assertIn("broken.ics", drive.errors())
        self.assertIn("torn.ics", drive.errors())

    def test_directoryThatIsGone_isEmptyAndNamed(self):
        drive = self.edit()
        drive.back()
        shutil.rmtree(self.calendars)
        drive.tap(drive.row(name="Work"))
        drive.tap(drive.row(name="Calendar"))
        self.assertEqual([row["identifier"] for row in drive.rows if row["kind"] != 0], ["allDayEventsIgnored"])
        self.assertEqual(drive.screen["missing"], "calendars")
        self.assertIn(self.calendars, drive.errors())

    def test_newProfile_isNotStored(self):
        drive = self.new()
        drive.tap(drive.row(identifier="calendarIdentifiers"))
        drive.tap(drive.row(name="Meetings"))
        self.assertEqual((drive.events_of("store"), self.checked(drive)), ([], ["Meetings"]))
        drive.back()
        drive.bar("right", 0)
        self.assertEqual(len(self.saved(drive)["calendarIdentifiers"]), 1)

    def test_freshPhone_hasItsSamples(self):
        drive = self.open([profile("Work")], switch=True)
        drive.tap(drive.row(name="Work"))
        drive.tap(drive.row(identifier="calendarIdentifiers"))
        self.assertEqual([row["name"] for row in drive.rows if row["kind"] == 0 and row["name"]], ["Home", "Work"])
        for row in drive.rows:
            self.assertNotIn("/", row["name"] or "", "an identifier in place of a name")


class EventStatus(ConditionsTest):
    def open_picker(self, **values):
        drive = self.edit(**values)
        self.assertEqual(drive.screen["links"], [{"title": "Event Status", "class": "QuietrixEventStatusController"}])
        drive.do("link", item=0)
        self.assertEqual(drive.screen["class"], "QuietrixEventStatusController")
        return drive

    def test_statusTwo_isTentativeAlone(self):
        drive = self.open_picker(applyProfileEventStatus=2)
        self.assertEqual(self.checked(drive), ["Tentative"])
        self.assertEqual([(row["name"], row["kind"], row["cellClass"]) for row in drive.rows[:4]],
                         [(name, 7, "QXEventStatusTableCell")
                          for name in ("All", "Accepted", "Tentative", "Declined/Cancelled")])


class Networks(ConditionsTest):
    def open_picker(self, device=None, **values):
        drive = self.edit(device, **values)
        drive.tap(drive.row(identifier="wifiNetworks"))
        self.assertEqual(drive.screen["class"], "QuietrixWifiController")
        return drive

    def test_rows_areTheListsInItsOrder(self):
        drive = self.open_picker(wifiNetworks=["Office"])
        rows = [(row["name"], row["identifier"], row["kind"], row["set"], row["get"], row["value"], row["userInfo"])
                for row in drive.rows[:-1]]
        self.assertEqual(rows, [(name, name, 6, SET, None, name == "Office", {"keys": ["SSID"]})
                                for name in ("Office", "Caf\u00e9", "Office")])

    def test_rootsOwnList_isTakenWhereNoneIsNamed(self):
        drive = self.open([profile("Work")], switch=True)
        drive.tap(drive.row(name="Work"))
        drive.tap(drive.row(identifier="wifiNetworks"))
        self.assertEqual([row["identifier"] for row in drive.rows], ["CopyRightHeader"])
        self.assertEqual(drive.screen["missing"], "networks")
        self.assertNotIn(os.path.basename(KNOWN_NETWORKS), drive.errors())
        self.write(drive, KNOWN_NETWORKS, [{"SSID": "Attic"}, {"SSID": b"caf\xe9"}])
        drive.back()
        drive.tap(drive.row(identifier="wifiNetworks"))
        self.assertEqual(drive.names()[:-1], ["Attic", "caf\\xE9"])
        self.assertIsNone(drive.screen["missing"])
        drive.set(drive.row(name="caf\\xE9"), True)
        self.assertEqual(self.saved(drive)["wifiNetworks"], ["caf\\xE9"])

    def test_switched_isStoredAndTheScreenHoldsTheProfileAlone(self):
        drive = self.open_picker()
        drive.set(drive.row(name="Caf\u00e9"), True)
        self.assertEqual((self.updates(drive), self.saved(drive)["wifiNetworks"]), ([True], ["Caf\u00e9"]))
        self.assertEqual(drive.screen["specifier"]["userInfo"], {"keys": ["profile"]})
        drive.set(drive.row(name="Caf\u00e9"), False)
        self.assertEqual(self.saved(drive)["wifiNetworks"], [])

    def test_twoOfOneName_showOneState(self):
        drive = self.open_picker()
        first, second = (row["index"] for row in drive.rows if row["name"] == "Office")
        for moved, stored in ((first, ["Office"]), (second, []), (second, ["Office"])):
            drive.set(moved, not drive.rows[moved]["value"])
            self.assertEqual([drive.rows[row]["value"] for row in (first, second)], [bool(stored)] * 2)
            self.assertEqual(self.saved(drive)["wifiNetworks"], stored)

    def test_brokenList_isEmptyAndNamed(self):
        write(self.networks, "no property list")
        drive = self.open_picker()
        self.assertEqual([row["identifier"] for row in drive.rows], ["CopyRightHeader"])
        self.assertIn("networks.plist", drive.errors())

    def test_systemWithoutABus_isEmptyAndLogged(self):
        environment = {**os.environ, "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=" + os.path.join(self.sources, "no-bus")}
        drive = self.open([profile("Work")], switch=True, device={"networks": "system"}, environment=environment)
        drive.tap(drive.row(name="Work"))
        drive.tap(drive.row(identifier="wifiNetworks"))
        self.assertEqual(drive.screen["count"], 1)
        self.assertTrue(drive.events_of("log"))


class Tones(ConditionsTest):
    def open_picker(self, device=None, **values):
        drive = self.edit(device, **values)
        drive.tap(drive.row(name="Alert Tone"))
        self.assertEqual(drive.screen["class"], "QuietrixAlertToneController")
        return drive

    def test_opened_isConfiguredAndListsTheDirectory(self):
        tones = self.open_picker(alertToneIdentifier="texttone:Chord").screen["tones"]
        names = {entry["identifier"]: entry["name"] for entry in tones.pop("list")}
        self.assertEqual(tones, {"superclass": "PSUIToneController", "selected": "texttone:Chord",
                                 "default": "texttone:Chord", "noneAtTop": True, "vibrations": False,
                                 "storeButton": True})
        self.assertEqual(names, {"texttone:Calendar Alert": "Calendar Alert", "texttone:Chord": "Chord",
                                 "texttone:message-new-instant": "Message New Instant"})

    def test_tonesThatAreThere_areNotMissing(self):
        self.assertIsNone(self.open_picker().screen["missing"])

    def test_withoutATone_theCalendarAlertIsSelected(self):
        self.assertEqual(self.open_picker().screen["tones"]["selected"], "texttone:Calendar Alert")

    def test_chosen_isSavedThenAnnounced(self):
        drive = self.open_picker()
        drive.do("pickTone", identifier="texttone:Chord")
        kinds = [(event["event"], event.get("call") or event.get("name")) for event in drive.events
                 if event["event"] in ("store", "local")]
        self.assertEqual(kinds[:2], [("store", "update"), ("local", APPLIED)])
        self.assertEqual(self.saved(drive)["alertToneIdentifier"], "texttone:Chord")
        self.assertEqual(drive.screen["specifier"]["userInfo"], {"keys": ["profile"]})
        drive.back()
        self.assertEqual(drive.row(name="Alert Tone")["detailText"], "Chord")

    def test_calendarAlert_hasOneNameInThePickerAndTheProfile(self):
        drive = self.edit({"languages": "de"}, alertToneIdentifier="texttone:Calendar Alert")
        self.assertEqual(drive.row(identifier="alertToneIdentifier")["detailText"], "Kalenderhinweis")
        drive.tap(drive.row(identifier="alertToneIdentifier"))
        names = {entry["identifier"]: entry["name"] for entry in drive.screen["tones"]["list"]}
        self.assertEqual(names["texttone:Calendar Alert"], "Kalenderhinweis")

    def test_none_storesTheDefault(self):
        drive = self.open_picker(alertToneIdentifier="texttone:Chord")
        drive.do("pickTone", identifier="texttone:Calendar Alert")
        drive.do("pickTone", identifier=None)
        self.assertEqual(self.saved(drive)["alertToneIdentifier"], "texttone:Chord")
        self.assertIsNone(drive.screen["tones"]["selected"])

    def test_newProfile_isOnlyAnnouncedToTheEditor(self):
        drive = self.new()
        drive.tap(drive.row(name="Alert Tone"))
        drive.do("pickTone", identifier="texttone:Chord")
        self.assertEqual([event["name"] for event in drive.events_of("local")], [DATA_UPDATE])
        self.assertEqual(drive.events_of("store"), [])
        drive.back()
        self.assertEqual(drive.row(name="Alert Tone")["detailText"], "Chord")

    def test_superclass_isTheFirstThatExists(self):
        for classes, version, superclass in (("SHSToneController,PSUIToneController", "11.4", "PSUIToneController"),
                                             ("SHSToneController,ToneController", "9.0", "SHSToneController"),
                                             ("SHSToneController,ToneController", "8.4", "ToneController")):
            drive = self.open_picker({"toneController": classes, "systemVersion": version})
            self.assertEqual(drive.screen["tones"]["superclass"], superclass)

    def test_noSuperclass_isLoggedAndLeavesAnEmptyScreen(self):
        drive = self.open_picker({"toneController": "none"})
        self.assertIsNone(drive.screen["tones"])
        self.assertEqual(drive.screen["missing"], "tones")
        self.assertFalse(drive.attempt("pickTone", identifier="texttone:Chord")["ok"])
        self.assertIn("############ ALERT NO SUPER TONE CONTROLLER CLASS #################", drive.errors())
        drive.back()
        self.assertEqual(drive.screen["class"], "QuietrixProflePreferencesController")

    def test_badPicks_areRefused(self):
        drive = self.open_picker()
        for fields in ({"identifier": "texttone:Nowhere"}, {"identifier": 7}, {}):
            self.assertFalse(drive.attempt("pickTone", **fields)["ok"], fields)
        self.assertEqual(self.updates(drive), [])

    def test_chrome_hasTheTitleAsText(self):
        bar = self.open_picker().screen["bar"]
        self.assertEqual((bar["titleView"], [item["action"] for item in bar["right"]], bar["barTint"]),
                         ({"label": "Alert Tone"}, ["__tessaneTwitterAction:"], {"pattern": "nav", "alpha": 1}))


if __name__ == "__main__":
    main()
