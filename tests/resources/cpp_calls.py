# SPDX-License-Identifier: MIT
"""Finds the literal texts that C++ sources hand to a function."""

import re
from collections.abc import Iterator
from dataclasses import dataclass

TOKEN = re.compile(
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


@dataclass(frozen=True)
class Asked:
    """A text that a call asks for, where it stands; no text when it cannot be told from the sources."""

    path: str
    line: int
    text: str | None


_Tokens = list[re.Match[str]]
_OPENING = {"(": ")", "[": "]", "{": "}"}
_STATEMENTS = {"return", "co_return", "else", "case", "throw", "co_yield", "do", "and", "or", "not"}
_BLOCKS = {"if", "for", "while", "switch", "catch", "constexpr"}
# What may stand around a text without making another of it.
_WRAPPERS = {"string_view", "string", "move"}


class Sources:
    """The sources of some folders, read together: a text may be handed on from a function to another."""

    def __init__(self, texts: dict[str, str]) -> None:
        self.texts = texts
        self.tokens: dict[str, _Tokens] = {
            path: [match for match in TOKEN.finditer(text) if match.lastgroup != "comment"]
            for path, text in texts.items()
        }

    def asked(self, function: str, forwarders: frozenset[str] = frozenset(),
              at_run_time: dict[str, list[str]] | None = None) -> Iterator[Asked]:
        """Each text that is given to `function` as its first argument, in whatever form: as literals, by a
        conditional expression, as a constant, out of an array or a table, through a function's parameter.

        Calls inside of `forwarders` are passed over. `at_run_time` has the texts of the calls inside of a
        function of that name which the sources do not tell.
        """
        for path, tokens in self.tokens.items():
            for index in self._calls(path, function):
                enclosing = self._enclosing(path, index)
                if enclosing is not None and enclosing[0] in forwarders:
                    continue
                arguments = _arguments(tokens, index + 1)
                found = self._resolve(path, arguments[0], index, 0) if arguments else None
                if found is None and enclosing is not None and at_run_time:
                    made = at_run_time.get(enclosing[0], [])
                    found = [(path, token_line(self.texts[path], tokens[index]), text) for text in made] or None
                if found is None:
                    yield Asked(path, token_line(self.texts[path], tokens[index]), None)
                else:
                    yield from (Asked(*place) for place in found)

    def _calls(self, path: str, function: str) -> Iterator[int]:
        """The indices of the names of the calls; declarations and definitions are none."""
        tokens = self.tokens[path]
        for index, token in enumerate(tokens[:-1]):
            if token.group() != function or tokens[index + 1].group() != "(":
                continue
            before = index - 1
            while before >= 1 and tokens[before].group() == ":" and tokens[before - 1].group() == ":":
                before -= 3
            previous = tokens[before] if before >= 0 else None
            declared = previous is not None and (
                previous.lastgroup == "name" and previous.group() not in _STATEMENTS or previous.group() == ">")
            if previous is not None and previous.group() == ">" and tokens[before - 1].group() == "-":
                declared = False
            if not declared:
                yield index

    def _enclosing(self, path: str, index: int) -> tuple[str, list[_Tokens], int] | None:
        """The function that the token stands in: its name, its parameters, the index of its body."""
        tokens = self.tokens[path]
        depth = 0
        for place in range(index - 1, -1, -1):
            sign = tokens[place].group()
            if sign == "}":
                depth += 1
            elif sign == "{" and depth > 0:
                depth -= 1
            elif sign == "{":
                opening = _function_opening(tokens, place)
                if opening is not None:
                    return tokens[opening - 1].group(), _arguments(tokens, opening), place
        return None

    def _resolve(self, path: str, value: _Tokens, index: int, depth: int) -> list[tuple[str, int, str]] | None:
        """The texts that the tokens may stand for where the call is; none when that cannot be told."""
        value = _bare(value)
        if not value or depth > 8:
            return None
        texts = [decoded(token) for token in value]
        if all(text is not None for text in texts):
            text = b"".join(text for text in texts if text is not None).decode("utf-8", "replace")
            return [(path, token_line(self.texts[path], value[0]), text)]
        arms = _arms(value)
        if arms is not None:
            return self._all(path, arms, index, depth)
        if value[0].group() == "{" and _closing(value, 0) == len(value) - 1:
            return self._all(path, _arguments(value, 0), index, depth)
        if value[0].group() == "*":
            value = value[1:]
        if value[0].lastgroup != "name":
            return None
        rest = "".join(token.group() for token in value[1:])
        name = value[0].group()
        if rest == "" or re.fullmatch(r"(\.at\(.*\)|\[.*\]|\.front\(\)|\.back\(\))", rest):
            return self._named(path, name, index, depth + 1)
        member = re.fullmatch(r"(?:\.at\([^()]*\)|\[[^\[\]]*\])?(?:\.|->)(\w+)", rest)
        return self._members(member.group(1), depth + 1) if member else None

    def _all(self, path: str, values: list[_Tokens], index: int,
             depth: int) -> list[tuple[str, int, str]] | None:
        found = []
        for value in values:
            each = self._resolve(path, value, index, depth + 1)
            if each is None:
                return None
            found += each
        return found or None

    def _named(self, path: str, name: str, index: int, depth: int) -> list[tuple[str, int, str]] | None:
        enclosing = self._enclosing(path, index)
        if enclosing is not None:
            tokens = self.tokens[path]
            function, parameters, body = enclosing
            for place in range(index - 1, body, -1):
                if tokens[place].group() == name and tokens[place + 1].group() == ":" != tokens[place + 2].group():
                    held = _until(tokens, place + 2, ")")
                    return self._resolve(path, held, place, depth)
            for position, parameter in enumerate(parameters):
                if name in [token.group() for token in _without_default(parameter)][-1:]:
                    return self._handed(function, position, depth)
        for other in [path, *(each for each in self.tokens if each != path)]:
            found = self._constant(other, name, depth)
            if found is not None:
                return found
        return None

    def _handed(self, function: str, position: int, depth: int) -> list[tuple[str, int, str]] | None:
        """What the calls of the function hand over for the parameter at the position."""
        found = []
        for path, tokens in self.tokens.items():
            for index in self._calls(path, function):
                arguments = _arguments(tokens, index + 1)
                if position >= len(arguments):
                    continue
                each = self._resolve(path, arguments[position], index, depth)
                if each is None:
                    return None
                found += each
        return found or None

    def _constant(self, path: str, name: str, depth: int) -> list[tuple[str, int, str]] | None:
        """What a variable is initialised with: `name = …;`, `name{…}`, `name[] = {…}`."""
        tokens = self.tokens[path]
        for index, token in enumerate(tokens[1:-1], 1):
            previous = tokens[index - 1]
            if token.group() != name or not (previous.lastgroup == "name" or previous.group() in (">", "*", "&")):
                continue
            if previous.group() in _STATEMENTS:
                continue
            place = index + 1
            if tokens[place].group() == "[":
                place = _closing(tokens, place) + 1
            if tokens[place].group() == "=":
                value = _until(tokens, place + 1, ";")
            elif tokens[place].group() == "{":
                value = tokens[place : _closing(tokens, place) + 1]
            else:
                continue
            found = self._resolve(path, value, index, depth)
            if found is not None:
                return found
        return None

    def _members(self, member: str, depth: int) -> list[tuple[str, int, str]] | None:
        """What the members of that name are initialised with: `.member = …`, or by their place in a table."""
        found = []
        known = False
        for path, tokens in self.tokens.items():
            for index in range(len(tokens) - 3):
                if tokens[index].group() in "{," and [token.group() for token in tokens[index + 1 : index + 4]] == [
                        ".", member, "="]:
                    value = _until(tokens, index + 4, ",", "}")
                    each = self._resolve(path, value, index, depth)
                    if each is None:
                        return None
                    known, found = True, found + each
            for structure, position in _structures(tokens, member):
                for initialiser, start in self._initialisers(structure):
                    each = self._positional(initialiser, start, position, depth)
                    if each is None:
                        return None
                    known, found = True, found + each
        return found if known and found else None

    def _initialisers(self, structure: str) -> Iterator[tuple[str, int]]:
        """The braces that a variable, an array or a value of the structure is initialised with."""
        for path, tokens in self.tokens.items():
            for index, token in enumerate(tokens):
                if token.group() != structure or (index > 0 and tokens[index - 1].group() in ("struct", "class")):
                    continue
                for place in range(index + 1, min(index + 14, len(tokens))):
                    sign = tokens[place].group()
                    if sign == "{":
                        yield path, place
                        break
                    if sign in (";", "(", ")", "}", ":"):
                        break

    def _positional(self, path: str, start: int, position: int, depth: int) -> list[tuple[str, int, str]] | None:
        tokens = self.tokens[path]
        values = _arguments(tokens, start)
        if values and all(value[0].group() == "{" for value in values):
            found = []
            for value in values:
                each = self._positional(path, tokens.index(value[0]), position, depth)
                if each is None:
                    return None
                found += each
            return found
        if values and values[0][0].group() == ".":
            return []
        return self._resolve(path, values[position], start, depth) if position < len(values) else []


def token_line(source: str, token: re.Match[str]) -> int:
    return source.count("\n", 0, token.start()) + 1


def _closing(tokens: _Tokens, opening: int) -> int:
    depth = 0
    for place in range(opening, len(tokens)):
        sign = tokens[place].group()
        depth += (sign in _OPENING) - (sign in _OPENING.values())
        if depth == 0:
            return place
    return len(tokens) - 1


def _until(tokens: _Tokens, start: int, *ends: str) -> _Tokens:
    """The tokens up to one of the ends that stands in no bracket of theirs."""
    place = start
    while place < len(tokens) and tokens[place].group() not in ends:
        place = _closing(tokens, place) + 1 if tokens[place].group() in _OPENING else place + 1
    return tokens[start:place]


def _arguments(tokens: _Tokens, opening: int) -> list[_Tokens]:
    """What stands between the commas of the bracket that opens there."""
    inside = tokens[opening + 1 : _closing(tokens, opening)]
    arguments: list[_Tokens] = []
    place = 0
    while place < len(inside):
        argument = _until(inside, place, ",")
        if argument:
            arguments.append(argument)
        place += len(argument) + 1
    return arguments


def _bare(value: _Tokens) -> _Tokens:
    """Without the brackets and the constructors around it."""
    while True:
        place = 0
        while place + 2 < len(value) and value[place].lastgroup == "name" and value[place + 1].group() == ":":
            place += 3
        wrapped = place < len(value) and value[place].group() in _WRAPPERS
        opening = place + 1 if wrapped else 0
        if (opening < len(value) and value[opening].group() in ("({" if wrapped else "(")
                and _closing(value, opening) == len(value) - 1):
            value = value[opening + 1 : -1]
        else:
            return value[place:] if place and place < len(value) else value


def _arms(value: _Tokens) -> list[_Tokens] | None:
    """The two sides of a conditional expression."""
    question = len(_until(value, 0, "?"))
    if question == len(value):
        return None
    depth = 0
    place = question
    while place < len(value):
        sign = value[place].group()
        if sign in _OPENING:
            place = _closing(value, place)
        elif sign == "?":
            depth += 1
        elif sign == ":" and place + 1 < len(value) and value[place + 1].group() == ":":
            place += 1
        elif sign == ":":
            depth -= 1
            if depth == 0:
                return [value[question + 1 : place], value[place + 1 :]]
        place += 1
    return None


def _without_default(parameter: _Tokens) -> _Tokens:
    return _until(parameter, 0, "=")


def _function_opening(tokens: _Tokens, body: int) -> int | None:
    """Where the parameters begin of the function whose body opens there; none when it is no function's."""
    place = body - 1
    while place >= 0 and tokens[place].group() in ("const", "override", "noexcept", "final"):
        place -= 1
    if place < 0 or tokens[place].group() != ")":
        return None
    depth = 0
    for opening in range(place, -1, -1):
        sign = tokens[opening].group()
        depth += (sign == ")") - (sign == "(")
        if depth == 0:
            named = opening > 0 and tokens[opening - 1].lastgroup == "name"
            return opening if named and tokens[opening - 1].group() not in _BLOCKS else None
    return None


def _structures(tokens: _Tokens, member: str) -> Iterator[tuple[str, int]]:
    """Names of the structures that have the member, and at which place."""
    for index in range(len(tokens) - 2):
        if tokens[index].group() != "struct" or tokens[index + 2].group() != "{":
            continue
        names = []
        place = index + 3
        end = _closing(tokens, index + 2)
        while place < end:
            declared = _until(tokens[:end], place, ";")
            place += len(declared) + 1
            if any(token.group() == "(" for token in declared):
                continue
            bare = _until(_without_default(declared), 0, "{")
            if bare:
                names.append(bare[-1].group())
        if member in names:
            yield tokens[index + 1].group(), names.index(member)


def decoded(token: re.Match[str]) -> bytes | None:
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
