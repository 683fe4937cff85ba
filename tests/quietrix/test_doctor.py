#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What `quietrix doctor` finds in roots of all kinds, and what it says to do about it."""
import os

from CommandCase import DONE, FAILED, PREFERENCES, PROFILES, CommandTest, main, profile

LIBRARY = "var/mobile/Library"


class Doctor(CommandTest):
    def setUp(self):
        super().setUp()
        self.sounds = os.path.join(self.directory, "share/sounds")

    def put(self, path, text=""):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)

    def findings(self, status=DONE, **environment):
        ended = self.run_("--json", "doctor", environment=environment)
        self.assertEqual((status, ""), (ended.status, ended.errors), ended.output)
        for each in ended.json:
            self.assertEqual(each["ok"], each["mend"] is None, each)
        return {each["check"]: each for each in ended.json}

    def ill(self, check):
        """The one that is not well, as its detail and what to do."""
        findings = self.findings(FAILED)
        self.assertEqual([check], [each for each, finding in findings.items() if not finding["ok"]])
        return findings[check]["detail"], findings[check]["mend"]

    def test_newPhone_isWell(self):
        self.do("on")
        self.assertEqual(["root", "rights", "settings file", "profiles file", "locks", "notifications", "calendars",
                          "networks", "tones", "alert tones", "mail"], list(self.findings()))

    def test_whatIsNoPhone_isSaidAndLeftAsItIs(self):
        self.assertIn("is not there", self.ill("root")[0])
        os.mkdir(self.root)
        detail, mend = self.ill("root")
        self.assertIn("is empty", detail)
        self.assertIn("quietrix on", mend)
        self.assertEqual([], os.listdir(self.root))
        self.put(self.path("other"))
        self.assertIn("something else", self.ill("rights")[1])
        self.assertEqual(["other"], os.listdir(self.root))
        os.remove(self.path("other"))
        os.rmdir(self.root)
        os.symlink(os.path.join(self.directory, "nowhere"), self.root)
        detail, mend = self.ill("root")
        self.assertIn("a link to what is not there", detail)
        self.assertNotIn("quietrix on", mend)

    def test_profilesFileThatIsADirectory_isToBeMoved(self):
        self.do("on")
        os.mkdir(self.path(PROFILES))
        self.assertEqual("Move the directory out of the way.", self.ill("profiles file")[1])
        # The finding says it all.
        self.assertEqual("", self.run_("doctor").errors)

    def test_networks_areAList(self):
        self.do("on")
        self.write(PREFERENCES + "/known-networks.plist", {"no": "list"})
        self.assertIn("no array", self.ill("networks")[0])
        self.write(PREFERENCES + "/known-networks.plist", [{"SSID": "office"}])
        self.assertTrue(self.findings()["networks"]["ok"])

    def test_tones_areCounted(self):
        self.do("on")
        self.assertIn("built-in tones", self.findings()["tones"]["detail"])
        self.put(self.sounds + "/some/index.theme", "[Sound Theme]\nDirectories=stereo\n")
        self.put(self.sounds + "/some/stereo/bell.oga")
        self.put(self.sounds + "/some/stereo/chime.oga")
        self.assertEqual("2 sounds in the sound themes of this machine.", self.findings()["tones"]["detail"])

    def test_themesThatCannotBeUsed_areNamed(self):
        self.do("on")
        for name in "abcde":
            self.put(f"{self.sounds}/{name}/index.theme", "nonsense")
        detail = self.ill("tones")[0]
        for name in "abc":
            self.assertEqual(1, detail.count(f"{name}/index.theme"), detail)
        self.assertIn("And 2 more.", detail)
        # The log would only say it again.
        self.assertEqual("", self.run_("doctor").errors)

    def test_soundsThatCannotBeListed_areNamed(self):
        self.do("on")
        os.makedirs(os.path.dirname(self.sounds))
        os.symlink("sounds", self.sounds)
        self.assertIn("could not be listed", self.ill("tones")[0])

    def test_alertTonesThatAreGone_areNamedWithTheirProfiles(self):
        self.do("on")
        self.put(self.sounds + "/bell.oga")
        self.do("import", "-", data=b'[{"identifier": "1", "title": "A", "alertToneIdentifier": "texttone:bell"},'
                b'{"identifier": "2", "title": "B", "alertToneIdentifier": "texttone:Calendar Alert"}]')
        self.assertEqual("All are on this machine; 2 profiles have one.", self.findings()["alert tones"]["detail"])
        os.remove(self.sounds + "/bell.oga")
        detail, mend = self.ill("alert tones")
        self.assertEqual('The tone "texttone:bell" of "A" (1) is not on this machine.', detail)
        self.assertIn("alertToneIdentifier=none", mend)
        self.do("set", "A", "alertToneIdentifier=none")
        self.assertEqual("All are on this machine; 1 profile has one.", self.findings()["alert tones"]["detail"])

    def test_mailThatCannotBeKept_isTold(self):
        self.do("on")
        for name in ("Drafts", "Outbox"):
            path = self.path(f"{LIBRARY}/Mail/{name}")
            self.put(path)
            detail, mend = self.ill("mail")
            self.assertIn(f"{name}\": Not a directory.", detail)
            self.assertIn("remove it", mend)
            os.remove(path)
            os.mkdir(path)
        self.assertTrue(self.findings()["mail"]["ok"])

    def test_desktop_isLookedFor(self):
        self.do("on")
        self.assertIn("no desktop", self.findings(DISPLAY="", WAYLAND_DISPLAY="")["mail"]["detail"])
        self.put(self.directory + "/bin/xdg-open")
        self.assertIn("no desktop", self.findings(DISPLAY=":9", PATH=self.directory + "/bin")["mail"]["detail"])
        os.chmod(self.directory + "/bin/xdg-open", 0o755)
        self.assertIn("offered", self.findings(DISPLAY=":9", PATH="/nowhere:" + self.directory + "/bin")["mail"]["detail"])


if __name__ == "__main__":
    main()
