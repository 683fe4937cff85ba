#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Each command of `quietrix`: what it does, what it prints in both forms, and how it ends."""
import fcntl
import json
import os
import plistlib
import pty
import select
import subprocess

from CommandCase import (DONE, FAILED, NO_SUCH_PROFILE, NOT_CONFIRMED, PATIENCE, PREFERENCES, PROFILES, SETTINGS, SWITCH,
                         WRONG_USE, CommandTest, Ended, main, profile)

# Moves the cursor, ends the line, turns the text around, and is no UTF-8 on its own.
HOSTILE = "\x1b[2J\x07a\nb\u202e\u009b1A"


class Reading(CommandTest):
    def test_list_hasALineForEachProfileInTheFilesOrder(self):
        self.give(profile("Work"), profile("Home", enabled=False, allDay=False, wifiNetworks=["a", "b"]))
        lines = [line.split("  ") for line in self.do("list").output.splitlines()]
        cells = [[cell.strip() for cell in line if cell] for line in lines]
        self.assertEqual(["active", "Work", "All Day", "all calendars", "ID-Work"], cells[1])
        self.assertEqual(["inactive", "Home", "9:00 AM - 5:00 PM", "all calendars, 2 networks", "ID-Home"], cells[2])
        self.assertEqual(["Work", "Home"], [each["title"] for each in self.ask("list")])

    def test_listsColumns_standBelowEachOtherWhateverTheirLetters(self):
        self.give(profile("日本語"), profile("abcdef"))
        header, wide, narrow = self.do("list").output.splitlines()
        # Three letters that are two columns wide each.
        self.assertEqual(narrow.index("All Day"), wide.index("All Day") + 3)
        self.assertEqual(header.index("HOURS"), narrow.index("All Day"))

    def test_rootThatIsNotThere_isEmptyAndStaysSo(self):
        self.assertEqual([], self.ask("list"))
        ended = self.run_("list")
        self.assertEqual((DONE, ""), (ended.status, ended.output))
        self.assertEqual({"enabled": False, "root": self.root, "profiles": {"active": 0, "inactive": 0}},
                         self.ask("status"))
        self.assertEqual([], self.ask("export"))
        for words in (("show", "Work"), ("set", "Work", "vibrate=no"), ("enable", "Work"), ("delete", "Work", "--yes")):
            self.refuse(NO_SUCH_PROFILE, *words)
        for words in (("off",), ("reset", "--yes")):
            self.refuse(FAILED, *words)
        self.assertEqual(FAILED, self.run_("doctor").status)
        self.refuse(WRONG_USE, "add", "Work", "vibrate=maybe")
        self.assertFalse(os.path.exists(self.root))

    def test_show_hasEveryKeyWithItsOwnType(self):
        self.give(profile("Work", ringerVolume=0.5, wifiNetworks=["a"]))
        shown = self.ask("show", "Work")
        self.assertEqual([key["key"] for key in self.ask("keys")], list(shown))
        self.assertEqual(19, len(shown))
        self.assertEqual((True, 0.5, None, ["a"], 0), (shown["enabled"], shown["ringerVolume"],
                                                       shown["alertToneIdentifier"], shown["wifiNetworks"],
                                                       shown["applyProfileEventStatus"]))
        self.assertIn("applyProfileEventStatus  0 (All)\n", self.do("show", "Work").output)

    def test_keys_tellTypeDefaultRangeAndMeaning(self):
        keys = self.ask("keys")
        self.assertTrue(all(list(key) == ["key", "type", "default", "range", "meaning"] for key in keys))
        defaults = {key["key"]: key["default"] for key in keys}
        added = self.ask("add", "Work")
        for key in ("identifier", "title"):
            del defaults[key], added[key]
        self.assertEqual(defaults, added)


