# SPDX-License-Identifier: MIT
"""The plug-in through the drive channel of the real program: test_quietrix.py PROGRAM BUNDLE [unittest arguments]."""
import os
import plistlib
import subprocess
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from QuietrixCase import (APPLIED, CHANGED, DELETED, PATIENCE, PROFILES, SETTINGS, SWITCH, QuietrixTest,  # noqa: E402
                          main, profile)

SHARE = "Share \U0001F618"


class FreshPhone(QuietrixTest):
    def test_root_isFilledAsJustInstalled(self):
        drive = self.open()
        self.assertEqual(self.read(drive, SETTINGS), {SWITCH: False})
        with open(drive.path(SETTINGS), "rb") as file:
            self.assertEqual(file.read(8), b"bplist00")
        self.assertEqual(os.listdir(drive.path("/var/mobile/Library/Preferences")), ["com.velmora.quietrix.plist"])
        images = drive.path("/System/Library/PrivateFrameworks/PreferencesUI.framework")
        for name in ("SpeakerMute@2x.png", "SpeakerMute@3x.png", "SpeakerMax@2x.png", "SpeakerMax@3x.png"):
            self.assertTrue(os.path.isfile(os.path.join(images, name)), name)
        link = drive.path("/Library/PreferenceBundles/QuietrixPreferences.bundle")
        self.assertTrue(os.path.islink(link))
        self.assertEqual(os.path.realpath(link), os.path.realpath(self.BUNDLE))

    def test_switchWorksAtFirstStartAndSurvivesARestart(self):
        drive = self.open()
        drive.set(1, True)
        self.assertEqual(self.read(drive, SETTINGS), {SWITCH: True})
        drive.process.stdin.close()
        drive.process.wait(PATIENCE)
        again = self.start(root=drive.root)
        self.assertIs(again.rows[1]["value"], True)
        self.assertEqual(again.names(), [None, "Enabled", "Active Profiles", "No Profiles", "Inactive Profiles",
                                         "No Profiles", "About", "Miscellaneous"])


