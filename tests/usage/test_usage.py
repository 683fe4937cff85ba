# SPDX-License-Identifier: MIT
"""Manuals and completions as they are installed: test_usage.py PREFIX [unittest arguments].

Bash is there wherever this runs; zsh, fish and the manual's tools are tried where they are.
"""
import gzip
import os
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PREFIX = Path()
PROGRAMS = ("quietrix-settings", "quietrix")
PROFILES = "var/mobile/Library/Preferences/com.velmora.quietrix.profiles.plist"
TITLES = ["Work", "Dinner & film", "It's late", "$(touch evil)", "Übung"]


def help_of(program):
    """What it can be told: (options, commands), as its help lists them."""
    def asked(*words):
        return subprocess.run([PREFIX / "bin" / program, *words, "--help"], check=True, capture_output=True, text=True).stdout
    text = asked()
    listed = text.split("Subcommands:\n")[1]
    commands = ["".join(name) for name in re.findall(r"^(?:([a-z][a-z-]*)$|  ([a-z][a-z-]*) )", listed, re.MULTILINE)]
    options = {name for each in (text, *map(asked, commands)) for name in re.findall(r"^ +(?:-h,)?(--[a-z-]+)", each, re.MULTILINE)}
    return options | {"--help"}, commands


class UsageTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="quietrix-usage-")
        self.addCleanup(directory.cleanup)
        self.directory = directory.name
        self.root = Path(directory.name, "quietrix/phone")
        file = self.root / PROFILES
        file.parent.mkdir(parents=True)
        profiles = [{"identifier": f"profile-{number}", "title": title} for number, title in enumerate(TITLES)]
        profiles.append({"identifier": "profile-n", "title": "two\nlines"})
        file.write_bytes(plistlib.dumps({"format": 1, "profiles": profiles}, fmt=plistlib.FMT_BINARY))

    def environment(self):
        return {**os.environ, "PATH": f"{PREFIX}/bin:{os.environ['PATH']}", "HOME": self.directory,
                "LC_ALL": "C.UTF-8", "XDG_DATA_HOME": self.directory, "XDG_CONFIG_HOME": self.directory}

    def run_in(self, shell, script, *arguments):
        done = subprocess.run([*shell, script, *arguments], cwd=self.directory, env=self.environment(), text=True,
                              capture_output=True, timeout=120, check=False, stdin=subprocess.DEVNULL)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertFalse(Path(self.directory, "evil").exists())
        return done.stdout.splitlines()

    def bash(self, program, *words):
        """What bash offers for the last of the words."""
        file = PREFIX / "share/bash-completion/completions" / program
        # Outside of a prompt there is nothing whose options could be set.
        script = ('compopt() { :; }; . "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMPREPLY=()\n'
                  f'"$(complete -p {program} | sed "s/.*-F //; s/ .*//")"\nprintf "%s\\n" "${{COMPREPLY[@]}}"')
        return [word for word in self.run_in(["bash", "-c"], script, str(file), program, *words) if word]

    def test_bash_offersWhatTheHelpLists(self):
        for program in PROGRAMS:
            options, commands = help_of(program)
            self.assertGreater(len(commands), 1)
            self.assertEqual(sorted(self.bash(program, "")), sorted(commands))
            offered = set(self.bash(program, "-"))
            for command in commands:
                offered |= set(self.bash(program, command, "-"))
            self.assertEqual(offered - {"-h"}, options)

    def test_bash_offersValues(self):
        Path(self.directory, "one.json").touch()
        Path(self.directory, "onward").mkdir()
        self.assertEqual(self.bash("quietrix-settings", "drive", "--root", "on"), ["onward"])
        self.assertEqual(sorted(self.bash("quietrix-settings", "replay", "on")), ["one.json", "onward"])
        self.assertIn("darkMode=", self.bash("quietrix-settings", "drive", "--device", ""))
        # What stands behind an option is no command.
        self.assertEqual(self.bash("quietrix-settings", "check", "--junit", "drive", "on"), ["onward"])

    def test_bash_offersTitlesAsWordsOfTheShell(self):
        expected = ["Work", "Dinner\\ \\&\\ film", "It\\'s\\ late", "\\$\\(touch\\ evil\\)", "Übung"]
        self.assertEqual(self.bash("quietrix", "--root", str(self.root), "show", ""), expected)
        self.assertEqual(self.bash("quietrix", "show", "D"), expected[1:2], "the root by itself is in the data directory")
        self.assertEqual(self.bash("quietrix", "--root", "nowhere", "show", ""), [])
        # As bash has split it, and as it was typed.
        for words in (("--root", "=", str(self.root)), ("--root", "~/quietrix/phone"), ("--root", f'"{self.root}"')):
            self.assertEqual(self.bash("quietrix", *words, "show", "W"), ["Work"], words)
        for harmful in ("$(touch evil)", "`touch evil`", "x;touch evil", "x|touch evil", "<(touch evil)", '"', "'x"):
            self.assertEqual(self.bash("quietrix", "--root", harmful, "show", "W"), ["Work"], harmful)

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not here")
    def test_zsh_understandsTheScripts(self):
        for program in PROGRAMS:
            file = PREFIX / "share/zsh/vendor-completions" / f"_{program}"
            self.run_in(["zsh", "-f", "-n"], str(file))
            self.assertEqual(file.read_text(encoding="utf-8").splitlines()[0], f"#compdef {program}")

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not here")
    def test_zsh_offersCommandsAndTitles(self):
        # A terminal of its own, in which somebody presses the key.
        script = ('zmodload zsh/zpty; zpty z zsh -f -i; zpty -w z "PS1=; unset zle_bracketed_paste; '
                  'fpath=($0 \\$fpath); autoload -U compinit; compinit -u -D; print READ\\"\\"Y"; '
                  'zpty -r z out "*READY*"; zpty -n -w z "$1"$\'\\t\'; zpty -r z out "*$2*"; print -r -- ok; zpty -d z')
        folder = str(PREFIX / "share/zsh/vendor-completions")
        for typed, shown in (("quietrix-settings re", "replay"), ("quietrix-settings serve --", "Shuts out"),
                             ("quietrix show ", "Dinner"), ('quietrix --root ~/"quietrix"/phone show ', "Dinner")):
            self.assertEqual(self.run_in(["timeout", "60", "zsh", "-f", "-c"], script, folder, typed, shown), ["ok"], typed)

    @unittest.skipUnless(shutil.which("fish"), "fish is not here")
    def test_fish_offersCommandsOptionsAndTitles(self):
        def offered(program, typed):
            file = PREFIX / "share/fish/vendor_completions.d" / f"{program}.fish"
            lines = self.run_in(["fish", "--no-config", "-c"], f"source {file}; complete -C {typed!r}")
            return [line.split("\t")[0] for line in lines]
        for program in PROGRAMS:
            self.assertEqual(sorted(offered(program, program + " ")), sorted(help_of(program)[1]))
        self.assertIn("--new-secret", offered("quietrix-settings", "quietrix-settings serve --n"))
        self.assertNotIn("--new-secret", offered("quietrix-settings", "quietrix-settings drive --n"))
        self.assertEqual(sorted(offered("quietrix", f"quietrix --root {self.root} show ")), sorted(TITLES))

    def manual(self, program):
        return gzip.decompress((PREFIX / "share/man/man1" / f"{program}.1.gz").read_bytes()).decode()

    def test_manual_hasEachCommandAndOptionOfTheHelp(self):
        for program in PROGRAMS:
            text = self.manual(program).replace("\\-", "-")
            options, commands = help_of(program)
            for name in options:
                self.assertIn(f"\\fB{name}\\fR", text)
            self.assertEqual(re.findall(r"^\.SS \\fB([a-z-]+)\\fR", text, re.MULTILINE), commands)

    @unittest.skipUnless(shutil.which("man") and shutil.which("groff"), "man is not here")
    def test_manual_isTypesetWithoutAWarning(self):
        for program in PROGRAMS:
            page = Path(self.directory, f"{program}.1")
            page.write_text(self.manual(program), encoding="utf-8")
            done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page], check=True,
                                  env={**self.environment(), "MANWIDTH": "80", "MANROFFSEQ": ""}, capture_output=True,
                                  text=True)
            self.assertEqual(done.stderr, "")


if __name__ == "__main__":
    PREFIX = Path(sys.argv.pop(1)).resolve()
    unittest.main()
