#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Each command of `quietrix`: what it does, what it prints in both forms, and how it ends."""
import os

from CommandCase import (DONE, NO_SUCH_PROFILE, WRONG_USE, CommandTest, main, profile)


class Reading(CommandTest):
    def test_list_hasALineForEachProfileInTheFilesOrder(self):
        self.give(profile("Work"), profile("Home", enabled=False, allDay=False, wifiNetworks=["a", "b"]))
        lines = [line.split("  ") for line in self.do("list").output.splitlines()]
        cells = [[cell.strip() for cell in line if cell] for line in lines]
        self.assertEqual(["active", "Work", "All Day", "all calendars", "ID-Work"], cells[1])
        self.assertEqual(["inactive", "Home", "9:00 AM - 5:00 PM", "all calendars, 2 networks", "ID-Home"], cells[2])
        self.assertEqual(["Work", "Home"], [each["title"] for each in self.ask("list")])

    def test_rootThatIsNotThere_isEmptyAndStaysSo(self):
        self.assertEqual([], self.ask("list"))
        ended = self.run_("list")
        self.assertEqual((DONE, ""), (ended.status, ended.output))
        self.refuse(NO_SUCH_PROFILE, "show", "Work")
        self.assertFalse(os.path.exists(self.root))

    def test_show_hasEveryKeyWithItsOwnType(self):
        self.give(profile("Work", ringerVolume=0.5, wifiNetworks=["a"]))
        shown = self.ask("show", "Work")
        self.assertEqual(19, len(shown))
        self.assertEqual("identifier", next(iter(shown)))
        self.assertEqual((True, 0.5, None, ["a"], 0), (shown["enabled"], shown["ringerVolume"],
                                                       shown["alertToneIdentifier"], shown["wifiNetworks"],
                                                       shown["applyProfileEventStatus"]))
        self.assertIn("applyProfileEventStatus  0 (All)\n", self.do("show", "Work").output)


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


class WrongUse(CommandTest):
    def test_wrongUse_isOneLineAndStatusTwo(self):
        for words in ((), ("frob",), ("show",), ("show", "--frob", "x"), ("list", "more"), ("--root",)):
            self.refuse(WRONG_USE, *words)
        ended = self.run_("--json", "frob")
        self.assertEqual((WRONG_USE, ""), (ended.status, ended.output))
        self.assertEqual('There is no command "frob"; --help lists them.', ended.error)


if __name__ == "__main__":
    main()
