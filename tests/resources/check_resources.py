#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the resources of the plug-in's bundle, of the Settings application and of a fresh phone.

Prints one line for each problem, then a summary; the exit status is 1 when there is a problem.
"""

import argparse
import plistlib
import re
import sys
from collections import Counter
from pathlib import Path
from xml.parsers import expat

import cpp_calls
import png_image
import string_table

LANGUAGES = ("ar", "de", "en", "es", "fr", "ja", "zh-Hans")
SOURCE_FOLDERS = ("shell", "profile", "conditions", "support", "velmora")
HOST_FOLDERS = ("settings/application", "settings/state", "settings/commands")
# They hand on what they are given.
FORWARDERS = frozenset({"localized", "localizedInMainBundle", "localizedLabelFromUIKit"})
# Functions that make the text while they run, and where it stands: the title that a profile begins with, the
# default tone's name (other tones show the name that the system gives them), the event statuses, a linked screen's
# title, which is looked for in the property list.
KEYS_OF_PROFILE = "profile/model/QXProfileKeys.cpp"
DEFAULT_TONE = "conditions/tone/QuietrixAlertToneController.cpp"
EVENT_STATUS = ("profile/model/EventStatus.h", re.compile(r'"([A-Z][A-Za-z/]*)"'))
AT_RUN_TIME = {
    "applyProfileEventStatusString": EVENT_STATUS,
    "statusTitles": EVENT_STATUS,
    "defaultProfile": (KEYS_OF_PROFILE, re.compile(r'"title",\s*"([^"]*)"')),
    "toneName": (DEFAULT_TONE, re.compile(r'"texttone:([^"]*)"')),
    "linkedScreens": ("resources/Info.plist", re.compile(r"<key>Title</key>\s*<string>([^<]*)</string>")),
}
EVENT_STATUSES = ("All", "Accepted", "Tentative", "Declined/Cancelled")
NAMES_KEPT = ("Quietrix Go", "#Quietrix", "Velmora", "@velmora")
PLACEHOLDER = re.compile(r"%(?:\d+\$)?(?:@|l?[dus]|%)")

WHITE = (255, 255, 255)
READABLE_CONTRAST = 4.5
HEADER_ALPHA = 0.85
# Width and height in points; no width: up to 120, as much as a title view has room for.
IMAGE_SIZES = {
    "nav": (12, 12),
    "twitter": (24, 24),
    "Quietrix": (None, 30),
    "Misc": (29, 29),
    "StatusBar": (29, 29),
    "email": (29, 29),
    "icon": (29, 29),
}
SPEAKER_IMAGES = ("SpeakerMute", "SpeakerMax")


class Report:
    """Counts what was looked at and prints what is wrong."""

    def __init__(self) -> None:
        self.passed = 0
        self.failed = 0

    def check(self, condition: bool, problem: str) -> bool:
        if condition:
            self.passed += 1
        else:
            self.failed += 1
            print(problem.replace("\n", "\\n"))
        return condition


class Tables:
    """All string tables: (bundle's name, table's name, language) to entries."""

    def __init__(self, bundles: dict[str, Path], report: Report) -> None:
        self.entries: dict[tuple[str, str, str], dict[str, str]] = {}
        for bundle, table in (("plug-in", "Localizable"), ("main", "Localizable"), ("main", "UIKit")):
            for language in LANGUAGES:
                path = bundles[bundle] / f"{language}.lproj" / f"{table}.strings"
                problem = ""
                try:
                    self.entries[bundle, table, language] = string_table.read(path)
                except string_table.TableError as error:
                    self.entries[bundle, table, language] = {}
                    problem = str(error)
                report.check(not problem, problem)

    def named(self, bundle: str, table: str, language: str) -> dict[str, str]:
        return self.entries[bundle, table, language]


def check_tables(tables: Tables, report: Report) -> None:
    for (bundle, table, language), entries in tables.entries.items():
        where = f"{bundle} bundle, {language} {table}"
        english = tables.named(bundle, table, "en")
        report.check(bool(entries), f"{where}: the table is empty")
        for key in english.keys() - entries.keys():
            report.check(False, f'{where}: no translation of "{key}"')
        for key, value in entries.items():
            report.check(key in english, f'{where}: "{key}" is not in the English table')
            check_entry(f'{where}: "{key}"', language, key, value, report)


def check_entry(where: str, language: str, key: str, value: str, report: Report) -> None:
    if language == "en":
        report.check(value == key, f"{where}: the English text differs from its key")
    report.check(value != "", f"{where}: the translation is empty")
    report.check(value == value.strip(), f"{where}: blanks at the beginning or the end")
    report.check(
        Counter(PLACEHOLDER.findall(value)) == Counter(PLACEHOLDER.findall(key)),
        f"{where}: the placeholders differ from the key's",
    )
    report.check(value.count("\n") == key.count("\n"), f"{where}: another number of line breaks than the key")
    for name in NAMES_KEPT:
        report.check(value.count(name) == key.count(name), f'{where}: "{name}" does not stand as in the key')


def check_agreement(tables: Tables, report: Report) -> None:
    """One text has one translation, and texts that the product tells apart by what they show stay apart."""
    for language in LANGUAGES:
        plug_in = tables.named("plug-in", "Localizable", language)
        main = tables.named("main", "Localizable", language)
        # The reset compares the row's name with the main bundle's: two translations would switch it off.
        report.check(
            plug_in.get("Reset Profiles", "") == main.get("Reset Profiles"),
            f'{language}: "Reset Profiles" differs between the plug-in bundle and the main bundle',
        )
        seen: dict[str, str] = {}
        for table in (plug_in, main, tables.named("main", "UIKit", language)):
            for key, value in table.items():
                agreed = seen.setdefault(key, value)
                report.check(agreed == value, f'{language}: "{key}" is both "{agreed}" and "{value}"')
        statuses = {plug_in.get(status) for status in EVENT_STATUSES}
        report.check(
            len(statuses) == len(EVENT_STATUSES) and None not in statuses,
            f"{language}: the event statuses do not have four different titles",
        )


def load_image(path: Path, report: Report) -> png_image.Image | None:
    problem = ""
    image = None
    try:
        image = png_image.read(path)
    except png_image.ImageError as error:
        problem = str(error)
    report.check(not problem, problem)
    return image


def check_scales(folder: Path, name: str, scales: tuple[int, ...], report: Report) -> list[png_image.Image]:
    """The image at the scales asked for, in that order; shorter when some cannot be read."""
    images: list[tuple[int, png_image.Image]] = []
    for scale in scales:
        image = load_image(folder / f"{name}{'' if scale == 1 else f'@{scale}x'}.png", report)
        if image is not None:
            images.append((scale, image))
    sizes = {(image.width / scale, image.height / scale) for scale, image in images}
    report.check(
        len(images) < 2 or (len(sizes) == 1 and all(side == int(side) for size in sizes for side in size)),
        f"{folder.name}/{name}: the sizes are not in the exact ratio of their scales",
    )
    return [image for _, image in images]


def check_images(bundle: Path, speakers: Path, report: Report) -> None:
    for name, (width, height) in IMAGE_SIZES.items():
        source = bundle / "images" / f"{name}.svg"
        report.check(source.is_file(), f"{source}: the source is missing")
        images = check_scales(bundle, name, (1, 2, 3), report)
        for image in images[:1]:
            report.check(
                image.height == height and (image.width == width if width else image.width <= 120),
                f"{name}.png: {image.width} x {image.height} is not the size that its place needs",
            )
        if name == "nav":
            check_bar_colour(images, report)
        if name in ("twitter", "Quietrix"):
            drawn = [pixel for image in images for pixel in image.pixels if pixel[3] > 0]
            report.check(
                bool(drawn) and all(pixel[:3] == WHITE for pixel in drawn), f"{name}: not white alone"
            )
    known = {f"{name}{suffix}.png" for name in IMAGE_SIZES for suffix in ("", "@2x", "@3x")}
    for path in sorted(bundle.glob("*.png")):
        report.check(path.name in known, f"{path.name}: an image that nothing here knows")
    for name in SPEAKER_IMAGES:
        check_scales(speakers, name, (2, 3), report)


def check_bar_colour(images: list[png_image.Image], report: Report) -> None:
    """White text has to be readable on the bar and on the header, which lets its white ground through."""
    pixels = [pixel for image in images for pixel in image.pixels]
    if not report.check(bool(pixels), "nav: no pixel to measure"):
        return
    report.check(all(pixel[3] == 255 for pixel in pixels), "nav: not opaque")
    red, green, blue, _ = max(pixels, key=lambda pixel: png_image.luminance(pixel[:3]))
    header = tuple(HEADER_ALPHA * channel + (1 - HEADER_ALPHA) * 255 for channel in (red, green, blue))
    for place, colour in (("bar", (red, green, blue)), ("header", header)):
        ratio = png_image.contrast(WHITE, colour)
        report.check(
            ratio >= READABLE_CONTRAST,
            f"nav: the contrast of white on the {place} is {ratio:.2f}, below {READABLE_CONTRAST}",
        )


def load_property_list(path: Path, report: Report) -> dict:
    problem = ""
    content: object = {}
    try:
        content = plistlib.loads(path.read_bytes())
    except (OSError, ValueError, plistlib.InvalidFileException, expat.ExpatError) as error:
        problem = f"{path}: not a property list: {error}"
    if not problem and not isinstance(content, dict):
        problem = f"{path}: the property list is no dictionary"
    return content if report.check(not problem, problem) else {}


def check_property_lists(bundles: dict[str, Path], report: Report) -> None:
    expected = {
        bundles["plug-in"] / "Quietrix.plist": {},
        bundles["plug-in"] / "Info.plist": {
            "CFBundleIdentifier": "com.velmora.QuietrixPreferences",
            "CFBundleName": "QuietrixPreferences",
            "CFBundleExecutable": "QuietrixPreferences",
            "CFBundleDisplayName": "Quietrix Go",
            "CFBundleDevelopmentRegion": "en",
            "NSPrincipalClass": "QuietrixPreferencesController",
            "PlatformInterfaceVersion": 1,
        },
        bundles["main"] / "Info.plist": {
            "CFBundleIdentifier": "com.velmora.settings-host",
            "CFBundleName": "Settings",
            "CFBundleDevelopmentRegion": "en",
        },
    }
    for path, entries in expected.items():
        content = load_property_list(path, report)
        for key, value in entries.items():
            found = content.get(key)
            report.check(
                type(found) is type(value) and found == value, f"{path}: {key} is {found!r}, not {value!r}"
            )
        if path.name == "Quietrix.plist":
            # The one place where it stands: every other takes it from there.
            version = content.get("Version")
            report.check(
                isinstance(version, str) and re.fullmatch(r"\d+\.\d+\.\d+", version) is not None,
                f"{path}: Version is {version!r}, not a text of three numbers",
            )
        if path.name == "Info.plist":
            declared = content.get("CFBundleLocalizations", [])
            folders = sorted(folder.stem for folder in path.parent.glob("*.lproj"))
            report.check(
                sorted(declared) == folders == sorted(LANGUAGES),
                f"{path}: CFBundleLocalizations {declared} does not agree with the folders {folders}",
            )


def check_calendars(folder: Path, report: Report) -> None:
    calendars = sorted(path for path in folder.glob("*/*") if path.is_dir())
    report.check(len(calendars) >= 2, f"{folder}: fewer than two sample calendars")
    uids: list[bytes] = []
    for calendar in calendars:
        for name, pattern in (("displayname", r"\S.*"), ("color", r"#[0-9A-Fa-f]{6}")):
            path = calendar / name
            text = path.read_text("utf-8").strip() if path.is_file() else ""
            report.check(re.fullmatch(pattern, text) is not None, f"{path}: {text!r} is not usable")
        events = sorted(calendar.glob("*.ics"))
        report.check(bool(events), f"{calendar}: no event")
        for path in events:
            uids += check_event(path, report)
    report.check(len(uids) == len(set(uids)), f"{folder}: two events have the same UID")


def check_event(path: Path, report: Report) -> list[bytes]:
    data = path.read_bytes()
    lines = data.split(b"\r\n")
    report.check(
        data.endswith(b"\r\n") and not any(b"\r" in line or b"\n" in line for line in lines),
        f"{path}: a line does not end in CR LF",
    )
    report.check(all(len(line) <= 75 for line in lines), f"{path}: a line is longer than 75 bytes")
    report.check(
        lines[0] == b"BEGIN:VCALENDAR" and lines[-2:] == [b"END:VCALENDAR", b""],
        f"{path}: not one whole VCALENDAR",
    )
    names = Counter(re.split(rb"[:;]", line)[0] for line in lines)
    for name in (b"VERSION", b"PRODID", b"UID", b"DTSTAMP", b"DTSTART", b"DTEND", b"SUMMARY"):
        report.check(names[name] == 1, f"{path}: {names[name]} lines {name.decode()} instead of one")
    return [line for line in lines if line.startswith(b"UID:")]


def check_sources(root: Path, tables: Tables, report: Report) -> None:
    """What the sources ask for is in the table that they ask."""
    main = tables.named("main", "Localizable", "en")
    plug_in = tables.named("plug-in", "Localizable", "en")
    found = check_asked(
        root,
        SOURCE_FOLDERS,
        {
            "localized": plug_in,
            "localizedInMainBundle": main,
            "localizedLabelFromUIKit": tables.named("main", "UIKit", "en"),
        },
        report,
    )
    report.check(found > 0, "no source asks for a localised text: the search does not know the call any more")
    check_asked(root, HOST_FOLDERS, {"localizedStringForKey_value_table": main | plug_in}, report)


def texts_at_run_time(root: Path) -> dict[str, list[str]]:
    texts = {}
    for function, (path, pattern) in AT_RUN_TIME.items():
        source = root / path
        texts[function] = pattern.findall(source.read_text("utf-8")) if source.is_file() else []
    return texts


def check_asked(root: Path, folders: tuple[str, ...], asked: dict[str, dict[str, str]], report: Report) -> int:
    """How many texts the sources of the folders ask for."""
    paths = sorted(path for folder in folders for path in (root / folder).rglob("*"))
    sources = cpp_calls.Sources(
        {str(path.relative_to(root)): path.read_text("utf-8") for path in paths if path.suffix in (".cpp", ".h")}
    )
    found = 0
    at_run_time = texts_at_run_time(root)
    for function, table in asked.items():
        for each in sources.asked(function, FORWARDERS, at_run_time):
            found += 1
            where = f"{each.path}:{each.line}"
            if each.text is None:
                report.check(False, f"{where}: which text {function}() is given cannot be told from the source")
            else:
                report.check(each.text in table, f'{where}: no table has "{each.text}" for {function}()')
    return found


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--root", type=Path, default=Path(__file__).resolve().parents[2], help="the checkout")
    root = parser.parse_args().root
    bundles = {"plug-in": root / "resources", "main": root / "settings" / "resources"}
    phone = bundles["main"] / "root"

    report = Report()
    tables = Tables(bundles, report)
    check_tables(tables, report)
    check_agreement(tables, report)
    check_images(bundles["plug-in"], phone, report)
    check_property_lists(bundles, report)
    check_calendars(phone / "calendars", report)
    check_sources(root, tables, report)
    if report.failed > 0:
        print(f"{report.failed} of {report.passed + report.failed} checks failed")
        return 1
    print(f"{report.passed} checks passed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
