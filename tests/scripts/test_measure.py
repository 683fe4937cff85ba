#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The table of docs/performance.md, from made-up measures. Nothing is timed.

    test_measure.py SOURCE_DIRECTORY
"""
import os
import sys
import unittest

source = sys.argv.pop() if len(sys.argv) > 1 else "."
sys.path.insert(0, os.path.join(source, "bench"))

import table  # noqa: E402

DOCUMENT = f"before\n\n{table.BEGIN}\n{table.END}\n\nafter\n"


def measure(name="Reading", at="10 profiles", rounds=(3.0, 1.0, 2.0), **more):
    return {"measure": name, "at": at, "peer": "a peer", "unit": "times faster", "rounds": list(rounds), **more}


class TableTest(unittest.TestCase):
    def row(self, **more):
        return [cell.strip() for cell in table.line(measure(**more)).strip("|").split("|")]

    def test_Line_ofRounds_hasMedianAndSpread(self):
        self.assertEqual(self.row(rounds=(9, 1, 3, 2, 2.5)),
                         ["Reading", "10 profiles", "a peer", "2.50 times faster", "2.00 to 3.00", "", ""])

    def test_Line_atTarget_isReached(self):
        self.assertEqual(self.row(**{"at least": 2})[-2:], ["at least 2", "yes"])
        self.assertEqual(self.row(**{"at most": 2})[-2:], ["at most 2", "yes"])

    def test_Line_beyondTarget_isNotReached(self):
        self.assertEqual(self.row(**{"at least": 2.1})[-2:], ["at least 2.1", "**no**"])
        self.assertEqual(self.row(**{"at most": 1.9})[-2:], ["at most 1.9", "**no**"])

    def test_Line_withoutRounds_isAnError(self):
        with self.assertRaisesRegex(ValueError, "Reading at 10 profiles has no rounds"):
            table.line(measure(rounds=()))

    def test_Document_rewritten_keepsWhatIsAroundTheTable(self):
        text = table.rewritten(DOCUMENT, [measure()], "today.")
        self.assertTrue(text.startswith(f"before\n\n{table.BEGIN}\ntoday.\n\n{table.HEAD}\n| Reading "), text)
        self.assertTrue(text.endswith(f"|\n\n{table.END}\n\nafter\n"), text)

    def test_Document_rewrittenInPart_keepsOtherRowsInTheirPlaces(self):
        first = table.rewritten(DOCUMENT, [measure("Reading"), measure("Writing"), measure("Reading", at="2")], "then.")
        text = table.rewritten(first, [measure("Writing", rounds=[7])], "now.")
        self.assertEqual([table.name(row)[:2] for row in table.lines_of(text)],
                         [("Reading", "10 profiles"), ("Writing", "10 profiles"), ("Reading", "2")])
        self.assertIn("7.00 times faster", table.lines_of(text)[1])
        self.assertIn("2.00 times faster", table.lines_of(text)[0])
        self.assertNotIn("then.", text)

    def test_Document_withoutMarks_isAnError(self):
        with self.assertRaisesRegex(ValueError, "there are no lines"):
            table.rewritten("nothing", [measure()], "today.")

    def test_Output_ofABenchmark_givesItsLinesOfJSONOnly(self):
        self.assertEqual(table.parsed('a word\n{"measure": "Reading"}\n\n'), [{"measure": "Reading"}])

    def test_Document_ofTheProject_hasMarks(self):
        with open(os.path.join(source, "docs", "performance.md"), encoding="utf-8") as file:
            table.lines_of(file.read())


if __name__ == "__main__":
    unittest.main()