class RootList(QuietrixTest):
    def test_switchOff_isHeaderSwitchAboutAndMiscellaneous(self):
        drive = self.open([profile("A")], switch=False)
        self.assertEqual([(row["name"], row["kind"]) for row in drive.rows],
                         [(None, 0), ("Enabled", 6), ("About", 0), ("Miscellaneous", 1)])

    def test_rows_areAsDeclared(self):
        drive = self.open(switch=False)
        header, switch, about, misc = drive.rows
        self.assertEqual(header["properties"], {"headerCellClass": "QXPackageHeaderCell", "title": "Quietrix Go",
                                                "subTitle": "Silence your iDevice without noice!!"})
        self.assertEqual(header["background"], {"pattern": "nav", "alpha": 0.85})
        self.assertEqual((switch["identifier"], switch["set"], switch["get"], switch["cellClass"], switch["detail"]),
                         (SWITCH, "setPreferenceValue:specifier:", "preferenceValue:", "QXSwitchCell", None))
        self.assertEqual(switch["onTint"], {"pattern": "nav", "alpha": 1})
        self.assertEqual(about["identifier"], "CopyRightHeader")
        self.assertTrue(about["properties"]["footerText"].startswith(self.version_notice()))
        self.assertEqual((misc["identifier"], misc["detail"], misc["properties"], misc["accessory"]),
                         ("Miscellaneous", "QuietrixMiscController", {"iconImage": "Misc"}, 1))

    def test_bar_wearsTheChromeAndGivesItBack(self):
        drive = self.open(switch=False)
        bar = drive.screen["bar"]
        self.assertEqual((bar["tint"], bar["barTint"], bar["statusBarStyle"], bar["titleView"]),
                         ("#ffffffff", {"pattern": "nav", "alpha": 1}, 1, {"image": "Quietrix"}))
        self.assertEqual(bar["titleFade"], 1)
        self.assertEqual([(item["system"], item["image"], item["action"]) for item in bar["right"]],
                         [(4, None, "addProfileAction:"), (None, "twitter", "__tessaneTwitterAction:")])
        drive.back()
        bar = drive.screen["bar"]
        self.assertEqual((bar["tint"], bar["barTint"], bar["statusBarStyle"], bar["titleFade"]), (None, None, 0, 0))

    def test_switchingOn_insertsAnimatedAndReloads(self):
        drive = self.open([profile("A"), profile("B"), profile("C", enabled=False)], switch=False)
        drive.set(1, True)
        inserts = drive.events_of("insert")
        self.assertEqual([(event["index"], event["name"], event["animated"]) for event in inserts],
                         [(2, "Active Profiles", True), (3, "A", True), (4, "B", True),
                          (5, "Inactive Profiles", True), (6, "C", True)])
        kinds = [event["event"] for event in drive.events]
        self.assertEqual(kinds[:9], ["write", "insert", "insert", "insert", "insert", "insert", "darwin", "reload",
                                     "darwinReceived"])
        self.assertEqual([event["name"] for event in drive.events_of("darwin")],
                         ["com.velmora.QuietrixEnabledOrDisableNotification"])
        self.assertEqual(self.read(drive, SETTINGS), {SWITCH: True, "other": ["kept"]})
        with open(drive.path(SETTINGS), "rb") as file:
            self.assertEqual(file.read(8), b"bplist00")

    def test_switchingOff_removesFromBelow(self):
        drive = self.open([profile("A"), profile("B"), profile("C", enabled=False)], switch=True)
        drive.set(1, False)
        self.assertEqual([(event["index"], event["animated"]) for event in drive.events_of("remove")],
                         [(6, True), (5, True), (4, True), (3, True), (2, True)])
        self.assertEqual(len(drive.events_of("darwin")), 1)
        self.assertEqual(drive.names(), [None, "Enabled", "About", "Miscellaneous"])

    def test_profiles_showTheirHours(self):
        drive = self.open([profile("Whole", allDay=True),
                           profile("Timed", allDay=False, startTime="9:05 AM", endTime="11:30 PM")], switch=True)
        self.assertEqual(drive.row(name="Whole")["detailText"], "All Day")
        self.assertEqual(drive.row(name="Timed")["detailText"], "9:05 AM - 11:30 PM")
        self.assertEqual(drive.row(name="Timed")["detailTextColour"], {"pattern": "nav", "alpha": 1})
        self.assertEqual(drive.row(name="Timed")["userInfo"], {"class": "QXProfile", "identifier": "ID-Timed"})

    def test_texts_followTheLanguage(self):
        drive = self.open(switch=True, device={"languages": "de-AT,en"})
        self.assertEqual(drive.names()[2:4], ["Aktive Profile", "Keine Profile"])
        self.assertEqual(drive.state["device"]["language"], "de-AT")

    def test_pad_hasTheBackgroundBehindItsHeader(self):
        drive = self.open(switch=False, device={"idiom": "pad"})
        self.assertEqual(drive.rows[0]["background"], {"pattern": "nav", "alpha": 0.85})

    def test_darkMode_makesTheSwitchTranslucentWhite(self):
        drive = self.open(switch=True)
        drive.do("dark", on=True)
        self.assertEqual(drive.rows[1]["onTint"], "#ffffff99")
        drive.do("dark", on=False)
        self.assertEqual(drive.rows[1]["onTint"], {"pattern": "nav", "alpha": 1})


class Deleting(QuietrixTest):
    def setUp(self):
        self.drive = self.open([profile("A"), profile("B")], switch=True)

    def test_cancel_keepsTheProfile(self):
        self.drive.delete(self.drive.row(name="A"))
        self.assertEqual(self.drive.presented, {
            "kind": "sheet", "title": None, "message": "Are you sure you want to delete the profile 'A'?",
            "actions": [{"title": "Delete", "style": "destructive"}, {"title": "Cancel", "style": "cancel"}]})
        self.assertTrue(self.drive.screen["editing"])
        self.drive.choose("Cancel")
        self.assertFalse(self.drive.screen["editing"])
        self.assertEqual([entry["title"] for entry in self.read(self.drive, PROFILES)["profiles"]], ["A", "B"])

    def test_delete_removesTheRowThenTheProfile(self):
        self.drive.delete(self.drive.row(name="A"))
        self.drive.choose("Delete")
        kinds = [event["event"] for event in self.drive.events]
        self.assertLess(kinds.index("remove"), kinds.index("store"))
        self.assertEqual([(event["call"], event["identifier"], event["ok"]) for event in self.drive.events_of("store")
                          if event["call"] != "reload"], [("delete", "ID-A", True)])
        names = [event["name"] for event in self.drive.events if event["event"] in ("local", "darwin")]
        self.assertEqual(names[:2], [DELETED, DELETED])
        self.assertEqual([entry["title"] for entry in self.read(self.drive, PROFILES)["profiles"]], ["B"])
        self.assertNotIn("A", self.drive.names())

    def test_otherRows_cannotBeDeleted(self):
        for name in ("Enabled", "Miscellaneous", "No Profiles"):
            answer = self.drive.attempt("delete", row=self.drive.row(name=name)["index"])
            self.assertFalse(answer["ok"], name)
            self.assertTrue(answer["error"])

    def test_profileGoneMeanwhile_showsTheErrorAndStaysGone(self):
        self.drive.delete(self.drive.row(name="A"))
        self.write(self.drive, PROFILES, {"format": 1, "profiles": [profile("B")]})
        self.drive.choose("Delete")
        self.assertEqual((self.drive.presented["kind"], self.drive.presented["title"]), ("alert", "Error"))
        self.assertIn("ID-A", self.drive.presented["message"])
        self.assertEqual([action["title"] for action in self.drive.presented["actions"]], ["Close"])
        self.drive.choose("Close")
        self.assertIsNone(self.drive.presented)


