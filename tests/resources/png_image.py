# SPDX-License-Identifier: MIT
"""Just enough of PNG to measure the bundle's images: eight bits a channel, not interlaced."""

import struct
import zlib
from dataclasses import dataclass
from pathlib import Path

_SIGNATURE = b"\x89PNG\r\n\x1a\n"
_CHANNELS = {0: 1, 2: 3, 4: 2, 6: 4}


class ImageError(Exception):
    """What is wrong with an image, with its path."""


@dataclass(frozen=True)
class Image:
    """A decoded image; a pixel is (red, green, blue, alpha), each 0 to 255, from the top left corner."""

    width: int
    height: int
    pixels: list[tuple[int, int, int, int]]


def read(path: Path) -> Image:
    """Decodes the whole file, checksums included; raises ImageError when it is damaged or of another kind."""
    try:
        return _decode(path.read_bytes())
    except (OSError, ValueError, IndexError, struct.error, zlib.error) as error:
        raise ImageError(f"{path}: not a usable PNG image: {error}") from error


def contrast(first: tuple[float, float, float], second: tuple[float, float, float]) -> float:
    """The contrast ratio of two opaque colours, 1 to 21, by relative luminance."""
    lighter, darker = sorted((luminance(first), luminance(second)), reverse=True)
    return (lighter + 0.05) / (darker + 0.05)


def luminance(colour: tuple[float, float, float]) -> float:
    """Relative luminance of an sRGB colour whose channels run from 0 to 255; 0 is black, 1 is white."""
    linear = [
        value / 12.92 if value <= 0.04045 else ((value + 0.055) / 1.055) ** 2.4
        for value in (channel / 255 for channel in colour)
    ]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def _decode(data: bytes) -> Image:
    if not data.startswith(_SIGNATURE):
        raise ValueError("the signature is missing")
    chunks = dict[bytes, bytes]()
    position = len(_SIGNATURE)
    while b"IEND" not in chunks:
        length, kind = struct.unpack_from(">I4s", data, position)
        body = data[position + 8 : position + 8 + length]
        (checksum,) = struct.unpack_from(">I", data, position + 8 + length)
        if zlib.crc32(kind + body) != checksum:
            raise ValueError(f"the checksum of {kind.decode('latin-1')} is wrong")
        chunks[kind] = chunks.get(kind, b"") + body
        position += 12 + length
    width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", chunks[b"IHDR"])
    if depth != 8 or colour not in _CHANNELS or interlace != 0:
        raise ValueError("only eight bits a channel, without palette or interlacing, is known here")
    rows = _unfilter(zlib.decompress(chunks[b"IDAT"]), width, height, _CHANNELS[colour])
    return Image(width, height, [_pixel(row, column, colour) for row in rows for column in range(width)])


def _pixel(row: bytes, column: int, colour: int) -> tuple[int, int, int, int]:
    channels = _CHANNELS[colour]
    values = row[column * channels : (column + 1) * channels]
    if colour in (0, 4):
        values = values[:1] * 3 + values[1:]
    return (values[0], values[1], values[2], values[3] if len(values) == 4 else 255)


def _unfilter(data: bytes, width: int, height: int, channels: int) -> list[bytes]:
    stride = width * channels
    if len(data) != (stride + 1) * height:
        raise ValueError("the amount of pixel data does not fit the size")
    rows: list[bytes] = []
    above = bytes(stride)
    for start in range(0, len(data), stride + 1):
        kind, row = data[start], bytearray(data[start + 1 : start + 1 + stride])
        for index in range(stride):
            left = row[index - channels] if index >= channels else 0
            corner = above[index - channels] if index >= channels else 0
            row[index] = (row[index] + _predicted(kind, left, above[index], corner)) & 0xFF
        above = bytes(row)
        rows.append(above)
    return rows


def _predicted(kind: int, left: int, up: int, corner: int) -> int:
    if kind == 4:
        estimate = left + up - corner
        return min((left, up, corner), key=lambda value: abs(estimate - value))
    predictions = (0, left, up, (left + up) // 2)
    if kind >= len(predictions):
        raise ValueError(f"unknown filter {kind}")
    return predictions[kind]
