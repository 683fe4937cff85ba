#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Damages a copy of the resources in one place at a time; check_resources.py has to name that place."""

import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from collections.abc import Callable
from pathlib import Path

import cpp_calls
import string_table

HERE = Path(__file__).resolve().parent
CHECKOUT = HERE.parents[1]
SPEAKERS = "settings/resources/root"
EVENT = "settings/resources/root/calendars/Home/personal/sample-dentist.ics"


class CheckResources(unittest.TestCase):
    def setUp(self) -> None:
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = Path(directory.name)
        shutil.copytree(CHECKOUT / "resources", self.root / "resources")
        shutil.copytree(CHECKOUT / "settings/resources", self.root / "settings/resources")
        self.write_source('auto title = localized("All Day");')

    def write_source(self, text: str) -> None:
        (self.root / "shell").mkdir(exist_ok=True)
        (self.root / "shell/Screen.cpp").write_text(text + "\n", "utf-8")

    def run_check(self) -> tuple[int, list[str]]:
        result = subprocess.run(
            [sys.executable, "-B", HERE / "check_resources.py", "--root", self.root],
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )
        self.assertEqual(result.stderr, "")
        return result.returncode, result.stdout.splitlines()

    def expect_problem(self, *words: str) -> None:
        status, lines = self.run_check()
        self.assertEqual(status, 1)
        self.assertTrue(
            any(all(word in line for word in words) for line in lines[:-1]), f"{words} is not in {lines}"
        )
        self.assertRegex(lines[-1], r"^\d+ of \d+ checks failed$")

    def change(self, path: str, change: Callable[[bytes], bytes]) -> None:
        before = (self.root / path).read_bytes()
        after = change(before)
        self.assertNotEqual(before, after, f"the change does nothing to {path}")
        (self.root / path).write_bytes(after)

    def replace(self, path: str, old: str, new: str) -> None:
        self.change(path, lambda data: data.replace(old.encode(), new.encode()))

    def test_untouchedResources_pass(self) -> None:
        status, lines = self.run_check()
        self.assertEqual(status, 0, lines)
        self.assertRegex(lines[-1], r"^\d+ checks passed$")

    def test_keyMissingInOneLanguage_isNamed(self) -> None:
        self.replace("resources/ja.lproj/Localizable.strings", '"To" = "終了";', "")
        self.expect_problem("ja Localizable", 'no translation of "To"')

    def test_keyThatEnglishLacks_isNamed(self) -> None:
        self.change("resources/de.lproj/Localizable.strings", lambda data: data + b'"Tuo" = "Bis";\n')
        self.expect_problem("de Localizable", '"Tuo" is not in the English table')

    def test_englishTextOtherThanItsKey_isNamed(self) -> None:
        self.replace("settings/resources/en.lproj/UIKit.strings", '= "Done"', '= "Ready"')
        self.expect_problem("en UIKit", '"Done"', "differs from its key")

    def test_emptyTranslation_isNamed(self) -> None:
        self.replace("resources/fr.lproj/Localizable.strings", '"Vibreur"', '""')
        self.expect_problem("fr Localizable", '"Vibrate"', "empty")

    def test_lostPlaceholder_isNamed(self) -> None:
        self.replace("resources/ar.lproj/Localizable.strings", "%@\\\"", "\\\"")
        self.expect_problem("ar Localizable", "placeholders")

    def test_lostLineBreak_isNamed(self) -> None:
        self.replace("resources/zh-Hans.lproj/Localizable.strings", "\\n\\n注", "\\n注")
        self.expect_problem("zh-Hans Localizable", "line breaks")

    def test_resetProfilesTranslatedTwice_isNamed(self) -> None:
        self.replace("settings/resources/es.lproj/Localizable.strings", "Restablecer perfiles", "Borrar todo")
        self.expect_problem("es:", '"Reset Profiles" differs')

    def test_sameTitleForTwoEventStatuses_isNamed(self) -> None:
        self.replace("resources/de.lproj/Localizable.strings", '"Vorläufig"', '"Angenommen"')
        self.expect_problem("de:", "four different titles")

    def test_syntaxErrorInTable_isNamedWithItsLine(self) -> None:
        self.replace("settings/resources/de.lproj/UIKit.strings", '"Fertig";', '"Fertig"')
        self.expect_problem("de.lproj/UIKit.strings:9", "expected ';'")

    def test_damagedImage_isNamed(self) -> None:
        self.change("resources/icon@2x.png", lambda data: data[:200] + bytes([data[200] ^ 1]) + data[201:])
        self.expect_problem("icon@2x.png", "checksum")

    def test_imageOfAnotherScale_isNamed(self) -> None:
        shutil.copy(self.root / SPEAKERS / "SpeakerMax@2x.png", self.root / SPEAKERS / "SpeakerMax@3x.png")
        self.expect_problem("SpeakerMax", "exact ratio")

    def test_lightBar_isNamed(self) -> None:
        for suffix in ("", "@2x", "@3x"):
            path = self.root / f"resources/nav{suffix}.png"
            shutil.copy(self.root / f"resources/email{suffix}.png", path)
        self.expect_problem("contrast of white on the bar")

    def test_versionAsNumber_isNamed(self) -> None:
        self.change("resources/Quietrix.plist",
                    lambda data: re.sub(rb"<string>[\d.]+</string>", b"<real>1.4</real>", data))
        self.expect_problem("Quietrix.plist", "Version is 1.4")

    def test_brokenPropertyList_isNamed(self) -> None:
        self.replace("settings/resources/Info.plist", "</dict>", "")
        self.expect_problem("settings/resources/Info.plist", "not a property list")

    def test_eventWithLineFeedsAlone_isNamed(self) -> None:
        self.replace(EVENT, "\r\n", "\n")
        self.expect_problem("sample-dentist.ics", "CR LF")

    def test_keyThatNoTableHas_isNamedWithItsLine(self) -> None:
        self.write_source('localized("All Day");\n\nauto text = localizedInMainBundle("All "\n    "Night");')
        self.expect_problem("shell/Screen.cpp:3", '"All Night"', "localizedInMainBundle")

    def test_sourcesWithoutAnyCall_areNamed(self) -> None:
        self.write_source('translated("All Day");')
        self.expect_problem("no source asks for a localised text")