class Relay(QuietrixTest):
    def test_deleted_isFoldedIntoOneAppliedStateChange(self):
        drive = self.open(switch=True)
        drive.do("back")
        drive.do("post", name=DELETED)
        self.assertEqual([event["name"] for event in drive.events_of("local")], [APPLIED])
        self.assertEqual(drive.events_of("store"), [])

    def test_deletedOnTheRootList_isReloadedByTheListOnly(self):
        drive = self.open(switch=True)
        drive.do("post", name=DELETED)
        kinds = [(event["event"], event.get("name") or event.get("call")) for event in drive.events]
        self.assertEqual(kinds, [("darwin", DELETED), ("darwinReceived", DELETED), ("local", APPLIED),
                                 ("store", "reload"), ("reload", None)])

    def test_applied_reloadsBeforeItIsPostedOn(self):
        drive = self.open(switch=True)
        drive.do("back")
        drive.do("post", name=APPLIED)
        kinds = [(event["event"], event.get("name") or event.get("call")) for event in drive.events]
        self.assertEqual(kinds, [("darwin", APPLIED), ("darwinReceived", APPLIED), ("store", "reload"),
                                 ("local", APPLIED)])

    def test_thousandProfilesOneChangedElsewhere_isFollowed(self):
        profiles = [profile(f"P{number:04}") for number in range(1000)]
        drive = self.open(profiles, switch=True)
        self.assertEqual(drive.screen["count"], 1007)
        other = self.start(root=drive.root)
        profiles[500]["title"] = "Renamed"
        self.write(drive, PROFILES, {"format": 1, "profiles": profiles})
        other.do("post", name=CHANGED)
        drive.do("wait", event="darwinReceived", name=CHANGED, seconds=PATIENCE)
        self.assertEqual(drive.rows[503]["name"], "Renamed")
        self.assertEqual(other.do("state")["screen"]["rows"][503]["name"], "Renamed")


class Sharing(QuietrixTest):
    def setUp(self):
        self.drive = self.open(switch=False)

    def test_sheet_hasThreeItems(self):
        self.drive.bar("right", 1)
        self.assertEqual(self.drive.presented, {
            "kind": "sheet", "title": None, "message": None,
            "actions": [{"title": SHARE, "style": "default"}, {"title": "Follow @velmora", "style": "default"},
                        {"title": "Cancel", "style": "cancel"}]})
        answer = self.drive.attempt("tap", row=1)
        self.assertFalse(answer["ok"])
        self.drive.choose("Cancel")
        self.assertIsNone(self.drive.presented)

    def test_share_opensTheComposerAndKeepsItOpen(self):
        self.drive.bar("right", 1)
        self.drive.choose(SHARE)
        self.assertEqual(self.drive.presented, {
            "kind": "social", "service": "SLServiceTypeTwitter",
            "text": "I'm Loving #Quietrix, which automatically silence your iPhone by syncing with your calendar on "
                    "your iDevice."})
        self.drive.do("compose", result="cancelled")
        self.assertIsNone(self.drive.presented)
        self.assertEqual(self.drive.events_of("open"), [])

    def test_chineseFirst_opensTheOtherService(self):
        for languages, service in (("zh-Hans", "SLServiceTypeSinaWeibo"), ("zh-Hans-CN", "SLServiceTypeTwitter")):
            drive = self.open(device={"languages": languages})
            drive.bar("right", 1)
            drive.choose(drive.presented["actions"][0]["title"])
            self.assertEqual(drive.presented["service"], service)


