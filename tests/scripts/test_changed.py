# SPDX-License-Identifier: MIT
"""Which tests ./test --changed chooses, in a small project with a build directory of its own.

    test_changed.py SOURCE_DIRECTORY
"""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

source = None

# A library of two sources that share a header, a program on it, and what the program has beside it.
NINJA = """
rule compile
  command = cp $in $out && echo "$out: $header" >$out.d
  depfile = $out.d
  deps = gcc
rule link
  command = cat $in >$out
build one.o: compile {project}/library/one.cpp
  header = {project}/library/shared.h
build two.o: compile {project}/library/two.cpp
  header = {project}/library/two.h
build one-test: link one.o
build both-test: link one.o two.o
build settings/quietrix-settings: link two.o
build share/page/index.html: link {project}/page/wheel.ts
"""

TESTS = """
add_test(one-test "{build}/one-test")
add_test(both-test "{build}/both-test")
add_test(drive "python3" "{project}/tests/drive/test_drive.py" "{build}/settings/quietrix-settings")
add_test(page-rows "node" "--test" "rows.mjs")
set_tests_properties(page-rows PROPERTIES WORKING_DIRECTORY "{project}/tests/web" ENVIRONMENT "DIST={build}/share/page")
add_test(page-wheel "node" "--test" "wheel.mjs")
set_tests_properties(page-wheel PROPERTIES WORKING_DIRECTORY "{project}/tests/web" ENVIRONMENT "DIST={build}/share/page")
add_test(rules "python3" "{project}/tests/rules.py")
set_tests_properties(rules PROPERTIES LABELS "architecture")
"""

FILES = {
    "library/one.cpp": "", "library/two.cpp": "", "library/shared.h": "", "library/two.h": "", "page/wheel.ts": "",
    "notes/texts/story.txt": "",
    "tests/drive/test_drive.py": "from Drive import Drive\nopen('notes/texts')\n", "tests/drive/Drive.py": "import Lines\n",
    "tests/drive/Lines.py": "", "tests/web/rows.mjs": "import { open } from './harness.mjs';\n",
    "tests/web/wheel.mjs": "", "tests/web/harness.mjs": "", "tests/rules.py": "",
}


class ChangedTests(unittest.TestCase):
    def setUp(self):
        self.project = os.path.realpath(tempfile.mkdtemp(prefix="quietrix-changed-"))
        self.addCleanup(shutil.rmtree, self.project)
        self.build = os.path.join(self.project, "build")
        places = {"project": self.project, "build": self.build}
        for name, text in FILES.items():
            self.write(name, text)
        self.write("build/build.ninja", NINJA.format(**places))
        self.write("build/CTestTestfile.cmake", TESTS.format(**places))
        self.write(".gitignore", "/build/\n")
        subprocess.run(("git", "init", "-q", self.project), check=True)
        subprocess.run(("ninja", "-C", self.build), check=True, stdout=subprocess.DEVNULL)

    def write(self, name, text):
        path = os.path.join(self.project, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)

    def choose(self, *changed, budget="1000"):
        """The chosen tests in their order, and what is said of the others."""
        script = os.path.join(source, "packaging", "changed_tests.py")
        done = subprocess.run((sys.executable, "-B", script, self.project, self.build, "--budget", budget, "--", *changed),
                              check=True, capture_output=True, text=True)
        return done.stdout.split(), done.stderr

    def test_source_choosesWhatIsMadeOfIt_andSaysHowManyAreNot(self):
        names, said = self.choose("library/one.cpp")
        self.assertEqual(names, ["one-test", "rules", "both-test"])
        self.assertIn("3 of 6 tests", said)

    def test_header_choosesWhatIsCompiledWithIt_fewestFilesFirst(self):
        names, _ = self.choose("library/two.h")
        self.assertEqual([each for each in names if each != "rules"], ["both-test", "drive"])

    def test_ownScriptAndWhatItImports_comeFirst(self):
        self.assertEqual(self.choose("tests/drive/test_drive.py")[0], ["drive", "rules"])
        self.assertEqual(self.choose("tests/drive/Lines.py")[0], ["drive", "rules"])
        self.assertEqual(self.choose("tests/web/harness.mjs")[0], ["page-rows", "rules"])

    def test_fileOfAFolderThatAScriptNames_choosesThatTest(self):
        self.assertEqual(sorted(self.choose("notes/texts/story.txt")[0]), ["drive", "rules"])

    def test_whatTheProgramHasBesideIt_choosesItsTests_theNamesakeFirst(self):
        names, _ = self.choose("page/wheel.ts")
        self.assertEqual(names[0], "page-wheel")
        self.assertEqual(sorted(names), ["drive", "page-rows", "page-wheel", "rules"])

    def test_budget_leavesOutTheFarthest_andNamesThem(self):
        self.write("build/Testing/Temporary/CTestCostData.txt",
                   "page-wheel 3 5\npage-rows 3 50\ndrive 3 400\nrules 3 1\n---\n")
        names, said = self.choose("page/wheel.ts", budget="60")
        self.assertEqual(sorted(names), ["page-rows", "page-wheel", "rules"])
        self.assertIn("farthest from the change: drive.", said)

    def test_evenWithoutTimeForAny_theNearestIsChosen(self):
        names, said = self.choose("library/one.cpp", budget="0")
        self.assertEqual(names, ["one-test"])
        self.assertIn("rules both-test", said)

    def test_fileThatNothingSees_choosesOnlyWhatAlwaysRuns(self):
        self.assertEqual(self.choose("README.md")[0], ["rules"])


if __name__ == "__main__":
    source = os.path.realpath(sys.argv.pop(1))
    unittest.main()