class Literals(unittest.TestCase):
    def found(self, source: str) -> list[tuple[str, int]]:
        return list(cpp_calls.literals(source, "localized"))

    def test_adjacentLiteralsWithEscapes_areOneText(self) -> None:
        self.assertEqual(
            self.found('base::localized("a\\n"  // why\n  "\\"b\\"\\x41" u8"\\U0001F618")'),
            [('a\n"b"A\U0001f618', 1)],
        )

    def test_rawLiteral_isTakenAsItStands(self) -> None:
        self.assertEqual(self.found('localized(R"x(a\\n")")x")'), [('a\\n")"', 1)])

    def test_commentsAndOtherLiterals_areNoCalls(self) -> None:
        source = '// localized("a")\n/* localized("b") */ f("localized(\\"c\\")", \'"\', 1\'0); localized("d");'
        self.assertEqual(self.found(source), [("d", 2)])

    def test_keyKnownOnlyAtRunTime_isPassedOver(self) -> None:
        self.assertEqual(self.found('localized(name); localized("a" + name); relocalized("b");'), [])


class StringTable(unittest.TestCase):
    def read(self, text: str) -> dict[str, str]:
        with tempfile.TemporaryDirectory() as directory:
            path = Path(directory) / "Some.strings"
            path.write_text(text, "utf-8")
            return string_table.read(path)

    def test_escapes_areDecoded(self) -> None:
        self.assertEqual(
            self.read('/* a */ "k\\"" = "\\\\ \\n \\U00A0\\UD83D\\UDE18";'), {'k"': "\\ \n \u00a0\U0001f618"}
        )

    def test_badTables_areRefused(self) -> None:
        texts = ('"a"="b";"a"="c";', '"a"="\\q";', '"a"="b"', 'a = "b";', '"a"="\\UD83D";', '"a"="b', "/*")
        for text in texts:
            with self.subTest(text), self.assertRaises(string_table.TableError):
                self.read(text)


if __name__ == "__main__":
    unittest.main()
