# SPDX-License-Identifier: MIT
"""Runs entries on the real program and on the model, side by side; the first thing on which they differ is a
Failure."""
import os
import shutil
import signal
import tempfile

import Answers
import Outside
from Disk import BROKEN, NO_FILE, SWITCH, read_plist
from Phone import APPLIED
from Process import Process
from Scripts import command_of, line_of
from World import NAMES, World, both, distinct, successors

PROFILES = "var/mobile/Library/Preferences/com.velmora.quietrix.profiles.plist"
SETTINGS = "var/mobile/Library/Preferences/com.velmora.quietrix.plist"
MAIN, SECOND = 0, 1
# Only what hangs takes longer, on a slow machine too.
PATIENCE = 120
ERROR_LINES = ("Please open https://",)


class Failure(Exception):
    def __init__(self, rule, text):
        super().__init__(f"{rule}: {text}")
        self.rule = rule


class Machine:
    """One fresh phone."""

    def __init__(self, program, bundle, sources):
        self._program = program
        self._bundle = bundle
        self._sources = sources
        self._directory = tempfile.mkdtemp(prefix="root-", dir=sources.directory)
        self.root = os.path.join(self._directory, "phone")
        self._processes = {}
        self._last = {}
        self._stamps = None
        self._found = (NO_FILE, {SWITCH: False})
        self._broken = None
        self.worlds = [World({SWITCH: False})]
        self.commands = 0
        self.reached = set()
        self.start(MAIN)

    @property
    def world(self):
        return self.worlds[0]

    @property
    def found_root(self):
        return self._found[0]

    # Processes

    def start(self, who):
        environment = {key: value for key, value in os.environ.items() if key not in ("DISPLAY", "WAYLAND_DISPLAY")}
        self._processes[who] = Process(self._program, self._bundle, root=self.root, device=self._sources.device(),
                                       time_limit=PATIENCE, environment=environment)
        for world in self.worlds:
            world.start(who)
        self._last.pop(who, None)
        first = self._ask(who, {"do": "state"})
        names = [event["class"] for event in first["state"]["events"] if event["event"] == "push"]
        self._require(names == [self.world.phones[who].screen.name], "start", f"the program began with {names}")
        self._check_settled(who, first, is_start=True)

    def end(self, who):
        process = self._processes.pop(who)
        process.close()
        status = process.process.returncode
        self._forget(who)
        self._require(status == 0, "end", f"the program ended with status {status}")

    def close(self):
        """Ends what runs, whatever state it is in, and takes the root away."""
        self.end_all()
        shutil.rmtree(self._directory, ignore_errors=True)

    def end_all(self):
        """Ends what runs and leaves the root."""
        for process in self._processes.values():
            process.kill()
            process.close()
        self._processes = {}

    def is_running(self, who):
        return who in self._processes

    def _forget(self, who):
        for world in self.worlds:
            world.end(who)

    # Entries

    def run(self, entry):
        """One command or outside change; a Failure when the program does what it must not."""
        if "outside" not in entry:
            self.command(MAIN, entry)
        elif entry["outside"] != "command" or self.is_running(SECOND):
            self.reached.add(("outside", entry["outside"]))
            getattr(self, "outside_" + entry["outside"])(entry)
        self._check_error_lines()

    def command(self, who, entry):
        # A process that lags behind by two changes may have seen the one between them, or not: none ever does.
        self._bring_up_to_date(other for other in self._processes if other != who)
        before = self._stamps
        phone = self.world.phones[who]
        if phone.presented:
            self.reached.add(("presented", phone.presented[-1].kind))
        place = phone.screen.name
        answer = self._ask(who, entry)
        self.reached.add((place, command_of(entry).get("do")) if answer["ok"] else ("refused",))
        self.commands += 1
        if "outside" not in entry and "id" in command_of(entry) and answer["ok"]:
            self._require(answer.get("id") == entry["id"], "id", f"{answer.get('id')} came back for {entry['id']}")
        self._succeed(who, command_of(entry), answer)
        self._check_files()
        self._require(answer["ok"] or before == self._stamps, "refusal", "a refused command has written a file")

    def _bring_up_to_date(self, processes):
        for who in list(processes):
            if any(world.inboxes[who] | world.maybe[who] for world in self.worlds):
                self._look(who)

    def _look(self, who):
        look = {"do": "state", "from": 0, "count": 0}
        self._succeed(who, look, self._ask(who, look))
        self._check_files()
        for world in self.worlds:
            world.maybe[who].clear()

    def _succeed(self, who, command, answer):
        survivors, problem = successors(self.worlds, who, command, answer)
        self._require(survivors, "answer", f"{NAMES[who]}: {problem}")
        self.worlds = distinct(survivors)

    def _ask(self, who, entry):
        try:
            answer = self._processes[who].ask(line_of(entry))
        except (AssertionError, ValueError, KeyError, BrokenPipeError) as error:
            raise Failure("channel", str(error)) from error
        self._check_revision(who, answer["state"])
        return answer

    def _check_revision(self, who, state):
        last = self._last.get(who)
        self._last[who] = state
        if last is None:
            return
        step = state["revision"] - last["revision"]
        self._require(step >= 0 and (step > 0 or not state["events"]), "revision",
                      f"{last['revision']} was followed by {state['revision']} with the events {state['events']}")
        self._require(state["protocol"] == 1, "protocol", state["protocol"])

    # Outside changes

    def outside_command(self, entry):
        """A command to the second process."""
        self.command(SECOND, entry["command"])

    def outside_start(self, _):
        if not self.is_running(SECOND):
            self.start(SECOND)

    def outside_end(self, _):
        if self.is_running(SECOND):
            self.end(SECOND)

    def outside_restart(self, _):
        self.end(MAIN)
        self.start(MAIN)

    def outside_both(self, entry):
        """A command to each process at the same time. Their states are looked at when both have come to rest."""
        if not self.is_running(SECOND):
            return
        self._bring_up_to_date((MAIN, SECOND))
        commands = {who: {**entry[key], "from": 0, "count": 0} for who, key in ((MAIN, "first"), (SECOND, "second"))}
        for who, command in commands.items():
            self._processes[who].send(line_of(command).encode() + b"\n")
        answers = {who: self._processes[who].receive() for who in commands}
        for who, answer in answers.items():
            self._check_revision(who, answer["state"])
        self.commands += 2
        survivors = []
        problem = None
        for world in self.worlds:
            for found, wrong in both(world, commands, answers):
                problem = problem or wrong
                if found:
                    survivors.append(found)
        self._require(survivors, "both", problem)
        self.worlds = distinct(survivors)
        self._check_files()
        for who in commands:
            self.command(who, {"do": "state"})

    def outside_kill(self, entry):
        """The program is killed while it does a command, and started again."""
        self._settle()
        command = entry["during"]
        process = self._processes.pop(MAIN)
        process.send(line_of(command).encode() + b"\n")
        process.answers_within(entry["after"])
        process.kill()
        output = process.rest_of_output()
        process.close()
        is_answered = output.endswith(b"\n")
        done = [] if is_answered else [world.copy() for world in self.worlds]
        for world in self.worlds:
            world.perform(MAIN, command_of(command), [])
            for other in world.others(MAIN):
                # Killed before it had told them, or after.
                world.maybe[other] |= set(world.phones[MAIN].posted)
                world.inboxes[other] -= set(world.phones[MAIN].posted)
        self.worlds += done
        self._forget(MAIN)
        self._check_files()
        self.start(MAIN)

    def outside_killShell(self, _):
        """The system shell is killed; its screens are told when it is back."""
        for shell in self._processes[MAIN].shells():
            os.kill(shell, signal.SIGKILL)
            for world in self.worlds:
                world.shell_killed()
        self._settle()

    def outside_removeProfiles(self, entry):
        self._settle()
        if os.path.exists(self._path(PROFILES)):
            os.unlink(self._path(PROFILES))
            self._write_model(NO_FILE)
        self._post(entry.get("post"))

    def outside_file(self, entry):
        """Another program rewrites the profiles file."""
        self._settle()
        if isinstance(self.found_root, dict):
            changed = Outside.changed(self.found_root, entry)
            if changed is not None:
                Outside.replace_with_list(self._path(PROFILES), changed)
                self._write_model(changed)
        self._post(entry.get("post"))

    def outside_break(self, entry):
        """The profiles file becomes one that nobody can read, until it is mended."""
        self._settle()
        if isinstance(self.found_root, dict):
            self._broken = (entry["bytes"].encode(), self.found_root)
            Outside.replace(self._path(PROFILES), self._broken[0])
            self._write_model(BROKEN)
        self._post(entry.get("post"))

    def outside_mend(self, entry):
        self._settle()
        if self._broken and self.found_root == BROKEN:
            Outside.replace_with_list(self._path(PROFILES), self._broken[1])
            self._write_model(self._broken[1])
            self._broken = None
        self._post(entry.get("post"))

    def outside_removeNotifications(self, _):
        self._settle()
        shutil.rmtree(os.path.join(self.root, Outside.NOTIFICATIONS))
        for world in self.worlds:
            world.deaf = set(self._processes)
        for who in self._processes:
            self._hear_again(who)

    def _hear_again(self, who):
        for _ in range(PATIENCE):
            # The poster has its own with the answer already.
            self.command(MAIN, {"do": "post", "name": APPLIED})
            heard = who == MAIN and self._has_heard(MAIN)
            if not heard:
                self.command(who, {"do": "wait", "event": "darwinReceived", "name": APPLIED, "seconds": 1})
                heard = self._has_heard(who)
            if heard:
                for world in self.worlds:
                    world.deaf.discard(who)
                return
        raise Failure("deaf", f"process {who} never heard again of a notification")

    def _has_heard(self, who):
        return APPLIED in Answers.heard(self._last[who]["events"])

    def _settle(self):
        """Nothing is on its way any more: what happens next happens after it on every screen."""
        for who in list(self._processes):
            tries = 0
            while any(world.waits_for_shell[who] for world in self.worlds) and tries < 2:
                self.command(who, {"do": "wait", "event": "darwinReceived", "name": APPLIED, "seconds": 5})
                tries += 1
            for world in self.worlds:
                world.waits_for_shell[who] = 0
        self._bring_up_to_date(self._processes)

    def _post(self, name):
        if name is None:
            return
        Outside.post(self.root, name)
        for world in self.worlds:
            world.send(name, world.phones)

    def _write_model(self, root):
        for world in self.worlds:
            world.disk.write(root)
        self._check_files()

    # Checks

    def _path(self, name):
        return os.path.join(self.root, name)

    def _check_settled(self, who, answer, is_start):
        for world in self.worlds:
            world.phones[who].story = Answers.told(answer["state"]["events"]) if is_start else []
            problem = world.hear(who, Answers.heard(answer["state"]["events"]), [])
            problem = problem or world.answer(who, True, {"do": "state"}, answer)
            self._require(not problem, "start", problem)
        self._check_files()

    def _check_files(self):
        stamps = tuple(self._stamp(name) for name in (PROFILES, SETTINGS))
        if stamps != self._stamps or self._stamps is None:
            profiles = read_plist(self._path(PROFILES), meant_broken=self._broken is not None)
            self._found = (profiles, read_plist(self._path(SETTINGS)))
            self._stamps = stamps
            if profiles == BROKEN and self._broken:
                with open(self._path(PROFILES), "rb") as file:
                    self._require(file.read() == self._broken[0], "rescue", "a file that nobody can read has changed")
        problems = [world.disk.compare(*self._found) for world in self.worlds]
        self.worlds = [world for world, problem in zip(self.worlds, problems) if not problem]
        self._require(self.worlds, "files", problems[0])

    def _stamp(self, name):
        try:
            status = os.stat(self._path(name))
        except FileNotFoundError:
            return None
        return status.st_ino, status.st_size, status.st_mtime_ns

    def _check_error_lines(self):
        for process in self._processes.values():
            for line in process.new_error_lines():
                self._require(Answers.is_known_line(line) or line.startswith(ERROR_LINES), "error line", line)

    @staticmethod
    def _require(holds, rule, text):
        if not holds:
            raise Failure(rule, text)
