#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Names a class of the plug-in at each place once, in a small tree of its own."""

import tempfile
import unittest
from pathlib import Path

import check_product_names


class ProductNames(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.addCleanup(self.directory.cleanup)
        self.tree = Path(self.directory.name).resolve()
        self.write("conditions/A.h", "class AController : public platform::PSListController {\n"
                                     "    PLATFORM_CLASS(AController, platform::PSListController)\n};\n")
        self.write("shell/B.cpp", "PLATFORM_REGISTER_CELL_CLASS(BCell)\n")
        self.write("profile/C.h", "class Elsewhere;\nstruct CRecord {\n};\n")
        self.write("settings/application/Fine.h", "class Fine {};\n")
        self.write("settings/web/src/fine.ts", "const elsewhere = 'Elsewhere or AControllerOfAnother';\n")

    def write(self, name, text):
        path = self.tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def breaches(self):
        return list(check_product_names.check_tree(self.tree))

    def test_classes_areThoseThatAreDefinedOrRegistered(self):
        self.assertEqual({"AController", "BCell", "CRecord"}, check_product_names.product_classes(self.tree))

    def test_soundTree_hasNoBreach(self):
        self.assertEqual([], self.breaches())

    def test_nameInAnyFileOfTheApplication_isNamed(self):
        for name, text in (("settings/web/src/a.ts", "one\nconst kinds = { AController: 1 };\n"),
                           ("settings/web/styles/a.css", "\n.BCell {}\n"),
                           ("settings/state/A.cpp", "\n// as a CRecord has it\n"),
                           ("settings/resources/Info.plist", "\n<string>AController</string>\n")):
            self.write(name, text)
            self.assertEqual(1, len(self.breaches()), name)
            self.assertIn(f"{name}:2: names the plug-in's class", self.breaches()[0])
            (self.tree / name).unlink()

    def test_nameInThePagesTests_isNamedUnlessTheyOpenTheRealPhone(self):
        self.write("tests/web/real-phone.mjs", "export const first = 'AController';\n")
        self.write("tests/web/tour.mjs", "import { first } from './real-phone.mjs';\nexport const all = ['BCell'];\n")
        self.write("tests/web/room/a.test.mjs", "import { all } from '../tour.mjs';\nassert(all[0] === 'BCell');\n")
        self.assertEqual([], self.breaches())
        self.write("tests/web/mock-phone.mjs", "import { b } from './b.mjs';\nexport const mock = 'BCell';\n")
        self.write("tests/web/b.mjs", "import { mock } from './mock-phone.mjs';\n")
        self.assertEqual(["tests/web/mock-phone.mjs:2: names the plug-in's class BCell"], self.breaches())

    def test_packages_areNotLookedAt(self):
        self.write("settings/web/node_modules/other/index.js", "AController\n")
        self.assertEqual([], self.breaches())

    def test_emptyTree_isABreach(self):
        with tempfile.TemporaryDirectory() as empty:
            self.assertIn("only 0 classes", "\n".join(check_product_names.check_tree(Path(empty))))


if __name__ == "__main__":
    unittest.main()