class SharingFromEachController(QuietrixTest):
    """The flow is written three times, once in each controller that carries it."""

    def outcomes(self, drive):
        """What each item of the sheet shows and opens."""
        found = []
        for item in range(3):
            images = [button["image"] for button in drive.screen["bar"]["right"]]
            drive.bar("right", images.index("twitter"))
            sheet = drive.presented
            drive.choose(sheet["actions"][item]["title"])
            found.append((sheet, drive.presented, [event["url"] for event in drive.events_of("open")]))
            if drive.presented:
                drive.do("compose", result="cancelled")
        return found

    def test_sameTaps_doTheSame(self):
        for app in ("true", "false"):
            drive = self.open([profile("A", playAlert=True)], switch=True, device={"twitterApp": app})
            found = {drive.screen["class"]: self.outcomes(drive)}
            drive.tap(drive.row(identifier="Miscellaneous"))
            found[drive.screen["class"]] = self.outcomes(drive)
            drive.back()
            drive.tap(drive.row(name="A"))
            drive.tap(drive.row(identifier="alertToneIdentifier"))
            found[drive.screen["class"]] = self.outcomes(drive)
            self.assertEqual(sorted(found), ["QuietrixAlertToneController", "QuietrixMiscController",
                                             "QuietrixPreferencesController"])
            share, follow, cancel = found["QuietrixPreferencesController"]
            self.assertEqual((share[1]["kind"], follow[1], cancel[1:]), ("social", None, (None, [])))
            self.assertEqual(follow[2][0] == "twitter://user?screen_name=velmora", app == "true")
            for outcome in found.values():
                self.assertEqual(outcome, [share, follow, cancel])


class BadFiles(QuietrixTest):
    BAD = {
        "truncated": b"bplist00\xd1",
        "of another type": b"\x89PNG\r\n\x1a\n",
        "without profiles": plistlib.dumps(["no dictionary"]),
        "deeply nested": b"<plist version=\"1.0\">" + b"<array>" * 100000,
        "empty": b"",
    }

    def test_badProfilesFile_isLeftForRescue(self):
        for name, data in self.BAD.items():
            with self.subTest(name):
                drive = self.open([profile("A")], switch=True)
                with open(drive.path(PROFILES), "wb") as file:
                    file.write(data)
                drive.do("post", name=APPLIED)
                self.assertEqual(len([event for event in drive.events_of("log") if PROFILES in event["text"]]), 1)
                self.assertIn("A", drive.names())
                drive.delete(drive.row(name="A"))
                drive.choose("Delete")
                self.assertEqual(drive.presented["title"], "Error")
                self.assertIn(PROFILES, drive.presented["message"])
                with open(drive.path(PROFILES), "rb") as file:
                    self.assertEqual(file.read(), data)

    def test_settingsFileThatIsNoDictionary_isLeftAlone(self):
        drive = self.open()
        self.write(drive, SETTINGS, ["no dictionary"])
        drive.do("open")
        self.assertTrue(any(SETTINGS in event["text"] for event in drive.events_of("log")))
        drive.set(1, True)
        self.assertEqual(self.read(drive, SETTINGS), ["no dictionary"])
        self.assertIs(drive.rows[1]["value"], False)
        self.assertEqual(len(drive.events_of("darwin")), 1)

    def test_linkedProfilesFile_staysALink(self):
        drive = self.open([profile("A"), profile("B")], switch=True)
        target = drive.path("/var/mobile/elsewhere.plist")
        os.rename(drive.path(PROFILES), target)
        os.symlink(target, drive.path(PROFILES))
        drive.delete(drive.row(name="A"))
        drive.choose("Delete")
        self.assertTrue(os.path.islink(drive.path(PROFILES)))
        with open(target, "rb") as file:
            self.assertEqual([entry["title"] for entry in plistlib.load(file)["profiles"]], ["B"])


class CommandLine(QuietrixTest):
    def test_defaultBundle_isTheOneBuiltWithTheProgram(self):
        with subprocess.Popen([self.PROGRAM, "drive", "--root", "/proc/nowhere"], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as process:
            output, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual((process.returncode, output), (2, ""))
        self.assertEqual(len(errors.strip().splitlines()), 1)
        self.assertIn("/proc/nowhere", errors)


if __name__ == "__main__":
    main()
