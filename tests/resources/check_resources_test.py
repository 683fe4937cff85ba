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

    def write_source(self, text: str, name: str = "Screen") -> None:
        (self.root / "shell").mkdir(exist_ok=True)
        (self.root / f"shell/{name}.cpp").write_text(text + "\n", "utf-8")

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

    def test_textOfEachForm_isNamedWhereItStands(self) -> None:
        forms = {
            "conditional": 'auto a = localized(day ? std::string_view("All Day") :\n(b ? "To" : "Tuo"));',
            "constant": 'constexpr std::string_view name =\n"Tuo";\nauto a = localized(name);',
            "array": 'constexpr std::array<const char*, 2> names{"To",\n"Tuo"}; auto f(int i) { return localized(names.at(i)); }',
            "loop": 'void f() { for (const char* each : {"To",\n"Tuo"}) add(localized(each)); }',
            "parameter": 'Row row(const char* id, std::string_view name) { return make(localized(name)); }\n'
                           'auto a = row("id", "Tuo");',
            "handedOn": 'Row base(std::string_view name) { return localized(name); }\n'
                                     'Row Screen::toggle(const char* text = "To") const { return base(text); }\n'
                                     'auto a = screen->toggle("Tuo");',
            "table": 'struct Sort { int number; const char* text; };\nconstexpr Sort kinds[] = {{1, "To"}, {2, "Tuo"}};\n'
                       'void f() { for (const auto& kind : kinds) add(localized(kind.text)); }',
            "designated": 'struct Kind { int number; const char* name; };\n'
                                   'void f(Kind kind) { localized(kind.name); }\nauto a = f({.number = 1, .name = "Tuo"});',
        }
        for form, source in forms.items():
            self.write_source(source, form)
        _, lines = self.run_check()
        for form, source in forms.items():
            line = source[:source.index('"Tuo"')].count("\n") + 1
            self.assertIn(f'shell/{form}.cpp:{line}: no table has "Tuo" for localized()', lines)
        self.assertEqual(len(lines), len(forms) + 1, lines)
        for form, source in forms.items():
            self.write_source(source.replace("Tuo", "From"), form)
        status, lines = self.run_check()
        self.assertEqual(status, 0, lines)

    def test_textThatTheSourceDoesNotTell_isNamed(self) -> None:
        sources = ("localized(name());", "void f(Row row) { localized(row.title); }", 'localized("a" + name);',
                   "Row unused(std::string_view name) { return localized(name); }")
        for number, source in enumerate(sources):
            self.write_source("\n" + source, f"Form{number}")
        _, lines = self.run_check()
        for number in range(len(sources)):
            self.assertTrue(any(line.startswith(f"shell/Form{number}.cpp:2: which text") for line in lines), lines)

    def test_eachTextOfTheSources_isNamedWhenNoTableHasIt(self) -> None:
        """Every literal that begins as a text of the tables does begins otherwise, in a copy of the sources."""
        beginnings: dict[str, str] = {}
        for table in ("resources/en.lproj/Localizable.strings", "settings/resources/en.lproj/Localizable.strings"):
            for key in string_table.read(CHECKOUT / table):
                beginnings.setdefault('"' + key.split("\n")[0][:24], key)
        changed = set()
        for folder in ("shell", "profile", "conditions", "support", "velmora"):
            for path in (CHECKOUT / folder).rglob("*"):
                if path.suffix not in (".cpp", ".h"):
                    continue
                source = path.read_text("utf-8")
                for beginning, key in beginnings.items():
                    whole = beginning if len(beginning) == 25 else beginning + '"'
                    if whole in source:
                        changed.add(key)
                        source = source.replace(whole, '"?' + whole[1:])
                copy = self.root / path.relative_to(CHECKOUT)
                copy.parent.mkdir(parents=True, exist_ok=True)
                copy.write_text(source, "utf-8")
        self.assertGreater(len(changed), 40)
        _, lines = self.run_check()
        told = {line[line.index('"?') + 2:line.rindex('"')] for line in lines if ': no table has "?' in line}
        # The reset's question has "OK" as it stands.
        self.assertEqual(changed - {"OK"} - {text.replace("\\n", "\n") for text in told}, set())

    def test_linkedScreensTitle_isLookedFor(self) -> None:
        self.replace("resources/Info.plist", "<string>Event Status</string>", "<string>Event Stadium</string>")
        (self.root / "settings/application").mkdir()
        shutil.copy(CHECKOUT / "settings/application/LinkedScreens.cpp", self.root / "settings/application")
        self.expect_problem("LinkedScreens.cpp", '"Event Stadium"')

    def test_sourcesWithoutAnyCall_areNamed(self) -> None:
        self.write_source('translated("All Day");')
        self.expect_problem("no source asks for a localised text")


class Literals(unittest.TestCase):
    def found(self, source: str) -> list[tuple[str | None, int]]:
        return [(each.text, each.line) for each in cpp_calls.Sources({"Screen.cpp": source}).asked("localized")]

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

    def test_declarationsAndOtherFunctions_areNoCalls(self) -> None:
        self.assertEqual(self.found('std::string localized(std::string_view key);\nrelocalized("b");'), [])


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
