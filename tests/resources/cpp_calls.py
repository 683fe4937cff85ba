# SPDX-License-Identifier: MIT
"""Finds the literal texts that C++ sources hand to a function."""

import re
from collections.abc import Iterator

_TOKEN = re.compile(
    r"""
      (?P<comment> //(?:\\\n|[^\n])* | /\*.*?\*/ )
    | (?P<raw> (?:u8|[uUL])?R"(?P<fence>[^\s()\\]{0,16})\((?P<inside>.*?)\)(?P=fence)" )
    | (?P<text> (?:u8|[uUL])?"(?:[^"\\\n]|\\.)*" )
    | (?P<character> '(?:[^'\\\n]|\\.)+' )
    | (?P<number> \d(?:[\w.]|'(?=\w)|(?<=[eEpP])[+-])* )
    | (?P<name> [A-Za-z_]\w* )
    | (?P<sign> \S )
    """,
    re.DOTALL | re.VERBOSE,
)
_ESCAPE = re.compile(r"\\(u[0-9A-Fa-f]{4}|U[0-9A-Fa-f]{8}|x[0-9A-Fa-f]+|[0-7]{1,3}|\n|.)", re.DOTALL)
_PLAIN_ESCAPES = {"n": 10, "t": 9, "r": 13, "a": 7, "b": 8, "f": 12, "v": 11}


def literals(source: str, function: str) -> Iterator[tuple[str, int]]:
    """Each text given to `function` as its whole first argument, and the line of the call.

    Adjacent literals count as one. A call whose argument is not made of literals alone is passed over: its
    key is known only when it runs.
    """
    tokens = [match for match in _TOKEN.finditer(source) if match.lastgroup != "comment"]
    for index, token in enumerate(tokens[:-1]):
        if token.group() != function or tokens[index + 1].group() != "(":
            continue
        text = b""
        following = index + 2
        while following < len(tokens) and (part := _decoded(tokens[following])) is not None:
            text += part
            following += 1
        if following > index + 2 and following < len(tokens) and tokens[following].group() in (")", ","):
            yield text.decode("utf-8", "replace"), source.count("\n", 0, token.start()) + 1


def _decoded(token: re.Match[str]) -> bytes | None:
    if token.group("raw") is not None:
        return token.group("inside").encode()
    if token.group("text") is None:
        return None
    body = token.group()
    body = body[body.index('"') + 1 : -1]
    result = b""
    position = 0
    for escape in _ESCAPE.finditer(body):
        result += body[position : escape.start()].encode() + _unescaped(escape.group(1))
        position = escape.end()
    return result + body[position:].encode()


def _unescaped(escape: str) -> bytes:
    if escape == "\n":
        return b""
    if escape[0] in "uU":
        return chr(int(escape[1:], 16)).encode() if len(escape) > 1 else escape.encode()
    if escape[0] == "x" and len(escape) > 1:
        return bytes([int(escape[1:], 16) & 0xFF])
    if escape[0] in "01234567":
        return bytes([int(escape, 8) & 0xFF])
    if escape in _PLAIN_ESCAPES:
        return bytes([_PLAIN_ESCAPES[escape]])
    return escape.encode()
