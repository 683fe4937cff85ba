# SPDX-License-Identifier: MIT
"""./run, ./test and ./gallery on machines that lack something, have it in another version, or ask for a password.

    test_scripts.py SOURCE_DIRECTORY

The scripts run in a copy of their own, with made-up tools first on the path that write down how they were called: no
test installs or builds anything.
"""
import os
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import unittest

source = None

TOOLS = {
    "g++": "echo 12.2.0",
    "cmake": 'case "$1" in --version) echo "cmake version 3.25.1" ;; esac',
    "node": "echo v18.20.4",
    "dpkg-query": "printf 'install ok installed'",
    "sudo": "exit 1",
    "apt-get": "true",
}


class ScriptCase(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="quietrix-scripts-")
        self.addCleanup(shutil.rmtree, self.directory)
        self.project = os.path.join(self.directory, "project")
        os.mkdir(self.project)
        for name in ("run", "test", "gallery"):
            shutil.copy(os.path.join(source, name), self.project)
        shutil.copytree(os.path.join(source, "packaging"), os.path.join(self.project, "packaging"))
        self.tools = os.path.join(self.directory, "tools")
        os.mkdir(self.tools)
        self.calls = os.path.join(self.directory, "calls")
        for name, body in TOOLS.items():
            self.tool(name, body)

    def tool(self, name, body):
        path = os.path.join(self.tools, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\necho "{name} $*" >>"{self.calls}"\n{body}\n')
        os.chmod(path, 0o755)
        return path

    def built_program(self):
        """A build directory that is up to date, with a program that tells its arguments."""
        settings = os.path.join(self.project, "build", "release", "settings")
        os.makedirs(settings)
        open(os.path.join(self.project, "build", "release", "build.ninja"), "w", encoding="utf-8").close()
        program = os.path.join(settings, "quietrix-settings")
        with open(program, "w", encoding="utf-8") as file:
            file.write('#!/bin/sh\necho "started with: $*"\n')
        os.chmod(program, 0o755)

    def environment(self):
        return {"PATH": self.tools + ":/usr/bin:/bin", "HOME": self.directory, "TERM": "dumb"}

    def run_script(self, *command):
        return subprocess.run(command, cwd=self.project, env=self.environment(), stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=120)

    def run_bash(self, commands):
        return self.run_script("bash", "-c", "set -u; . packaging/prepare.sh\n" + commands)

    def called(self):
        if not os.path.exists(self.calls):
            return []
        with open(self.calls, encoding="utf-8") as file:
            return file.read().splitlines()

    def on_terminal(self, command, answer=None):
        """What a terminal shows of the command; `answer` is typed as soon as a line ends with a colon and a blank."""
        child, terminal = pty.fork()
        if child == 0:
            os.chdir(self.project)
            os.execvpe(command[0], list(command), self.environment())
        shown = b""
        try:
            while True:
                readable, _, _ = select.select([terminal], [], [], 120)
                self.assertTrue(readable, f"nothing more came after {shown!r}")
                try:
                    got = os.read(terminal, 65536)
                except OSError:  # the other side is closed
                    break
                if not got:
                    break
                shown += got
                if answer and shown.endswith(b": "):
                    os.write(terminal, answer)
                    answer = None
        finally:
            os.close(terminal)
            _, status = os.waitpid(child, 0)
        return os.waitstatus_to_exitcode(status), shown.decode()


class OldTools(ScriptCase):
    def test_toolTooOld_isOneLineThatNamesItAndNothingIsBuiltOrInstalled(self):
        for script in ("./run", "./test", "./gallery"):
            for name, body, version, minimum in (
                    ("cmake", 'echo "cmake version 3.18.4"', "3.18.4", "3.25"),
                    ("node", "echo v16.20.2", "16.20.2", "18"),
                    ("g++", "echo 11.4.0", "11.4.0", "12")):
                with self.subTest(script=script, tool=name):
                    path = self.tool(name, body)
                    done = self.run_script(script)
                    self.tool(name, TOOLS[name])
                    self.assertNotEqual(done.returncode, 0)
                    self.assertEqual(done.stdout, "")
                    self.assertEqual(done.stderr, f"{path} is version {version}; {name} {minimum} or newer is needed.\n")
                    self.assertFalse([call for call in self.called() if "preset" in call or call.startswith("apt-get")])

    def test_severalToolsTooOld_areALineEach(self):
        self.tool("cmake", 'echo "cmake version 3.18.4"')
        self.tool("node", "echo v16.20.2")
        self.assertEqual(len(self.run_script("./run").stderr.splitlines()), 2)

    def test_versionsOfOneMajorNumber_compareByNumber(self):
        done = self.run_bash("for v in 3.25 3.25.1 3.100 4.0; do at_least $v 3.25 || echo $v; done; "
                             "for v in 3.9 3.24.9 2; do at_least $v 3.25 && echo $v; done; true")
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))

    def test_toolWithoutVersion_isNamed(self):
        path = self.tool("node", "exit 1")
        self.assertEqual(self.run_script("./run").stderr, f"{path} does not tell its version; node 18 or newer is needed.\n")