class Naming(CommandTest):
    def test_profile_isNamedByIdentifierFirst_thenByPrefixOrTitle(self):
        self.give(profile("A"), {"identifier": "ID-AB", "title": "ID-A"}, {"identifier": "X1", "title": "same"},
                  {"identifier": "X2", "title": "same"})
        self.assertEqual("A", self.ask("show", "ID-A")["title"])
        self.assertEqual("ID-AB", self.ask("show", "ID-AB")["identifier"])
        self.assertEqual("X1", self.ask("show", "X1")["identifier"])
        for text in ("X", "same", "ID-", "nobody", ""):
            self.refuse(NO_SUCH_PROFILE, "show", text)
        ended = self.run_("--json", "show", "same")
        self.assertEqual(NO_SUCH_PROFILE, ended.status)
        self.assertIn('"same" (X1), "same" (X2)', ended.error)
        self.assertEqual(["X1", "X2"], [each["identifier"] for each in json.loads(ended.errors)["candidates"]])

    def test_shortIdentifiers_nameTheirProfile(self):
        self.give({"identifier": "12345678-A1", "title": "a"}, {"identifier": "12345678-A2", "title": "b"},
                  {"identifier": "99999999-B", "title": "c"})
        short = [line.split()[-1] for line in self.do("list").output.splitlines()[1:]]
        self.assertEqual(["12345678-A1", "12345678-A2", "99999999"], short)
        for identifier, title in zip(short, "abc"):
            self.assertEqual(title, self.ask("show", identifier)["title"])

    def test_wordsThatLookLikeSomethingElse_areWords(self):
        for title in ("[a,b]", "++", "{}", "%%", "list", "--", "'x'", "a=b"):
            self.ask("add", "--", title)
        self.assertEqual(["[a,b]", "++", "{}", "%%", "list", "--", "'x'", "a=b"], list(self.stored()))
        self.assertEqual(2, len(self.ask("disable", "[a,b]", "++")))
        self.assertEqual("--", self.ask("show", "--", "--")["title"])


