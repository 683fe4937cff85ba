#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Random commands with outside changes against a model of the phone.

Usage: state_machine.py PROGRAM BUNDLE [--commands N] [--seed S]... [--replay FILE] [--keep] [--shrink SECONDS]
                        [--everything]

After each command the answer, the rows, the events and both files are compared with what the model says. A phone
lives for a few hundred commands, then a fresh one takes its place. What fails is shortened and written as a drive
script, which --replay runs again. The exit status is 1 then, and 0 when nothing failed.
"""
import argparse
import os
import random
import signal
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from Generator import Generator  # noqa: E402
from Machine import Failure, Machine  # noqa: E402
from Scripts import entries_of, script_of  # noqa: E402
from Shrinker import shrink  # noqa: E402
from Sources import Sources  # noqa: E402

PHONE_LIFE = 400
# Beyond so many times the wanted commands what was never reached cannot be.
MOST_TIMES = 3
# A fault between two processes may need several tries to show again.
TRIES = 3


# What a run of some thousand commands must have come by to be worth anything: commands done on a screen, what was
# presented, and outside changes.
EVERYTHING = {(screen, command) for screen, commands in {
    "SettingsRootController": ("tap",), "QuietrixPreferencesController": ("tap", "set", "delete", "edit", "bar", "back"),
    "QuietrixProflePreferencesController": ("tap", "set", "bar", "link", "back", "choose", "dark", "post", "advance"),
    "QXDateRangeController": ("pickTime", "pickTimeRow", "back", "choose"), "QuietrixCalendarsController": ("tap", "set"),
    "QuietrixEventStatusController": ("tap",), "QuietrixWifiController": ("set",),
    "QuietrixAlertToneController": ("pickTone", "bar"), "QuietrixMiscController": ("tap", "choose", "compose", "advance"),
}.items() for command in commands}
EVERYTHING |= {("presented", kind) for kind in ("alert", "sheet", "confirmation", "activity", "mail", "social")}
EVERYTHING |= {("outside", change) for change in (
    "command", "start", "end", "restart", "both", "kill", "killShell", "removeProfiles", "file", "break", "mend",
    "removeNotifications")}
EVERYTHING |= {("refused",)}


class Runs:
    """Runs of entries, each on a fresh phone."""

    def __init__(self, arguments, sources):
        self._arguments = arguments
        self._sources = sources
        self.commands = 0
        self.reached = set()

    def _machine(self):
        return Machine(self._arguments.program, self._arguments.bundle, self._sources)

    def random(self, seed, commands):
        """Random entries; those that were run, and the failure that ended them or None."""
        generator = Generator(seed)
        entries = []
        machine = None
        try:
            machine = self._machine()
            while machine.commands < commands:
                entries.append(generator.next(machine))
                machine.run(entries[-1])
            return entries, None
        except Failure as failure:
            return entries, failure
        finally:
            self._close(machine)

    def replay(self, entries):
        """The failure of these entries, or None."""
        machine = None
        try:
            machine = self._machine()
            for entry in entries:
                machine.run(entry)
            return None
        except Failure as failure:
            return failure
        finally:
            self._close(machine)

    def _close(self, machine):
        if machine:
            self.commands += machine.commands
            self.reached |= machine.reached
            if not self._arguments.keep:
                machine.close()
            else:
                print(f"the phone is left in {machine.root}", file=sys.stderr)
                machine.end_all()

    def shortest(self, entries):
        """Whatever fails will do: the shortest list is the one to look at first."""
        came = [self.replay(entries) for _ in range(TRIES)]
        tries = 1 if all(came) else TRIES

        def fails(part):
            return any(self.replay(part) for _ in range(tries))
        return shrink(entries, fails, self._arguments.shrink) if any(came) else entries


def report(runs, entries, failure, seed, arguments):
    print(f"FAILED with --seed {seed}: {failure}", file=sys.stderr)
    print(f"shortening {len(entries)} entries, for at most about {arguments.shrink:g} s", file=sys.stderr)
    entries = runs.shortest(entries)
    last = runs.replay(entries) or failure
    script = script_of(entries, (f"--seed {seed}", str(last).replace("\n", " ")))
    with tempfile.NamedTemporaryFile("w", prefix="quietrix-machine-", suffix=".drive", delete=False,
                                     encoding="utf-8") as file:
        file.write(script)
    print(script, file=sys.stderr)
    print(f"{len(entries)} entries, in {file.name}: run them with --replay {file.name}", file=sys.stderr)


def life_of(seed, number):
    """The seed of one life after that of the first."""
    return seed if number == 0 else f"{seed.split('.')[0]}.{number}"


def run(arguments, sources):
    runs = Runs(arguments, sources)
    if arguments.replay:
        with open(arguments.replay, encoding="utf-8") as file:
            failure = runs.replay(entries_of(file.read()))
        print(failure or "nothing failed")
        return 1 if failure else 0
    seeds = arguments.seed or [str(random.SystemRandom().randrange(1_000_000))]
    began = time.monotonic()

    def live(own, commands):
        entries, failure = runs.random(own, commands)
        if failure:
            report(runs, entries, failure, own, arguments)
        return not failure

    for seed in seeds:
        wanted = arguments.commands // len(seeds)
        done = runs.commands
        lives = 0
        while runs.commands - done < wanted:
            if not live(life_of(seed, lives), min(PHONE_LIFE, wanted - (runs.commands - done))):
                return 1
            lives += 1
    # A walk at random may miss some place, and reaches it when it goes on.
    while arguments.everything and EVERYTHING - runs.reached and runs.commands < MOST_TIMES * arguments.commands:
        if not live(life_of(seeds[-1], lives), PHONE_LIFE):
            return 1
        lives += 1
    missed = sorted(EVERYTHING - runs.reached)
    if arguments.everything and missed:
        print(f"never reached: {missed}", file=sys.stderr)
        return 1
    print(f"{runs.commands} commands of the seeds {', '.join(seeds)} in {time.monotonic() - began:.1f} s: nothing failed")
    return 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("program")
    parser.add_argument("bundle")
    parser.add_argument("--commands", type=int, default=5000)
    parser.add_argument("--seed", action="append", help="may be given several times; a random one by default")
    parser.add_argument("--replay", help="runs the entries of a drive script instead")
    parser.add_argument("--keep", action="store_true", help="leaves the files of the phones where they are")
    parser.add_argument("--everything", action="store_true", help="fails too when some screen or change was never reached")
    parser.add_argument("--shrink", type=float, default=90, metavar="SECONDS", help="how long a failure is shortened")
    arguments = parser.parse_args()
    # Ended from outside it cleans up too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    sources = Sources()
    try:
        return run(arguments, sources)
    finally:
        if not arguments.keep:
            sources.remove()


if __name__ == "__main__":
    sys.exit(main())
