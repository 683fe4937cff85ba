#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Exchanges property lists with Python's plistlib, in both directions and both formats.

Usage: plist_exchange.py PLIST-TOOL
"""

import datetime
import plistlib
import random
import struct
import subprocess
import sys

TOOL = subprocess.Popen([sys.argv[1]], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
FORMATS = {"binary": plistlib.FMT_BINARY, "xml": plistlib.FMT_XML}
REFERENCE = datetime.datetime(2001, 1, 1)


def convert(data, target):
    TOOL.stdin.write(b"%s %d\n" % (target.encode(), len(data)) + data)
    TOOL.stdin.flush()
    outcome, length = TOOL.stdout.readline().split()
    answer = TOOL.stdout.read(int(length))
    if outcome != b"ok":
        raise AssertionError(f"plist-tool {target}: {answer.decode()}")
    return answer


def canonical(value):
    """The value with its types, so that 1, 1.0 and True differ and NaN equals itself."""
    if isinstance(value, float):
        return ("real", "nan" if value != value else struct.pack(">d", value))
    if isinstance(value, plistlib.UID):
        return canonical({"CF$UID": value.data})
    if isinstance(value, dict):
        return ("dict", sorted((key, canonical(item)) for key, item in value.items()))
    if isinstance(value, list):
        return ("array", [canonical(item) for item in value])
    return (type(value).__name__, value)


def integer_bytes(number, width):
    return number.to_bytes(width, "big")


class Encoder:
    """Binary lists with any widths, which plistlib itself never writes."""

    def __init__(self, offset_width, reference_width):
        self.offset_width = offset_width
        self.reference_width = reference_width
        self.objects = []

    def encode(self, value):
        top = self.add(value)
        body = b"bplist00"
        offsets = []
        for item in self.objects:
            offsets.append(len(body))
            body += item
        table = b"".join(integer_bytes(offset, self.offset_width) for offset in offsets)
        trailer = struct.pack(">6xBBQQQ", self.offset_width, self.reference_width, len(offsets), top, len(body))
        return body + table + trailer

    def add(self, value):
        if isinstance(value, dict):
            references = [self.add(key) for key in value] + [self.add(item) for item in value.values()]
            content = self.header(0xD0, len(value)) + self.references(references)
        elif isinstance(value, list):
            content = self.header(0xA0, len(value)) + self.references([self.add(item) for item in value])
        elif isinstance(value, bool):
            content = b"\x09" if value else b"\x08"
        elif isinstance(value, int):
            content = b"\x13" + struct.pack(">q", value)
        elif isinstance(value, float):
            content = b"\x23" + struct.pack(">d", value)
        else:
            content = self.header(0x60, len(value.encode("utf-16-be")) // 2) + value.encode("utf-16-be")
        self.objects.append(content)
        return len(self.objects) - 1

    def references(self, indexes):
        return b"".join(integer_bytes(index, self.reference_width) for index in indexes)

    @staticmethod
    def header(marker, count):
        if count < 15:
            return bytes([marker | count])
        return bytes([marker | 15, 0x11]) + struct.pack(">H", count)


def random_value(random_source, depth):
    def text():
        alphabet = random_source.choice(["abc <>&\"'xyz\t\n", "äöüß€ 中文字 ", "a😀b𝄞\u2028"])
        return "".join(random_source.choice(alphabet) for _ in range(random_source.choice([0, 1, 3, 14, 15, 16, 40])))

    kind = random_source.randrange(9 if depth > 0 else 7)
    if kind == 0:
        return random_source.choice([True, False])
    if kind == 1:
        bits = random_source.randrange(1, 64)
        return random_source.choice([1, -1]) * random_source.randrange(2**bits)
    if kind == 2:
        # No -0.0 beside 0.0: plistlib's own writer stores the two once.
        return random_source.choice([0.0, 0.1, 1e300, 5e-324, random_source.uniform(-1e6, 1e6)])
    if kind == 3:
        return REFERENCE + datetime.timedelta(seconds=random_source.randrange(-(10**10), 10**10))
    if kind == 4:
        return random_source.randbytes(random_source.choice([0, 1, 2, 3, 14, 15, 100]))
    if kind in (5, 6):
        return text()
    count = random_source.choice([0, 1, 2, 5, 14, 15, 20])
    if kind == 7:
        return [random_value(random_source, depth - 1) for _ in range(count)]
    return {text(): random_value(random_source, depth - 1) for _ in range(count)}


def fixed_values():
    for exponent in (0, 7, 8, 15, 16, 31, 32, 62, 63):
        for number in (2**exponent - 1, 2**exponent, 2**exponent + 1):
            yield number
            if -number >= -(2**63):
                yield -number
    yield 2**64 - 1
    yield -(2**63)
    yield from (0.0, -0.0, 1.5, float("inf"), float("-inf"), float("nan"), 5e-324, 1.7976931348623157e308)
    yield from (True, False, "", "a", "ä", "😀", "x" * 14, "x" * 15, "é" * 300, "x" * 70000)
    yield from (b"", b"\0", b"x" * 14, b"x" * 15, b"x" * 255, b"x" * 256, b"x" * 70000)
    yield from (datetime.datetime(1, 1, 1), datetime.datetime(9999, 12, 31, 23, 59, 59), REFERENCE)
    yield from ([], {}, [[]], [{}], {"": ""}, {"a": [1, 1.0, True, "1", b"1"]})
    # One, two and three bytes of reference and offset.
    yield list(range(254))
    yield list(range(255))
    yield list(range(256))
    yield [f"text {number}" for number in range(70000)]
    yield {f"key {number}": number for number in range(400)}


def check(description, expected, actual):
    if canonical(expected) != canonical(actual):
        raise AssertionError(f"{description}: {str(expected)[:200]!r} became {str(actual)[:200]!r}")


def main():
    exchanges = 0
    source = random.Random(20261120)
    values = list(fixed_values()) + [random_value(source, 3) for _ in range(150)]
    for value in values:
        for written, written_format in FORMATS.items():
            data = plistlib.dumps(value, fmt=written_format)
            for target in FORMATS:
                check(f"{written} to {target}", value, plistlib.loads(convert(data, target)))
                exchanges += 1

    # What only one of the formats has.
    only_binary = [
        "control \x01 characters and a carriage return\r",
        REFERENCE + datetime.timedelta(microseconds=250000),
        plistlib.UID(0), plistlib.UID(255), plistlib.UID(2**32), [plistlib.UID(7)],
        # Four bytes of offset, three of them not enough.
        [b"x" * 17_000_000, "behind it"],
    ]
    for value in only_binary:
        data = plistlib.dumps(value, fmt=plistlib.FMT_BINARY)
        check("binary to binary", value, plistlib.loads(convert(data, "binary")))
        exchanges += 1
    text = "line\rbreaks\r\n"
    data = plistlib.dumps(text, fmt=plistlib.FMT_BINARY)
    check("carriage returns through XML", text, plistlib.loads(convert(convert(data, "xml"), "binary")))

    value = {"list": [1, -2, 0.5, True, "text", {"é": list(range(20))}], "other": False}
    for offset_width in range(2, 9):
        for reference_width in range(1, 9):
            data = Encoder(offset_width, reference_width).encode(value)
            check("the encoder itself", value, plistlib.loads(data))
            check(f"widths {offset_width} and {reference_width}", value, plistlib.loads(convert(data, "binary")))
            exchanges += 1
    small = ["a", 1]
    check("offsets of one byte", small, plistlib.loads(convert(Encoder(1, 1).encode(small), "binary")))
    print(f"{exchanges} exchanges")


if __name__ == "__main__":
    with TOOL:
        main()
    sys.exit(TOOL.returncode)
