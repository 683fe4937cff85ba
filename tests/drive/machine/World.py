# SPDX-License-Identifier: MIT
"""What may be true of the phone: the files, the processes on them, and the notifications on their way. Where two
things happen at once there are several worlds, until what the program shows leaves one."""
import copy
import itertools

import Answers
from Disk import Disk
from Phone import APPLIED, RELAYED, Phone
from Records import Record
from Rows import Row
from Store import Store

# Of the processes, by their numbers.
NAMES = ("the first process", "the second process")


class World:
    def __init__(self, settings):
        self.disk = Disk(settings)
        self.phones = {}
        self.inboxes = {}
        # What may still come although nobody knows that it was sent.
        self.maybe = {}
        self.waits_for_shell = {}
        self.shell_was_killed = False
        self.deaf = set()

    def copy(self):
        # What was read from files is never changed, and most of what there is to copy.
        files = [self.disk.root, self.disk.settings] + [phone.store.root for phone in self.phones.values()]
        return copy.deepcopy(self, {id(file): file for file in files})

    def start(self, who):
        self.phones[who] = Phone(self.disk)
        self.inboxes[who] = set()
        self.maybe[who] = set()
        self.waits_for_shell[who] = 0

    def end(self, who):
        for table in (self.phones, self.inboxes, self.maybe, self.waits_for_shell):
            table.pop(who, None)
        self.deaf.discard(who)

    def others(self, who):
        return [other for other in self.phones if other != who]

    def send(self, name, targets):
        for target in targets:
            self.inboxes[target].add(name)

    def shell_killed(self):
        self.shell_was_killed = True
        for who in self.phones:
            self.waits_for_shell[who] += 1

    def perform(self, who, command, early):
        """Does the command after the `early` notifications; whether it is done."""
        phone = self.phones[who]
        for name in early:
            phone.deliver(name)
        done = phone.perform(command)
        self.send_posted(who)
        return done

    def send_posted(self, who):
        phone = self.phones[who]
        self.send_all(phone.posted, self.others(who))
        if phone.has_killed_shell:
            self.shell_killed()

    def send_all(self, names, targets):
        for name in names:
            self.send(name, targets)

    def on_their_way(self, who):
        """What may come before the process does anything more: a shell that was killed tells when it is back."""
        return self.inboxes[who] | self.maybe[who] | ({APPLIED} if self.shell_was_killed else set())

    def hear(self, who, names, late, optional=()):
        """Takes what was delivered after the command, and says what should not or should have come."""
        phone = self.phones[who]
        inbox = self.inboxes[who]
        own = set(phone.posted)
        allowed = inbox | own | self.maybe[who] | set(optional)
        for name in names:
            if name not in allowed and not (name == APPLIED and self.shell_was_killed):
                return f"the notification {name} came and nobody had sent it"
        if who not in self.deaf:
            lost = ((inbox | own) & set(RELAYED)) - set(names) - set(optional)
            if lost:
                return f"notifications did not come: {sorted(lost)}"
        for name in late:
            phone.deliver(name)
        if APPLIED in names and self.waits_for_shell[who]:
            self.waits_for_shell[who] -= 1
        inbox.difference_update(names)
        if not optional:
            inbox.clear()
        self.maybe[who].difference_update(names)
        return None

    def answer(self, who, done, command, answer):
        """What is wrong with the answer to a command that is `done`, or None."""
        phone = self.phones[who]
        events = answer["state"]["events"]
        if command.get("do") == "wait":
            wanted = command.get("name")
            came = [event for event in events if event["event"] == command.get("event")]
            done = done if done is not None else any(wanted in (None, event.get("name")) for event in came)
        if answer["ok"] is not done:
            return f"ok is {answer['ok']} ({answer.get('error')}) and not {done}"
        if not answer["ok"] and not answer.get("error"):
            return "a refusal without a reason"
        phone.look()
        return Answers.check_events(phone, events) or Answers.check_state(phone, answer["state"])


def split(names, waiting):
    """What was heard before a command, of what was waiting for it, and what after it: a name that came twice came the
    second time from the command."""
    late = list(names)
    early = list(dict.fromkeys(name for name in names if name in waiting))
    for name in early:
        late.remove(name)
    return early, late


