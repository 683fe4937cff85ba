# SPDX-License-Identifier: MIT
"""One process of the program as the model knows it: its screens, what is presented, and what each command does."""
import math

from Pickers import EventStatus, Hours, Tone
from Records import Record
from Rows import Row
from Screens import Editor, RootList, SettingsList
from Store import Store

APPLIED = "com.velmora.ProfileAppliedStateChangedNotification"
ADDED = "com.velmora.ProfileAddedNotification"
CHANGED = "com.velmora.ProfileChangedNotification"
DELETED = "com.velmora.ProfileDeletedNotification"
ANNOUNCES = {"add": ADDED, "update": CHANGED, "delete": DELETED}
RELAYED = (APPLIED, ADDED, CHANGED, DELETED)
EVERYTHING = (0, math.inf)
RESET_DELAY = 2.0
LONGEST_NAME = 1024
WHILE_PRESENTED = ("state", "choose", "compose", "post", "dark", "advance", "open", "wait")
RESULTS = ("sent", "saved", "cancelled", "failed")


class Presented:
    def __init__(self, kind, title, message, actions, handlers, class_name):
        self.kind = kind
        self.title = title
        self.message = message
        self.actions = actions
        self.handlers = handlers
        self.class_name = class_name


class Phone:
    def __init__(self, disk):
        self.disk = disk
        self.store = Store(disk)
        self.stacks = [[SettingsList(self)]]
        self.presented = []
        self.window = EVERYTHING
        self.is_dark = False
        self.now = 0.0
        self.resets = []
        self.rebuilds = []
        self.queue = []
        self.begin()
        self.open_bundle()

    def begin(self):
        """Forgets what the last command told: the story of rows, screens and store, and what was posted."""
        self.story = []
        self.posted = []
        self.has_killed_shell = False

    @property
    def screen(self):
        return self.stacks[-1][-1]

    def tell(self, *what):
        self.story.append(what)

    def post(self, name):
        self.posted.append(name)

    # Screens

    def open_bundle(self):
        root = RootList(self)
        self.stacks[0].append(root)
        self.tell("push", root.name)

    def push(self, screen):
        self.stacks[-1].append(screen)
        self.tell("push", screen.name)

    def add_profile(self):
        record = Record({}, is_new=True)
        record.values["identifier"] = None  # known as soon as the screen has told it
        self.stacks.append([Editor(self, Row("New Profile", 1, "title", info=record))])
        self.tell("present", "UINavigationController")

    def dismiss_modal(self):
        if len(self.stacks) > 1:
            self.stacks.pop()
            self.tell("dismiss", "UINavigationController")
            self.screen.appear()

    def present(self, kind, title=None, message=None, actions=(), handlers=(), class_name="UIAlertController"):
        self.presented.append(Presented(kind, title, message, actions, handlers, class_name))
        self.tell("present", class_name)

    def dismiss(self):
        self.tell("dismiss", self.presented.pop().class_name)

    def ask(self, what, screen):
        title = "Continue" if what == "reset" else "Send Now"
        self.present("confirmation", title=title, actions=("OK" if what == "reset" else title, "Cancel"),
                     handlers=((what, screen), None), class_name="PSConfirmationController")

    def compose(self):
        self.present("social", class_name="SLComposeViewController")

    def show_error(self, naming):
        self.present("alert", title="Error", message=(naming,), actions=("Close",), handlers=(None,))

    # The store

    def change(self, call, record, screen):
        wrong = getattr(self.store, call)(record)
        self.tell("store", call, record.identifier if record else None, wrong is None)
        if wrong is None:
            self.queue.append(("changed", call, record, screen))
        else:
            self.queue.append(("failed", wrong))

    def settle(self):
        """What the main queue does before the answer."""
        while self.queue:
            what, *rest = self.queue.pop(0)
            if what == "failed":
                self.show_error(*rest)
                continue
            call, record, screen = rest
            if call == "add":
                self.dismiss_modal()
            elif call == "update" and hasattr(screen, "saved"):
                screen.saved(record)
            elif call == "update" and isinstance(screen, Tone):
                self.notify(APPLIED)
            self.notify(ANNOUNCES[call])
            self.post(ANNOUNCES[call])

    # Notifications

    def all_screens(self):
        return [screen for stack in self.stacks for screen in stack]

    def notify(self, name):
        """A local notification."""
        for screen in self.all_screens():
            if name == APPLIED or (name in RELAYED and isinstance(screen, RootList)):
                screen.applied_state_changed()
        for root in self.rebuilds:
            root.build()
        self.rebuilds = []

    def announce_data_update(self):
        for screen in self.all_screens():
            screen.data_updated()

    def deliver(self, name):
        """A system-wide notification that has arrived."""
        if name == APPLIED:
            self.store.reload()
        if name in RELAYED:
            self.notify(APPLIED)
        self.settle()

    # Commands

    def perform(self, command):
        """Whether the command is done, after doing it."""
        self.begin()
        done = self._execute(command)
        self.settle()
        return done

    def _execute(self, command):
        name = command.get("do")
        if not isinstance(name, str) or not self._take_window(command):
            return False
        if name == "wait":
            return None  # decided by what comes
        method = getattr(self, "do_" + name, None)
        if not method or (self.presented and name not in WHILE_PRESENTED):
            return False
        return method(command)

    def _take_window(self, command):
        identifier = command.get("id")
        if "id" in command and (isinstance(identifier, bool) or not isinstance(identifier, (str, int, float))):
            return False
        window = []
        for key, standard in (("from", 0), ("count", math.inf)):
            value = command.get(key, standard)
            if key in command and not is_index(value):
                return False
            window.append(value)
        self.window = tuple(window)
        return True

    def do_state(self, _):
        return True

    def _row(self, command):
        index = command.get("row")
        screen = self.screen
        return screen.rows[index] if is_whole(index) and screen.section_row(index) else None

    def do_tap(self, command):
        row = self._row(command)
        if not row or not self.screen.is_tappable(row):
            return False
        self.screen.tap(row)
        return True

    def do_set(self, command):
        row = self._row(command)
        if not row or "value" not in command:
            return False
        self.screen.look(row)
        return self.screen.set(row, command["value"])

    def do_delete(self, command):
        row = self._row(command)
        if not row or not self.screen.can_delete(row):
            return False
        self.screen.delete(row)
        return True

    def do_edit(self, command):
        if not isinstance(command.get("on"), bool) or not isinstance(self.screen, RootList):
            return False
        self.screen.is_editing = command["on"]
        return True

    def do_bar(self, command):
        side, item = command.get("side"), command.get("item")
        return side in ("left", "right") and is_index(item) and self.screen.press(side, item)

    def do_back(self, _):
        if len(self.stacks[-1]) < 2:
            return False
        self.tell("pop", self.stacks[-1].pop().name)
        self.screen.appear()
        return True

    def do_choose(self, command):
        top = self.presented[-1] if self.presented else None
        title = command.get("action")
        if not top or not isinstance(title, str) or title not in top.actions:
            return False
        handler = top.handlers[top.actions.index(title)]
        self.dismiss()
        if handler:
            getattr(self, "handle_" + handler[0])(*handler[1:])
        return True

    def handle_confirm_deletion(self, screen, record):
        screen.confirm_deletion(record)

    def handle_stop_editing(self, screen):
        screen.is_editing = False

    def handle_share(self):
        self.compose()

    def handle_reset(self, _):
        self.present("activity", title="Resetting", message="Your device will be respring once it is done.")
        self.resets.append((self.now + RESET_DELAY, self.presented[-1]))

    def handle_report(self, _):
        self.present("mail", class_name="MFMailComposeViewController")

    def do_compose(self, command):
        top = self.presented[-1] if self.presented else None
        if not top or top.kind not in ("social", "mail") or command.get("result") not in RESULTS:
            return False
        self.dismiss()
        return True

    def do_post(self, command):
        name = command.get("name")
        if not isinstance(name, str) or not 1 <= len(name.encode()) <= LONGEST_NAME or "\0" in name:
            return False
        self.post(name)
        return True

    def do_dark(self, command):
        if not isinstance(command.get("on"), bool):
            return False
        if command["on"] != self.is_dark:
            self.is_dark = command["on"]
            for screen in self.all_screens():
                for row in screen.rows:
                    row.cell = None
        return True

    def do_advance(self, command):
        seconds = command.get("seconds")
        if isinstance(seconds, bool) or not isinstance(seconds, (int, float)) or seconds < 0:
            return False
        self.now += seconds
        for due, activity in sorted(self.resets, key=lambda reset: reset[0]):
            # Half a millionth: sums of fractions are not exact.
            if due <= self.now + 5e-7:
                self.resets.remove((due, activity))
                self.reset(activity)
        return True

    def reset(self, activity):
        is_there = self.disk.root != "no file"
        if is_there:
            self.disk.write("no file")
            self.tell("removeFile")
        if activity in self.presented:
            self.tell("dismiss", activity.class_name)
            self.presented.remove(activity)
        if is_there:
            self.has_killed_shell = True
        else:
            message = "Unable to reset the profiles. Please try again after some time."
            self.present("alert", title="Error", message=message, actions=("Close",), handlers=(None,))

    def do_link(self, command):
        item = command.get("item")
        links = self.screen.links()
        if not is_index(item) or item >= len(links):
            return False
        self.push(EventStatus(self, Row("Event Status", 1, info=dict(links[item].info))))
        return True

    def do_pickTimeRow(self, command):
        return isinstance(self.screen, Hours) and self.screen.pick_row(command.get("row"))

    def do_pickTime(self, command):
        return isinstance(self.screen, Hours) and self.screen.pick_time(command.get("time"))

    def do_pickTone(self, command):
        if not isinstance(self.screen, Tone) or "identifier" not in command:
            return False
        identifier = command["identifier"]
        return (identifier is None or isinstance(identifier, str)) and self.screen.pick_tone(identifier)

    def do_open(self, _):
        while self.presented:
            self.dismiss()
        self.dismiss_modal()
        while len(self.stacks[0]) > 1:
            self.tell("pop", self.stacks[0].pop().name)
        self.open_bundle()
        return True

    # Looking

    def rows_in_window(self):
        start, count = self.window
        return list(enumerate(self.screen.rows))[start:] if count == math.inf else \
            list(enumerate(self.screen.rows))[start:start + count]

    def look(self):
        """What the state makes while it is written: the cells of its rows, the rows of a pane."""
        for _, row in self.rows_in_window():
            if row.kind != 0:
                self.screen.look(row)
        if isinstance(self.screen, Hours):
            self.screen.look_at_pane()


def is_whole(value):
    return isinstance(value, int) and not isinstance(value, bool)


def is_index(value):
    return is_whole(value) and value >= 0