class Changing(CommandTest):
    def test_add_isADefaultProfileWithWhatIsGiven(self):
        identifier = self.do("add", "Work", "allDay=no", "startTime=21:30", "ringerVolume=0.25").output.strip()
        shown = self.ask("show", identifier)
        self.assertEqual((identifier, "Work", False, "9:30 PM", "5:00 PM", 0.25),
                         tuple(shown[key] for key in ("identifier", "title", "allDay", "startTime", "endTime",
                                                      "ringerVolume")))
        self.assertEqual(shown, self.ask("list")[0])
        # A whole phone, which a program with screens takes as it is.
        self.assertEqual({SWITCH: False}, self.read(SETTINGS))
        self.assertTrue(os.path.isdir(self.path("Library/PreferenceBundles/QuietrixPreferences.bundle")))

    def test_set_takesEachValueInEachOfItsForms(self):
        self.give(profile("Work", engine="kept"))
        for word, key, value in (
                ("vibrate=off", "vibrate", False), ("vibrate=YES", "vibrate", True), ("dnDEnabled=true", "dnDEnabled", True),
                ("startTime=9:00", "startTime", "9:00 AM"), ("startTime=0:05", "startTime", "12:05 AM"),
                ("endTime=12:30 pm", "endTime", "12:30 PM"), ("title=", "title", ""), ("title=Work", "title", "Work"),
                ("playBackVolume=1", "playBackVolume", 1.0), ("playBackVolume=-0", "playBackVolume", 0.0), ("playBackVolume=.5", "playBackVolume", 0.5),
                ("wifiNetworks=a,b\\,c,d\\\\,a", "wifiNetworks", ["a", "b,c", "d\\"]),
                ("wifiNetworks+=x,a", "wifiNetworks", ["a", "b,c", "d\\", "x"]),
                ("wifiNetworks-=a,nobody", "wifiNetworks", ["b,c", "d\\", "x"]),
                ('wifiNetworks=["[q]", "1"]', "wifiNetworks", ["[q]", "1"]), ("wifiNetworks=", "wifiNetworks", []),
                ("applyProfileEventStatus=2", "applyProfileEventStatus", 2),
                ("applyProfileEventStatus=declined/cancelled", "applyProfileEventStatus", 3),
                ("alertToneIdentifier=texttone:Bell", "alertToneIdentifier", "texttone:Bell"),
                ("alertToneIdentifier=none", "alertToneIdentifier", None)):
            self.assertEqual(value, self.ask("set", "ID-Work", word)[key], word)
            self.assertEqual(str(value), str(self.read(PROFILES)["profiles"][0].get(key)), word)
        self.assertEqual("kept", self.stored()["Work"]["engine"])

    def test_set_isAllOrNothing(self):
        self.give(profile("Work"))
        before = self.read(PROFILES)
        for word in ("vibrate=maybe", "ringerVolume=1.01", "ringerVolume=-0.1", "ringerVolume=nan", "ringerVolume=",
                     "ringerVolume=1x", "startTime=25:00", "startTime=9", "applyProfileEventStatus=4",
                     "applyProfileEventStatus=some", "wifiNetworks=a,,b", "wifiNetworks=[1]", "wifiNetworks=[",
                     "title+=x", "identifier=x", "startDate=x", "newProfile=yes", "frob=1", "vibrate", "=1", "",
                     "alertToneIdentifier=Bell"):
            self.refuse(WRONG_USE, "set", "Work", "title=new", word)
        self.refuse(WRONG_USE, "set", "Work", b"title=\xff")
        self.assertEqual(before, self.read(PROFILES))

    def test_set_tellsWhatBecameAnother_andWritesNothingWhereNothingDid(self):
        self.give(profile("Work"))
        self.assertEqual('"Work" (ID-Work): vibrate yes → no\n', self.do("set", "Work", "vibrate=no").output)
        written = os.stat(self.path(PROFILES)).st_ino
        self.assertEqual("", self.do("set", "Work", "vibrate=no", "enabled=yes").output)
        self.assertEqual(written, os.stat(self.path(PROFILES)).st_ino)

    def test_enableAndDisable_takeSeveralAsOneChange(self):
        self.give(profile("A", enabled=False), profile("B"), profile("C", enabled=False))
        self.refuse(NO_SUCH_PROFILE, "enable", "A", "nobody")
        self.assertFalse(self.stored()["A"]["enabled"])
        self.assertEqual([True, True], [each["enabled"] for each in self.ask("enable", "A", "B", "A")])
        self.assertEqual("", self.do("disable", "C").output)
        self.assertEqual(3, len(self.do("disable", "A", "B", "C").output.splitlines()) + 1)

    def test_delete_asksOnATerminalOnly(self):
        self.give(profile("A"), profile("B"), profile("C"))
        self.refuse(NOT_CONFIRMED, "delete", "A")
        self.refuse(NO_SUCH_PROFILE, "delete", "A", "nobody", "--yes")
        for words in (("delete", "A", "--yes=false"), ("reset", "--yes=no")):
            self.assertIn("--yes takes no value", self.refuse(WRONG_USE, *words))
        self.assertEqual(["A", "B", "C"], list(self.stored()))
        for answer, left in ((b"n\n", "ABC"), (b"\n", "ABC"), (b"y\n", "BC")):
            ended = self.on_terminal(answer, "delete", "A")
            self.assertIn('Delete "A" (ID-A)? [y/N]', ended.errors)
            self.assertEqual(DONE if left == "BC" else NOT_CONFIRMED, ended.status)
            self.assertEqual(list(left), list(self.stored()))
        self.assertEqual(["C", "B"], [each["title"] for each in self.ask("delete", "C", "ID-B", "C", "--yes")])
        self.assertEqual({}, self.stored())

    def on_terminal(self, answer, *words):
        """The command with a terminal as its standard input."""
        controller, terminal = pty.openpty()
        try:
            process = self.start(*words, stdin=terminal, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            os.write(controller, answer)
            output, errors = process.communicate(timeout=PATIENCE)
        finally:
            os.close(controller)
            os.close(terminal)
        return Ended(subprocess.CompletedProcess(words, process.returncode, output, errors))


class Switch(CommandTest):
    def test_switch_keepsTheOtherSettings(self):
        self.give(profile("A"), profile("B", enabled=False), switch=False)
        self.assertEqual({"enabled": True, "root": self.root, "profiles": {"active": 1, "inactive": 1}}, self.ask("on"))
        self.assertEqual({SWITCH: True, "other": ["kept"]}, self.read(SETTINGS))
        self.assertEqual(f"on, 1 active and 1 inactive profiles in {self.root}\n", self.do("status").output)
        self.assertFalse(self.ask("off")["enabled"])
        self.assertEqual({SWITCH: False, "other": ["kept"]}, self.read(SETTINGS))

    def test_switchWithoutASettingsFile_failsAndMakesNone(self):
        self.give(profile("A"))
        for word in ("on", "off"):
            self.refuse(FAILED, word)
        self.assertFalse(os.path.exists(self.path(SETTINGS)))
        self.assertFalse(os.path.exists(self.path("private")))
        self.assertFalse(self.ask("status")["enabled"])

    def test_switchBesideADamagedProfilesFile_isMovedAllTheSame(self):
        self.give(switch=False)
        with open(self.path(PROFILES), "wb") as file:
            file.write(b"bplist00 no")
        self.assertEqual({"enabled": True, "root": self.root, "profiles": None}, self.ask("on"))
        self.assertTrue(self.read(SETTINGS)[SWITCH])
        ended = self.run_("off")
        self.assertEqual((DONE, f"off in {self.root}\n"), (ended.status, ended.output))
        self.assertIn("com.velmora.quietrix.profiles.plist", ended.errors)

    def test_on_makesANewRoot(self):
        os.mkdir(self.root)
        # Looking at an empty directory leaves it empty.
        self.assertEqual(FAILED, self.run_("doctor").status)
        self.assertTrue(self.ask("on")["enabled"])
        self.assertTrue(all(finding["ok"] for finding in self.ask("doctor")))

    def test_damagedSettingsFile_isLeftAlone(self):
        self.give()
        with open(self.path(SETTINGS), "wb") as file:
            file.write(b"bplist00 no")
        for word in ("on", "off", "status"):
            self.assertIn("com.velmora.quietrix.plist", self.refuse(FAILED, word))
        with open(self.path(SETTINGS), "rb") as file:
            self.assertEqual(b"bplist00 no", file.read())


class Moving(CommandTest):
    """Export and import."""

    def file(self, name):
        return os.path.join(self.directory, name)

    def give_document(self, name, text):
        with open(self.file(name), "w", encoding="utf-8") as file:
            file.write(text if isinstance(text, str) else json.dumps(text))
        return self.file(name)

    def test_exported_comesBackAsItWas_inEachFormat(self):
        first = profile("Wörk", ringerVolume=0.1, wifiNetworks=["a,b", "c"], alertToneIdentifier="texttone:Bell",
                        startTime="9:05 PM", applyProfileEventStatus=3)
        for name in ("all.json", "all.plist", "all.xml"):
            self.give(first, profile("Home", enabled=False))
            before = self.ask("list")
            self.assertEqual({"exported": 2, "file": self.file(name)}, self.ask("export", self.file(name)))
            self.assertEqual({"added": [], "changed": [], "removed": [], "unchanged": 2, "refused": []},
                             self.ask("import", self.file(name)))
            self.assertEqual({"removed": 2}, self.ask("reset", "--yes"))
            report = self.ask("import", self.file(name))
            self.assertEqual([{"identifier": "ID-Wörk", "title": "Wörk"}, {"identifier": "ID-Home", "title": "Home"}],
                             report["added"])
            self.assertEqual(before, self.ask("list"))

    def test_importedKeys_arePutIntoWhatIsThere(self):
        self.give(profile("A", engine="kept", vibrate=False), profile("B"))
        given = [{"identifier": "ID-A", "title": "new", "vibrate": False, "startTime": "09:00", "alertToneIdentifier": None},
                 {"identifier": "ID-C"}]
        path = self.give_document("some.json", given)
        expected = {"added": [{"identifier": "ID-C", "title": "New Profile"}],
                    "changed": [{"identifier": "ID-A", "title": "new", "keys": ["title"],
                                 "changes": {"title": ["A", "new"]}}],
                    "removed": [], "unchanged": 0, "refused": []}
        before = self.read(PROFILES)
        self.assertEqual(expected, self.ask("import", path, "--dry-run"))
        self.assertEqual(before, self.read(PROFILES))
        text = self.do("import", path).output
        self.assertIn('changed "new" (ID-A): title "A" → "new"\n'.replace('"A" →', "A →").replace('→ "new"', "→ new"), text)
        self.assertIn("1 added, 1 changed, 0 removed, 0 unchanged, 0 refused\n", text)
        self.assertEqual(["new", "B", "New Profile"], list(self.stored()))
        self.assertEqual(("kept", False), (self.stored()["new"]["engine"], self.stored()["new"]["vibrate"]))

    def test_replace_deletesWhatTheFileDoesNotName(self):
        self.give(profile("A"), profile("B"), profile("C"))
        path = self.give_document("one.json", {"identifier": "ID-B", "vibrate": False})
        report = self.ask("import", path, "--replace")
        self.assertEqual(["ID-A", "ID-C"], [each["identifier"] for each in report["removed"]])
        self.assertEqual(["B"], list(self.stored()))

    def test_oneThatCannotBeTaken_keepsAllOut(self):
        self.give(profile("A"))
        before = self.read(PROFILES)
        given = [{"identifier": "ID-A", "title": "new"}, {"title": "nobody"}, {"identifier": "x", "frob": 1}, 7,
                 {"identifier": "y", "ringerVolume": 2, "vibrate": "yes"}, {"identifier": "ID-A"},
                 {"identifier": "z", "newProfile": True}]
        path = self.give_document("bad.json", given)
        for words in (("--json", "import", path), ("--json", "import", path, "--dry-run"),
                      ("--json", "import", path, "--replace")):
            ended = self.run_(*words)
            self.assertEqual(FAILED, ended.status)
            self.assertEqual([2, 3, 4, 5, 6, 7], [each["number"] for each in ended.json["refused"]])
        self.assertIn("ringerVolume takes a number from 0 to 1, not 2.", ended.json["refused"][3]["why"])
        self.assertIn("vibrate takes true or false", ended.json["refused"][3]["why"])
        ended = self.run_("import", path)
        self.assertIn('refused "nobody" (): number 2: It has no identifier.\n', ended.output)
        self.assertEqual(1, ended.errors.count("\n"))
        self.assertEqual(before, self.read(PROFILES))

    def test_formats_areToldByNameOrOption(self):
        self.give(profile("A"))
        self.assertEqual("A", plistlib.loads(self.do("export", "-", "--format", "xml").output.encode())["profiles"][0]["title"])
        self.assertEqual("A", json.loads(self.do("export", "--format", "json").output)[0]["title"])
        for words in (("export", self.file("all")), ("export", "-", "--format", "ini"), ("import", self.file("all")),
                      ("import",)):
            self.refuse(WRONG_USE, *words)
        self.do("export", self.file("all"), "--format", "plist")
        with open(self.file("all"), "rb") as file:
            self.assertEqual(1, self.ask("import", "-", "--format", "plist", data=file.read())["unchanged"])
        # The profiles file itself.
        self.assertEqual(1, self.ask("import", self.path(PROFILES))["unchanged"])

    def test_filesThatCannotBeUsed_areNamed(self):
        self.give(profile("A"))
        for text in ("", "[", "7", '"x"', '{"profiles": 7}', "[] []", "[" * 100 + "]" * 100):
            path = self.give_document("bad.json", text)
            self.assertIn(path, self.refuse(FAILED, "import", path))
        self.assertIn("nowhere.json", self.refuse(FAILED, "import", self.file("nowhere.json")))
        os.mkdir(self.file("folder.json"))
        for command in ("import", "export"):
            self.assertIn("folder.json", self.refuse(FAILED, command, self.file("folder.json")))
        self.assertIn("nowhere", self.refuse(FAILED, "export", self.file("nowhere/all.json")))
        self.assertIn('"/dev/zero" cannot be read: it is larger', self.refuse(FAILED, "import", "/dev/zero", "--format", "json"))
        self.assertEqual(["A"], list(self.stored()))

    def test_export_writesIntoWhatIsNoFileInsteadOfReplacingIt(self):
        self.give(profile("A"))
        pipe = self.file("pipe.json")
        os.mkfifo(pipe)
        process = self.start("export", pipe, stdout=subprocess.DEVNULL)
        with open(pipe, encoding="utf-8") as file:
            self.assertEqual("A", json.load(file)[0]["title"])
        self.assertEqual(0, process.wait(PATIENCE))

    def test_importIntoARootThatIsNotThere_makesOneOnlyForAGoodFile(self):
        path = self.give_document("bad.json", [{"identifier": ""}])
        self.assertEqual(FAILED, self.run_("import", path).status)
        good = self.give_document("good.json", [profile("A")])
        self.ask("import", good, "--dry-run")
        self.assertFalse(os.path.exists(self.root))
        self.ask("import", good)
        self.assertEqual(["A"], list(self.stored()))
        self.assertEqual({SWITCH: False}, self.read(SETTINGS))


class Reset(CommandTest):
    def test_reset_deletesTheFile_damagedOrNot(self):
        self.give(profile("A"), profile("B"))
        self.refuse(NOT_CONFIRMED, "reset")
        self.assertEqual({"removed": 2}, self.ask("reset", "--yes"))
        self.assertFalse(os.path.exists(self.path(PROFILES)))
        self.refuse(FAILED, "reset", "--yes")
        with open(self.path(PROFILES), "wb") as file:
            file.write(b"no list")
        self.assertEqual({"removed": 0}, self.run_("--json", "reset", "--yes").json)
        self.assertFalse(os.path.exists(self.path(PROFILES)))


class Troubles(CommandTest):
    def test_damagedProfilesFile_isNamedAndLeftAlone(self):
        self.give(switch=True)
        with open(self.path(PROFILES), "wb") as file:
            file.write(b"bplist00 no")
        for words in (("list",), ("show", "A"), ("add", "A"), ("set", "A", "title=x"), ("delete", "A", "--yes"),
                      ("export",), ("status",)):
            ended = self.run_(*words)
            self.assertEqual((FAILED, ""), (ended.status, ended.output), words)
            self.assertIn("com.velmora.quietrix.profiles.plist", ended.errors)
            self.assertEqual(1, ended.errors.count("\n"))
        self.assertIn("com.velmora.quietrix.profiles.plist", self.run_("--json", "list").error)
        findings = {each["check"]: each for each in self.run_("--json", "doctor").json}
        self.assertFalse(findings["profiles file"]["ok"])
        self.assertTrue(findings["settings file"]["ok"])
        with open(self.path(PROFILES), "rb") as file:
            self.assertEqual(b"bplist00 no", file.read())

    def test_fileLockedByAnother_isTold(self):
        self.give(profile("A"))
        self.do("set", "A", "vibrate=no")
        lock = self.path(PREFERENCES + "/.locks/com.velmora.quietrix.profiles.plist")
        with open(lock, "r+b") as held:
            fcntl.lockf(held, fcntl.LOCK_EX)
            self.assertIn("after 2 seconds", self.refuse(FAILED, "set", "A", "title=x"))
            # What changes nothing waits for nobody.
            self.do("set", "A", "vibrate=no")
        self.assertEqual(["A"], list(self.stored()))

    def test_hostileTexts_moveNoTerminal(self):
        self.give({"identifier": HOSTILE + "1", "title": HOSTILE, "startTime": HOSTILE, "allDay": False,
                   "wifiNetworks": [HOSTILE]}, {"identifier": HOSTILE + "2", "title": HOSTILE})
        path = os.path.join(self.directory, "hostile.json")
        with open(path, "w", encoding="utf-8") as file:
            json.dump([{"identifier": HOSTILE, "title": HOSTILE, HOSTILE: 1}, {"identifier": HOSTILE + "1", "title": "x"}],
                      file)
        outputs = []
        for words in (("list",), ("show", HOSTILE + "1"), ("show", HOSTILE), ("show", HOSTILE + "\r"), (HOSTILE,),
                      ("set", HOSTILE + "2", f"title={HOSTILE}!", f"startTime={HOSTILE}"), ("import", path),
                      ("set", HOSTILE + "2", f"title={HOSTILE}!"), ("delete", HOSTILE + "2", "--yes"),
                      ("import", HOSTILE + ".json"), ("--root", HOSTILE, "status")):
            for options in ((), ("--json",)):
                ended = self.run_(*options, *words)
                outputs += [ended.output, ended.errors]
                self.assertLessEqual(ended.errors.count("\n"), 2, words)
        for output in outputs:
            for character in output.replace("\n", ""):
                self.assertTrue(ord(character) >= 0x20 and not 0x7f <= ord(character) < 0xa0 and character != "\u202e",
                                repr(output))
        self.assertTrue(any("\\x1B[2J" in output for output in outputs))

    def test_outputThatNobodyReads_endsQuietly(self):
        self.give(*(profile(f"{number}") for number in range(2000)))
        process = self.start("--json", "list", stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        process.stdout.read(1)
        process.stdout.close()
        self.assertEqual(b"", process.stderr.read())
        process.stderr.close()
        self.assertEqual(0, process.wait(PATIENCE))
        for options in ((), ("--json",)):
            with open("/dev/full", "wb") as full:
                ended = subprocess.run(self.arguments(*options, "list"), stdout=full, stderr=subprocess.PIPE, check=False)
            self.assertEqual(FAILED, ended.returncode)
            self.assertEqual(1, ended.stderr.count(b"\n"))
        self.assertIn("Standard output cannot be written", json.loads(ended.stderr)["error"])

    def test_streamsThatDoNotWait_areWaitedFor(self):
        self.give(*(profile(f"{number}") for number in range(2000)))
        # Another process that shares a pipe may have made it so.
        reader, writer = os.pipe()
        os.set_blocking(writer, False)
        process = self.start("--json", "list", stdout=writer)
        os.close(writer)
        with open(reader, "rb") as output:
            # It is full by then, or soon.
            self.assertTrue(select.select([output], [], [], PATIENCE)[0])
            self.assertEqual(2000, len(json.load(output)))
        self.assertEqual(DONE, process.wait(PATIENCE))
        reader, writer = os.pipe()
        os.set_blocking(reader, False)
        process = self.start("--json", "import", "-", stdin=reader, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        os.close(reader)
        with open(writer, "wb") as data:
            data.write(json.dumps([profile("new")]).encode())
        output, errors = process.communicate(timeout=PATIENCE)
        self.assertEqual((DONE, b""), (process.returncode, errors))
        self.assertEqual(1, len(json.loads(output)["added"]))

    def test_colours_areForTerminalsThatWantThem(self):
        self.give(profile("A"))
        self.assertNotIn("\x1b", self.do("list").output)
        for environment, has_colours in (({"TERM": "xterm"}, True), ({"TERM": "xterm", "NO_COLOR": "1"}, False),
                                         ({"TERM": "dumb"}, False)):
            shown = self.shown_on_terminal(environment, "list")
            self.assertEqual(has_colours, "\x1b[32mactive\x1b[0m" in shown, environment)
            self.assertEqual(has_colours, "\x1b" in shown, environment)
        self.assertNotIn("\x1b", self.shown_on_terminal({"TERM": "xterm"}, "--json", "list"))

    def shown_on_terminal(self, environment, *words):
        kept = {key: value for key, value in os.environ.items() if key != "NO_COLOR"}
        controller, terminal = pty.openpty()
        process = self.start(*words, stdin=subprocess.DEVNULL, stdout=terminal, env={**kept, **environment})
        os.close(terminal)
        shown = b""
        try:
            while select.select([controller], [], [], PATIENCE)[0]:
                shown += os.read(controller, 65536)
        except OSError:
            # The last who had it open is gone.
            pass
        os.close(controller)
        self.assertEqual(0, process.wait(PATIENCE))
        return shown.decode()


class WrongUse(CommandTest):
    def test_wrongUse_isOneLineAndStatusTwo(self):
        for words in ((), ("frob",), ("show",), ("show", "--frob", "x"), ("list", "more"), ("set", "A"), ("delete",),
                      ("--frob", "list"), ("--root",), ("export", "a.json", "b.json"), ("--json=false", "list"),
                      ("list", "--titles=no"), ("import", "--dry-run=0", "x.json")):
            self.refuse(WRONG_USE, *words)
        ended = self.run_("--json", "frob")
        self.assertEqual((WRONG_USE, ""), (ended.status, ended.output))
        self.assertEqual('There is no command "frob"; --help lists them.', ended.error)

    def test_helpAndVersion_areToldOnStandardOutput(self):
        for words in (("--help",), ("set", "--help"), ("--version",)):
            self.assertIn("quietrix", self.do(*words).output.lower() + "quietrix" * (words[0] == "set"))
        self.assertIn("KEY=VALUE", self.do("set", "--help").output)

    def test_options_mayStandBehindTheCommand(self):
        self.give(profile("A"))
        for option in ("--json", "--json=true"):
            self.assertEqual("A", json.loads(self.do("list", option).output)[0]["title"])


if __name__ == "__main__":
    main()