def successors(worlds, who, command, answer):
    """The worlds in which the answer is right, and what was wrong in the others."""
    names = Answers.heard(answer["state"]["events"])
    survivors, problems = [], []
    for world in worlds:
        waiting = [name for name in names if name in world.on_their_way(who)]
        orders = [False, True] if waiting else [False]
        for place, comes_early in enumerate(orders):
            present = world.copy() if place + 1 < len(orders) else world
            early, late = split(names, waiting if comes_early else ())
            done = present.perform(who, command, early)
            problem = present.hear(who, names, late) or present.answer(who, done, command, answer)
            if problem:
                problems.append(problem)
            else:
                survivors.append(present)
    return survivors, " / or: ".join(dict.fromkeys(problems))


def both(world, commands, answers):
    """Two commands at the same time: the worlds of either order, each with what is wrong in it. What a process heard it
    may have heard before its command or after it, and the first may have come to rest before the second began."""
    names = {who: Answers.heard(answers[who]["state"]["events"]) for who in commands}
    for order in (tuple(commands), tuple(reversed(commands))):
        for *hear_early, rests_first in itertools.product((False, True), repeat=3):
            present = world.copy()
            done, early, late, problem = {}, {}, {}, None
            for who, is_early in zip(order, hear_early):
                waiting = present.on_their_way(who)
                early[who], late[who] = split(names[who], waiting if is_early else ())
                done[who] = present.perform(who, commands[who], early[who])
                if rests_first and who == order[0]:
                    problem = come_to_rest(present, who, names[who], late[who], optional=names[who])
            if any(is_early and not early[who] for who, is_early in zip(order, hear_early)):
                continue
            for who in order[1:] if rests_first else order:
                others = [name for other in order if other != who for name in present.phones[other].posted]
                problem = problem or come_to_rest(present, who, names[who], late[who], others)
                present.maybe[who] |= set(others)
            if rests_first:
                present.maybe[order[0]] |= set(present.phones[order[1]].posted)
            for who in order:
                wrong = Answers.check_events(present.phones[who], answers[who]["state"]["events"])
                if answers[who]["ok"] is not done[who]:
                    wrong = f"ok is {answers[who]['ok']} and not {done[who]}"
                problem = problem or (wrong and f"{NAMES[who]}: {wrong}")
            yield (None if problem else present), problem


def come_to_rest(world, who, names, late, optional):
    problem = world.hear(who, names, late, optional)
    world.phones[who].look()
    return problem


def distinct(worlds):
    """The worlds without those that equal an earlier one."""
    found = {}
    for world in worlds if len(worlds) > 1 else ():
        found.setdefault(_likeness(world, {}), world)
    return list(found.values()) or worlds


# What an answer told is over with it.
PASSING = ("story", "posted", "has_killed_shell", "queue", "rebuilds", "phone")


def _likeness(value, seen):
    """Equal for two graphs of objects that look alike, which records and rows are shared in them included."""
    if isinstance(value, (str, int, float, type(None))):
        return type(value), value
    if isinstance(value, set):
        return frozenset(value)
    if isinstance(value, dict):
        return tuple((key, _likeness(value[key], seen)) for key in sorted(value, key=repr))
    if isinstance(value, (list, tuple)):
        return tuple([_likeness(element, seen) for element in value])
    if id(value) in seen:
        return "seen", seen[id(value)]
    seen[id(value)] = len(seen)
    if isinstance(value, Record):
        return repr(value.values), repr(value.made_from), frozenset(value.set_keys), value.is_new, value.is_touched
    if isinstance(value, Row):
        return value.name, value.identifier, value.text, repr(value.cell), _likeness(value.info, seen)
    if isinstance(value, Store):
        root = "disk" if value.root is value.disk.root else repr(value.root)
        return root, value.seen == value.disk.version, value.is_bad, _likeness(value.records, seen)
    if isinstance(value, Disk):
        return repr(value.root), repr(value.settings)
    return type(value), tuple([(key, _likeness(element, seen)) for key, element in vars(value).items()
                               if key not in PASSING])