class Gallery(ScriptCase):
    def test_built_isDrawnByWhatWasBuilt(self):
        self.built_program()
        self.tool("node", 'case "$1" in --version) echo v18.20.4 ;; *) echo "$QUIETRIX_PROGRAM" "$QUIETRIX_WEB_DIST" "$QUIETRIX_WEB_MODULES" >>"$HOME/given" ;; esac')
        done = self.run_script("./gallery")
        self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)
        self.assertIn("docs/gallery", done.stderr)
        self.assertIn("node tests/web/gallery.mjs docs/gallery", self.called())
        build = os.path.join(self.project, "build", "release")
        with open(os.path.join(self.directory, "given"), encoding="utf-8") as file:
            self.assertEqual(file.read().split(), [f"{build}/{part}" for part in ("settings/quietrix-settings", "share/page", "web/node_modules")])

    def test_drawingFails_saysWhyAndFails(self):
        self.built_program()
        self.tool("node", 'case "$1" in --version) echo v18.20.4 ;; *) echo "no such browser"; exit 1 ;; esac')
        done = self.run_script("./gallery")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("no such browser", done.stderr)

    def test_browserMissing_isInstalledWithoutTheTestsTools(self):
        self.tool("dpkg-query", 'case "$*" in *chromium*|*clang*) exit 1 ;; *) printf "install ok installed" ;; esac')
        self.tool("id", "echo 1000")
        self.tool("sudo", '[ "$1" = -n ] && exit 0; exec "$@"')
        self.assertEqual(self.run_bash("prepare_gallery").returncode, 0)
        installs = [call for call in self.called() if call.startswith("apt-get")]
        self.assertTrue(len(installs) == 1 and installs[0].endswith("install -y --no-install-recommends chromium-headless-shell"), installs)


class DebiansCMake(ScriptCase):
    def test_newerCMakeFirst_debiansOwnIsTried(self):
        self.tool("cmake", 'echo "cmake version 4.1.0"')
        done = self.run_bash("prefer_debians_cmake; echo $cmake $ctest; version_of $cmake")
        if not subprocess.run(["/usr/bin/cmake", "--version"], capture_output=True, text=True,
                              check=True).stdout.startswith("cmake version 3.25"):
            self.assertIn("There is no CMake 3.25 here", done.stderr)
            return
        self.assertRegex(done.stdout, r"^/usr/bin/cmake /usr/bin/ctest\n3\.25")


