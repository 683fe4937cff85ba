#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Holds docs/troubleshooting.md against the sources: each message has a row, and each row a message.

    test_troubleshooting.py SOURCE_DIRECTORY

Prints one line for each problem, with the row to paste where one is missing; the exit status is 1 when there is a problem.
"""

import re
import subprocess
import sys
from collections.abc import Iterable, Iterator
from pathlib import Path

import messages
from messages import Message

DOCUMENT = "docs/troubleshooting.md"

# Whose messages nobody meets who uses what is built here, and tools that only tests and benchmarks call.
FOREIGN = re.compile(r"(tests|fuzz|bench|\.ci)/|settings/web/src/words/(?!en\.ts)")
NAMED = ("bench/measure.py", "bench/table.py", "tests/web/gallery.mjs")
SOURCES = re.compile(r".*\.(cpp|h|ts|mjs|py|sh|cmake)|(.*/)?CMakeLists\.txt|(.*/)?[^./]+")

# What is no message, or none that tells of trouble: where it stands, what it is, why it needs no row.
PASSED_OVER = [
    (r"examples/ringer/Ringer(?!Settings)\w+\.cpp", r".*", "the example's rows"),
    (r"settings/channels/server/(PageFiles|Responder)\.cpp", r"text/.*|default-src .*|GET, HEAD", "headers of answers"),
    (r"platform/foundation/XMLPropertyListWriter\.cpp|settings/checking/Report\.cpp|settings/web/build\.mjs", r"…?>? ?<.*",
     "XML and HTML that is written"),
    (r"settings/program/CommandLine\.cpp", r"The phone's Settings application,.*|The (new )?recording|Device keys: …",
     "the program's help"),
    (r"settings/(channels|program|watching)/\w+\.cpp", r"Quietrix Settings is at .*", "the address"),
    (r"settings/program/RecordedRuns\.cpp", r"(The same|Renewed): .*|(…:)?…: … … was: .*", "what a replay has come to"),
    (r"settings/checking/Report\.cpp", r"…, … accepted, on … in …\.|Files of the bundle", "what a check has come to"),
    (r".*", r"(texttone:)?Calendar Alert|Sound Theme|New Profile|Quietrix (Go|Settings)", "names"),
    (r"(shell|support|profile|conditions)/.*", r"© .*|Silence your .*|Send Now|I'm Loving .*|Please donot remove .*|Are you sure .*"
     r"|If there is any problem .*|Your device will be .*|This profile will .*|Turn(ing)? on .*|Select (WiFi|Calendars) .*|When turned on .*",
     "texts of the product's screens"),
    (r"settings/web/src/words/en\.ts", r"Dark Mode|Clear Text|Try Again|AM or PM|Alert Tones|(Delete|Save) Draft|Back to Mail"
     r"|Keep this mail as a draft\?", "labels and questions"),
    (r"settings/web/src/workbench/\w+\.ts", r"What is (ticked|switched) .*|No faults any more\.|It is started again.*|Record writes .*|Fetching .*"
     r"|Nothing has happened yet\.|No notification yet\.|The phone as it was .*", "what a tab is for, and how things stand"),
    (r"usage/.*|.*/ProgramUsage\.cpp", r".*", "completions and manuals"),
    (r"quietrix/.*", r"[A-Z](?!.*--(help|root))[^…]*[^.…]|PROFILE is .*|The phone's profiles, .*"
     r"|0 \(All\), .*|Deleted … profiles?", "the help of commands, questions, what was done"),
    (r"quietrix/(DoctorCommand|SourceFindings)\.cpp", r".*", "each finding comes with what to do"),
    (r"settings/watching/BuildErrors\.cpp", r"\^.*", "patterns"),
    (r"settings/exploring/(ExploredStep|StepChoice)\.cpp", r"[^.]*", "texts that are typed"),
    (r"settings/exploring/ExplorationReport\.cpp", r".*", "what an exploration has come to"),
    (r"settings/web/src/workbench/\w+\.ts", r"These are the phone's .*|Reading … of …", "how things stand"),
    (r"test", r"…: nothing found", "what a fuzzer has come to"),
    (r"gallery", r"The gallery is in .*", "where the result is"),
    # The place that a sentence begins with; what follows has a row.
    (r".*", r"The (path|file|bundle) \"…\"|The tone …|Port … of 127\.0\.0\.1|Line (…|1): …|…?Shortly before byte …:"
     r"|The (watch for signals|inbox|timer)|(\w+|…)?quietrix-settings: …|The file \"…\": …|(QuietrixUIToneController|MFMailComposeViewController"
     r"|PSListController|build\.mjs): …", "the place that a sentence begins with"),
]

# Calls whose message comes from where the sources do not tell: where, the call, why that is no gap.
UNREAD = [
    ("device/DatagramTransport.cpp", "log(news)", "both texts stand above it"),
    ("device/DatagramTransport.cpp", "log(complaint_)", "the failure of opening the folder"),
    ("device/FaultLog.cpp", "log(line)", "the lines of calendars, networks and tones, where they are made"),
    ("device/SystemShell.cpp", "log(line)", "made of couldNotRun() and a reason"),
    ("device/networks/NetworkManagerNetworks.cpp", "log(fault)", "the failures of single connections"),
    ("profile/model/QXProfilesManager.cpp", "log(reason)", "the sentence of an error"),
    ("profile/model/QXProfilesManager.cpp", "log(line)", "the lines of QXProfile"),
    ("profile/model/QXProfilesManager.cpp", "failure(error)", "a handler of that name, which is given an error"),
    ("settings/channels/server/SecretFile.cpp", r'failure("\"" + path + "\" " + reason + ".")', "the reasons stand where it is called"),
    ("profile/model/QXProfilesManagerHistory.cpp", "log(reason)", "the sentence of an error"),
    ("quietrix/Commands.cpp", "wrongUse(reasonOf(error))", "the words of the command line's library, and one that stands there"),
    ("quietrix/Output.cpp", "log(sentence)", "the sentence of a refusal"),
    ("quietrix/Session.cpp", "log(line)", "what the store logs"),
    ("settings/channels/server/RunningServer.cpp", r'failure("\"" + path + "\" " + what + ": " + std::strerror(errno) + ".")',
     "what could not be done stands where it is called"),
    ("settings/channels/server/RuntimeFolder.cpp", r'failure("\"" + path + "\" " + reason + ".")', "the reasons stand where it is called"),
    ("settings/watching/Watcher.cpp", "failure(*failure_)", "the sentence of an error"),
    ("settings/program/PhoneSetup.cpp", "failure(*shell->shortage())", "the shell's couldNotRun() and a reason"),
    ("settings/recording/RecordedMachine.cpp", "log(line)", "what was logged when it was recorded"),
    ("settings/recording/RecordedWorld.cpp", "failure(*refusal.reason)", "what was refused when it was recorded"),
]

_ROW = re.compile(r"^\| (?P<texts>`[^`]+`(?:<br>`[^`]+`)*) \| [^|]+ \| [^|]+ \|$", re.MULTILINE)


def is_part(text: str) -> bool:
    """Whether it only goes on a sentence that has a row: it begins with a small letter, and neither a full stop nor what
    another says ends it."""
    return re.match(r"…?\W*[a-z]", text) is not None and not text.endswith((".", "?", ": " + messages.GAP))


def passing_over(message: Message) -> int | None:
    """Which entry of PASSED_OVER has the message, if any."""
    return next((place for place, (path, text, _) in enumerate(PASSED_OVER)
                 if re.fullmatch(path, message.path) and re.fullmatch(text, message.text or "")), None)


def rows_of(document: str) -> Iterator[tuple[str, int]]:
    """The messages that have a row, and its line."""
    for row in _ROW.finditer(document):
        for text in re.findall(r"`([^`]+)`", row["texts"]):
            yield text.replace("\\|", "|"), document.count("\n", 0, row.start()) + 1


def row_for(text: str) -> str:
    return "| `" + text.replace("|", "\\|") + "` | what it means | what to do |"


def problems(found: Iterable[Message], document: str, unread: list[tuple[str, str, str]] | None = None) -> Iterator[str]:
    """One line for each problem of the document, in the order of the sources."""
    rows: dict[str, int] = {}
    for text, line in rows_of(document):
        if text in rows:
            yield f"{DOCUMENT}:{line}: the message `{text}` has a row already, in line {rows[text]}"
        rows.setdefault(text, line)
    left = [(path, call) for path, call, _ in (UNREAD if unread is None else unread)]
    told: set[str] = set()
    seen: set[str] = set()
    known = set(left)
    used = set()
    for message in found:
        if message.text is None:
            if (message.path, message.call) in known:
                used.add((message.path, message.call))
            else:
                yield (f"{message.path}:{message.line}: what {message.call} says cannot be told from the sources; give it its "
                       f"text there, or name it in UNREAD of test_troubleshooting.py")
            continue
        seen.add(message.text)
        if message.text in rows or message.text in told or is_part(message.text) or passing_over(message) is not None:
            continue
        told.add(message.text)
        yield f"{message.path}:{message.line}: {DOCUMENT} has no row for this message:\n{row_for(message.text)}"
    for text, line in rows.items():
        if text not in seen:
            yield f"{DOCUMENT}:{line}: no source has the message `{text}` any more; take it out, or word it as it is now"
    for path, call in left:
        if (path, call) not in used:
            yield f"UNREAD of test_troubleshooting.py: there is no {call} in {path} any more"


def source_files(source: Path) -> Iterator[str]:
    listed = subprocess.run(("git", "-C", source, "ls-files", "-z", "--cached", "--others", "--exclude-standard"), check=True,
                            capture_output=True, text=True).stdout
    for path in sorted(set(listed.split("\0"))):
        if SOURCES.fullmatch(path) and (path in NAMED or not FOREIGN.match(path)) and (source / path).is_file():
            yield path


def main() -> int:
    source = Path(sys.argv[1]).resolve()
    found = [message for path in source_files(source)
             for message in messages.of_file(path, (source / path).read_text(encoding="utf-8"))]
    if len(found) < 100:
        print(f"Only {len(found)} messages were found; the extraction is broken.")
        return 1
    failed = list(problems(found, (source / DOCUMENT).read_text(encoding="utf-8")))
    used = {passing_over(message) for message in found}
    failed += [f"PASSED_OVER of test_troubleshooting.py: nothing is {reason} any more in {path}"
               for place, (path, _, reason) in enumerate(PASSED_OVER) if place not in used]
    print("\n".join([*failed, f"{len(found)} messages, {len(failed)} problems"]))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
