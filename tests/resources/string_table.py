# SPDX-License-Identifier: MIT
"""Strict reader of string tables: `"key" = "value";` in UTF-8 with /* comments */.

Stricter than what the product itself accepts, so that a table that passes here is read alike by everyone.
"""

import re
from pathlib import Path

_TOKEN = re.compile(
    r'(?P<blank>\s+|/\*.*?\*/)|(?P<text>"(?:[^"\\\n]|\\.)*")|(?P<sign>[=;])', re.DOTALL
)
_ESCAPE = re.compile(r"\\(U[0-9A-Fa-f]{4}|.)", re.DOTALL)
_PLAIN_ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}


class TableError(Exception):
    """What is wrong with a table, with its path and line."""


def read(path: Path) -> dict[str, str]:
    """The table's entries in their order; raises TableError at the first thing that is not strictly right."""
    try:
        source = path.read_bytes().decode("utf-8")
    except (OSError, UnicodeDecodeError) as error:
        raise TableError(f"{path}: cannot be read: {error}") from error
    if source.startswith("\ufeff"):
        raise TableError(f"{path}:1: begins with a byte-order mark")
    return _Reader(path, source).entries()


class _Reader:
    def __init__(self, path: Path, source: str):
        self._path = path
        self._source = source
        self._position = 0

    def entries(self) -> dict[str, str]:
        result: dict[str, str] = {}
        while (token := self._next()) is not None:
            key = self._text(token)
            if key in result:
                raise self._error(f'the key "{key}" is there twice')
            self._expect("=")
            value = self._text(self._next())
            self._expect(";")
            result[key] = value
        return result

    def _next(self) -> str | None:
        while self._position < len(self._source):
            match = _TOKEN.match(self._source, self._position)
            if match is None:
                raise self._error(f"unexpected {self._source[self._position]!r}")
            self._position = match.end()
            if match.lastgroup != "blank":
                return match.group()
        return None

    def _expect(self, sign: str) -> None:
        found = self._next()
        if found != sign:
            raise self._error(f"expected {sign!r}, found {found or 'the end of the file'}")

    def _text(self, token: str | None) -> str:
        if token is None or not token.startswith('"'):
            raise self._error(f"expected a quoted text, found {token or 'the end of the file'}")
        decoded = _ESCAPE.sub(self._unescape, token[1:-1])
        # Two halves written as escapes make one character; a lone half is refused by the second step.
        try:
            return decoded.encode("utf-16", "surrogatepass").decode("utf-16")
        except UnicodeDecodeError as error:
            raise self._error("half of a surrogate pair") from error

    def _unescape(self, match: re.Match[str]) -> str:
        escape = match.group(1)
        if len(escape) == 5:
            return chr(int(escape[1:], 16))
        if escape not in _PLAIN_ESCAPES:
            raise self._error(f"unknown escape \\{escape}")
        return _PLAIN_ESCAPES[escape]

    def _error(self, what: str) -> TableError:
        line = self._source.count("\n", 0, self._position) + 1
        return TableError(f"{self._path}:{line}: {what}")