class Installing(ScriptCase):
    def missing(self, name):
        self.tool("dpkg-query", f'case "$*" in *{name}*) exit 1 ;; *) printf "install ok installed" ;; esac')
        # Root or not, whoever runs this test: the made-up machine's user is a plain one.
        self.tool("id", "echo 1000")

    def test_nothingMissing_asksForNothing(self):
        self.assertEqual(self.run_bash("prepare_tests").returncode, 0)
        self.assertFalse([call for call in self.called() if call.startswith(("sudo", "apt-get"))])

    def test_packageMissing_saysWhichAndInstallsIt(self):
        self.missing("libical-dev")
        self.tool("sudo", '[ "$1" = -n ] && exit 0; exec "$@"')
        done = self.run_bash("prepare_build")
        self.assertEqual(done.returncode, 0)
        self.assertIn("Installing Debian packages: libical-dev\n", done.stderr)
        installs = [call for call in self.called() if call.startswith("apt-get")]
        self.assertEqual(len(installs), 1)
        self.assertTrue(installs[0].endswith("install -y --no-install-recommends libical-dev"), installs)

    def test_oldPackageLists_areRefreshedOnce(self):
        self.missing("libical-dev")
        self.tool("sudo", '[ "$1" = -n ] && exit 0; exec "$@"')
        self.tool("apt-get", f'case "$*" in *update) touch "{self.directory}/new" ;; *) [ -e "{self.directory}/new" ] ;; esac')
        self.assertEqual(self.run_bash("prepare_build").returncode, 0)
        actions = [re.search(r"install|update", call)[0] for call in self.called() if call.startswith("apt-get")]
        self.assertEqual(actions, ["install", "update", "install"])

    def test_secondBrowserMissing_isInstalledFromNewLists(self):
        self.missing("firefox-esr")
        self.tool("sudo", '[ "$1" = -n ] && exit 0; exec "$@"')
        self.assertEqual(self.run_bash("prepare_tests").returncode, 0)
        actions = [re.search(r"(install.*|update)$", call)[0] for call in self.called() if call.startswith("apt-get")]
        self.assertEqual(actions, ["update", "install -y --no-install-recommends firefox-esr"])

    def test_secondBrowserCannotBeInstalled_testsGoOnWithoutIt(self):
        self.missing("firefox-esr")
        self.tool("sudo", '[ "$1" = -n ] && exit 0; exec "$@"')
        self.tool("apt-get", "echo 'E: Unable to locate package firefox-esr'; exit 100")
        done = self.run_bash("prepare_tests")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("Installing Debian packages: firefox-esr\n", done.stderr)
        self.assertIn("The page's tests in Firefox are skipped.\n", done.stderr)

    def test_installFails_saysWhyAndNamesTheWholeOutput(self):
        self.missing("libical-dev")
        self.tool("sudo", '[ "$1" = -n ] && exit 0; exec "$@"')
        self.tool("apt-get", "echo 'E: Unable to locate package libical-dev'; exit 100")
        done = self.run_script("./run")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("E: Unable to locate package libical-dev", done.stderr)
        log = os.path.join(self.project, "build/logs/install.log")
        self.assertTrue(done.stderr.endswith(f"The whole output is in {os.path.realpath(log)}.\n"), done.stderr)
        with open(log, encoding="utf-8") as file:
            self.assertIn("Unable to locate", file.read())
        self.assertFalse([call for call in self.called() if "preset" in call])

    def test_noRightsAndNoSudo_saysWhatToInstall(self):
        self.missing("libical-dev")
        os.remove(os.path.join(self.tools, "sudo"))
        hidden = "command() { [ \"$2\" = sudo ] && return 1; builtin command \"$@\"; }; "
        done = self.run_bash(hidden + "prepare_build")
        self.assertEqual(done.returncode, 1)
        self.assertIn("there is no sudo. As root: apt-get install libical-dev\n", done.stderr)

    def test_sudoAsks_theQuestionIsSeenAndAnsweredBeforeAnythingMoves(self):
        self.missing("libical-dev")
        self.built_program()
        self.tool("sudo", f"""
case "$1" in
    -n) exit 1 ;;
    -v)
        printf 'password for you: ' >/dev/tty
        read -r word </dev/tty
        [ "$word" = sesame ] && touch "{self.directory}/known"
        ;;
    *) [ -e "{self.directory}/known" ] && exec "$@" ;;
esac""")
        status, shown = self.on_terminal(["./run", "drive"], b"sesame\n")
        self.assertEqual(status, 0, shown)
        self.assertIn("started with: drive", shown)
        self.assertLess(shown.index("Installing Debian packages: libical-dev"), shown.index("password for you: "))
        self.assertNotIn("\x1b[K", shown[:shown.index("password for you: ")])

    def test_sudoRefuses_saysSoAndEnds(self):
        self.missing("libical-dev")
        done = self.run_script("./run")
        self.assertEqual(done.returncode, 1)
        self.assertIn("sudo refuses. As root: apt-get install libical-dev\n", done.stderr)


