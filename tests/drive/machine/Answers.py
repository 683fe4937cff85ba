# SPDX-License-Identifier: MIT
"""What an answer of the program must say, given the model of its phone. Each check gives None or what is wrong."""
import re

from Phone import ANNOUNCES
from Pickers import Hours, Tone
from Rows import GROUP
from Screens import Editor, RootList

TOLD = ("insert", "remove", "push", "pop", "present", "dismiss", "removeFile")
LOG_LINES = [re.compile(pattern) for pattern in (
    r'^The profiles file ".*" (cannot be used and is left as it is|holds \d+ entries that are no profiles)',
    r'^The profile ".*" holds .* under ".*", which takes .*',
    r"^Mail: The (mail|draft) is in ",
    r'^MFMailComposeViewController: (The attachment "velmora.log" has no data|The mail could not be sent)',
    r"^QuietrixProflePreferencesController: there is no row -?\d+ to remove",
    r"^The notifications? (folder|directory|root)",
    r"^SLComposeViewController: Nothing opened",
    r"^UIAlertController: ",
)]


def told(events):
    """The story of rows, screens and store, as the model tells it."""
    story = []
    for event in events:
        kind = event["event"]
        if kind in ("insert", "remove"):
            story.append((kind, event["index"], event["name"]))
        elif kind == "store" and event["call"] != "reload":
            story.append((kind, event["call"], event["identifier"], event["ok"]))
        elif kind in TOLD:
            story.append((kind, event["class"]) if "class" in event else (kind,))
    return story


def heard(events):
    return [event["name"] for event in events if event["event"] == "darwinReceived"]


def check_events(phone, events):
    story = told(events)
    if story != phone.story:
        return f"the events tell {story} and not {phone.story}"
    posted = [event["name"] for event in events if event["event"] == "darwin"]
    if posted != phone.posted:
        return f"posted were {posted} and not {phone.posted}"
    for place, event in enumerate(events):
        if event["event"] == "store" and event["call"] in ANNOUNCES and event["ok"]:
            name = ANNOUNCES[event["call"]]
            order = [later["event"] for later in events[place:]
                     if later.get("name") == name and later["event"] in ("local", "darwin")][:2]
            if order != ["local", "darwin"]:
                return f"after the store's {event['call']} came {order} of {name}"
        elif event["event"] in ("write", "removeFile") and not event["ok"]:
            return f"{event['path']} was not written"
        elif event["event"] == "log" and not is_known_line(event["text"]):
            return f"the log says: {event['text']}"
    return None


def is_known_line(text):
    return any(pattern.match(text) for pattern in LOG_LINES)


def check_state(phone, state):
    screen, shown = phone.screen, state["screen"]
    facts = {"class": screen.name, "stack": [each.name for each in phone.stacks[-1]],
             "modals": len(phone.stacks) - 1, "editing": isinstance(screen, RootList) and screen.is_editing,
             "count": len(screen.rows), "links": [{"title": "Event Status", "class": "QuietrixEventStatusController"}
                                                  for _ in screen.links()]}
    if isinstance(screen, Editor):
        problem = take_identifier(screen, shown)
        if problem:
            return problem
        facts["title"] = screen.shown["title"] if screen.shown else None
    for key, value in facts.items():
        if shown[key] != value:
            return f"the screen's {key} is {shown[key]} and not {value}"
    if screen.row is not None and (shown["specifier"] or {}).get("userInfo") != screen.row.shown_info():
        return f"the screen was opened by {shown['specifier']} and not for {screen.row.shown_info()}"
    return (check_presented(phone, state["presented"]) or check_rows(phone, shown["rows"]) or
            check_special(screen, shown))


def take_identifier(screen, shown):
    """A new profile's identifier is the program's to make up."""
    record = screen.shown
    if record is None or record.identifier is not None:
        return None
    info = (shown["specifier"] or {}).get("userInfo") or {}
    if info.get("class") != "QXProfile" or not info.get("identifier"):
        return f"a new profile without an identifier: {shown['specifier']}"
    record.values["identifier"] = info["identifier"]
    return None


def check_presented(phone, shown):
    wanted = phone.presented[-1] if phone.presented else None
    if wanted is None or shown is None:
        return None if wanted is shown else f"presented is {shown} and not {wanted and wanted.kind}"
    if shown["kind"] != wanted.kind:
        return f"presented is {shown} and not a {wanted.kind}"
    if wanted.kind in ("mail", "social"):
        return None
    actions = [action["title"] for action in shown["actions"]]
    if actions != list(wanted.actions) or shown["title"] != wanted.title:
        return f"presented is {shown} and not {wanted.title} with {wanted.actions}"
    if isinstance(wanted.message, tuple):
        is_right = bool(shown["message"]) and wanted.message[0] in shown["message"]
    else:
        is_right = wanted.message is None or shown["message"] == wanted.message
    return None if is_right else f"the message is {shown['message']!r} and not {wanted.message!r}"


def check_rows(phone, shown):
    rows = phone.rows_in_window()
    if [row["index"] for row in shown] != [index for index, _ in rows]:
        return f"the rows {[row['index'] for row in shown]} came and not {[index for index, _ in rows]}"
    if len({row["key"] for row in shown}) != len(shown):
        return "two rows have one key"
    for found, (index, row) in zip(shown, rows):
        problem = check_row(phone.screen, row, found)
        if problem:
            return f"row {index} of {phone.screen.name}: {problem}"
    return None


def check_row(screen, row, shown):
    facts = {"name": row.name, "identifier": row.identifier, "kind": row.kind, "detail": row.detail,
             "userInfo": row.shown_info()}
    if row.kind != GROUP:
        facts["value"] = screen.value(row)
        facts["editingStyle"] = 1 if screen.can_delete(row) else 0
        facts["tappable"] = screen.is_tappable(row)
        for key, value in (row.cell or {}).items():
            if key in ("accessory", "detailText"):
                facts[key] = value
    if row.identifier == "QuietrixPreferences.bundle":
        facts.pop("userInfo")
    for key, value in facts.items():
        if shown[key] != value:
            return f"{key} is {shown[key]!r} and not {value!r}"
    times = (row.cell or {}).get("times")
    if times and (shown["labels"][1]["text"], shown["labels"][3]["text"]) != times:
        return f"the hours are {[label['text'] for label in shown['labels']]} and not {times}"
    return None


def check_special(screen, shown):
    if isinstance(screen, Hours):
        pane = shown["pane"] or {}
        found = (pane.get("rows"), pane.get("tag"), pane.get("time"))
        wanted = ([screen.texts[0], screen.texts[1]], screen.tag, screen.time)
        return None if found == wanted else f"the pane shows {found} and not {wanted}"
    if isinstance(screen, Tone):
        tones = shown["tones"] or {}
        found = (tones.get("selected"), tones.get("default"))
        wanted = (screen.chosen, screen.standard)
        return None if found == wanted else f"the tone picker shows {found} and not {wanted}"
    return None