class Progress(ScriptCase):
    STEPS = r"printf '[1/3] Building CXX object profile/CMakeFiles/model.dir/One.cpp.o\n[2/3] Linking two\n[3/3] three\n'"

    def test_build_onATerminal_movesInOneLineThatIsGoneAfterwards(self):
        self.built_program()
        self.tool("cmake", f'case "$1" in --version) echo "cmake version 3.25.1" ;; --build) {self.STEPS} ;; esac')
        status, shown = self.on_terminal(["./run", "drive"])
        self.assertEqual(status, 0, shown)
        lines = shown.split("\r\n")
        self.assertEqual(len(lines), 2, shown)
        frames = [frame.removeprefix("\x1b[K") for frame in lines[0].split("\r")]
        self.assertIn("Building, 1 of 3: Building CXX object profile/One.cpp.o", frames)
        self.assertIn("Building, 3 of 3: three", frames)
        self.assertEqual(frames[-1], "started with: drive")

    def test_build_withoutATerminal_keepsStandardOutputForTheProgram(self):
        self.built_program()
        self.tool("cmake", f'case "$1" in --version) echo "cmake version 3.25.1" ;; --build) {self.STEPS} ;; esac')
        done = self.run_script("./run", "drive", "--root", "two words")
        self.assertEqual((done.returncode, done.stdout), (0, "started with: drive --root two words\n"))
        self.assertEqual(done.stderr.splitlines()[0], "Building, 1 of 3: Building CXX object profile/One.cpp.o")

    def test_watch_servesAndBuildsFromTheProjectsSources(self):
        self.built_program()
        done = self.run_script("./run", "--watch", "--root", "two words")
        self.assertEqual((done.returncode, done.stdout),
                         (0, f"started with: serve --watch --sources {self.project} --build cmake --build "
                             f"{self.project}/build/release --root two words\n"))

    def test_nothingToBuild_withoutATerminal_saysNothing(self):
        self.built_program()
        self.tool("cmake", 'case "$1" in --version) echo "cmake version 3.25.1" ;; --build) echo "[0/2] Re-checking globbed directories..."; echo "ninja: no work to do." ;; esac')
        self.assertEqual(self.run_script("./run", "drive").stderr, "")

    def test_buildFails_showsTheFirstFailureAndStartsNothing(self):
        self.built_program()
        self.tool("cmake", 'case "$1" in --version) echo "cmake version 3.25.1" ;; '
                           '--build) printf "[1/3] one\\nFAILED: two.o\\ntwo.cpp:7: error: no such thing\\n[3/3] three\\n"; exit 1 ;; esac')
        done = self.run_script("./run", "drive")
        self.assertNotEqual(done.returncode, 0)
        self.assertEqual(done.stdout, "")
        self.assertIn("FAILED: two.o\ntwo.cpp:7: error: no such thing\n", done.stderr)
        self.assertIn("build/logs/build.log.\n", done.stderr)
        self.assertNotIn("[1/3]", done.stderr)

    def test_aptsPercents_areShown(self):
        done = self.run_bash(r"""printf 'dlstatus:3:12.5000:Retrieving file 3 of 9\npmstatus:libical-dev:40.0:Unpacking libical-dev (amd64)\n' |
while IFS= read -r line; do step_text "$line" && echo "$step"; done""")
        self.assertEqual(done.stdout, "downloading, 12 %: Retrieving file 3 of 9\n40 %: Unpacking libical-dev (amd64)\n")


if __name__ == "__main__":
    source = sys.argv.pop(1)
    unittest.main()
