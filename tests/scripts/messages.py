# SPDX-License-Identifier: MIT
"""Finds the messages that sources have for whoever uses what they are the sources of.

A message is a text of at least two words, or whatever is given to a function that makes errors. What is put together at
run time is "…" in it: `"There is no " + name + "."` is `There is no ….`. Texts of one word that no such function is
given are none: a key and a word cannot be told apart.
"""

import ast
import re
import sys
from dataclasses import dataclass
from itertools import product
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "resources"))
import cpp_calls  # noqa: E402

GAP = "…"
# What makes an error or a log line out of the text that it is given, as its first argument.
SINKS = {"failure", "complain", "stale", "wrongUse", "log", "Error"}
# What hands on a message that was made elsewhere.
HANDED_ON = re.compile(r".*(?:localizedDescription|error\(\)\.message|\.what\(\)|getMessage\(\))|(?:std::)?move\(\w+\)", re.S)
PARAMETER = re.compile(r"(?:const )?[\w:]+(?:<.*>)?[&* ]* \w+|(?:const )?[\w:]+&{1,2}")
# What is given to these is no message: selectors, what only a developer sees, the help of a command line.
NO_MESSAGES = {"method", "static_assert", "assert", "add_option", "add_flag", "add_subcommand"}
# Of the texts that the user is shown, labels included, sentences are messages.
LOCALIZED = {"localized", "localizedInMainBundle", "localizedLabelFromUIKit"}
# What may stand around a text without making another of it.
WRAPPERS = {"string", "string_view", "move"}
WORD = re.compile(r"[^\W\d_]{2,}")


@dataclass(frozen=True)
class Message:
    """A message, where it stands; no text when `call` is given something that the sources do not tell."""

    path: str
    line: int
    text: str | None
    call: str = ""


def squeezed(text: str) -> str:
    """In one line, without what stands at its ends for a program's sake, and with one gap for several."""
    text = re.sub(r"\x1b\[[0-9;]*\w|[\x00-\x1f]", " ", text).replace("`", "'")
    text = re.sub(r"\s+", " ", re.sub(GAP + "+", GAP, text)).lstrip(" :;,").rstrip()
    return re.sub(r"^…(?=[A-Z])", "", re.sub(r"^…(?=[a-z])", GAP + " ", text))


def has_words(text: str, least: int) -> bool:
    fixed = text.replace(GAP, " ")
    return len(WORD.findall(fixed)) >= least and (least < 2 or " " in text)



@dataclass
class _Token:
    """A token of C++; of a bracket, all that is in it."""

    kind: str
    sign: str
    start: int
    end: int
    text: str = ""
    items: list["_Token"] | None = None


_OPERATORS = re.compile(r"<<=?|->|::|\+\+|--|[=!<>+|&-]=|&&|\|\|")
_CLOSING = {"(": ")", "[": "]", "{": "}"}
# They stand between an operand's parts; all other signs and statements end an expression.
_INSIDE = {".", "->", "::", "*", "&", "<", ">", "~", "++", "--"}
_STATEMENTS = {"return", "co_return", "throw", "else", "case", "co_yield", "if", "for", "while", "switch", "do", "catch"}


def _tokens(source: str) -> list[_Token]:
    found: list[_Token] = []
    for match in cpp_calls.TOKEN.finditer(source):
        kind, sign = match.lastgroup, match.group()
        if kind == "comment" or found and match.start() < found[-1].end:
            continue
        token = _Token(kind, sign, match.start(), match.end())
        if kind in ("text", "raw"):
            token.kind, token.text = "text", (cpp_calls.decoded(match) or b"").decode("utf-8", "replace")
        elif kind == "character":
            token.kind, token.text = "text", " " if sign.startswith("'\\") else sign[1:-1]
        elif kind == "sign":
            operator = _OPERATORS.match(source, match.start())
            if operator:
                token.sign, token.end = operator[0], operator.end()
        found.append(token)
    return found


def _nested(tokens: list[_Token], place: int = 0, closing: str | None = None) -> tuple[list[_Token], int]:
    items = []
    while place < len(tokens):
        token = tokens[place]
        place += 1
        if token.kind == "sign" and token.sign in _CLOSING:
            token.items, place = _nested(tokens, place, _CLOSING[token.sign])
            token.kind = "group"
            token.end = tokens[place - 1].end
        elif token.kind == "sign" and token.sign == closing:
            return items, place
        items.append(token)
    return items, place


class _Cpp:
    """Walks through the expressions of a source: what stands between separators, in each bracket for itself."""

    def __init__(self, path: str, source: str) -> None:
        # Directives are no expressions; their lines stay, for the numbers of the others.
        self.source = re.sub(r"^[ \t]*#(?:\\\n|[^\n])*", lambda found: re.sub(r"[^\n]", " ", found[0]), source,
                             flags=re.MULTILINE)
        self.path = path
        self.found: list[Message] = []
        self._walk(_nested(_tokens(self.source))[0])

    def _add(self, token: _Token, text: str | None, call: str = "") -> None:
        self.found.append(Message(self.path, self.source.count("\n", 0, token.start) + 1, text, call))

    def _walk(self, items: list[_Token], least: int = 2) -> None:
        """Each expression between the separators, each side of a conditional for itself."""
        for arm in self._arms(items):
            texts, literal = self._sum(arm)
            if literal:
                for text in sorted({squeezed(each) for each in texts}):
                    if has_words(text, least):
                        self._add(literal, text)

    def _arms(self, items: list[_Token]) -> list[list[_Token]]:
        arms: list[list[_Token]] = [[]]
        for place, item in enumerate(items):
            ends = item.kind == "sign" and item.sign not in _INSIDE and item.sign not in ("+", "<<")
            ends = ends or item.kind == "name" and item.sign in _STATEMENTS
            if ends:
                arms.append([_Token("gap", GAP, item.start, item.end)] if item.sign == "+=" else [])
            else:
                arms[-1].append(item)
                # A block is no operand, and nothing goes on behind it.
                if item.kind == "group" and item.sign == "{" and not self._is_value(items, place):
                    arms.append([])
        return [arm for arm in arms if arm]

    @staticmethod
    def _is_value(items: list[_Token], place: int) -> bool:
        return place > 0 and items[place - 1].kind == "name" and items[place - 1].sign not in _STATEMENTS

    def _sum(self, items: list[_Token]) -> tuple[list[str], _Token | None]:
        """The texts that a sum may be, and its first literal."""
        operands: list[list[_Token]] = [[]]
        for item in items:
            if item.kind == "sign" and item.sign in ("+", "<<"):
                operands.append([])
            else:
                operands[-1].append(item)
        texts, first = [""], None
        is_stream = any(item.kind == "sign" and item.sign == "<<" for item in items)
        for operand in operands:
            values, literal = self._operand(operand)
            if is_stream and operand is operands[0] and not literal:
                values = [""]
            texts = [before + behind for before, behind in product(texts, values)]
            first = first or literal
        return texts, first

    def _operand(self, operand: list[_Token]) -> tuple[list[str], _Token | None]:
        if operand and operand[0].kind == "gap" and len(operand) > 1:
            values, literal = self._operand(operand[1:])
            return [GAP + each for each in values], literal
        if operand and all(item.kind == "text" for item in operand):
            return ["".join(item.text for item in operand)], operand[0]
        group = operand[-1] if operand and operand[-1].kind == "group" and operand[-1].sign in "({" else None
        names = [item.sign for item in operand[:-1] if item.kind == "name"]
        signs = {item.sign for item in operand[:-1] if item.kind != "name"}
        if group and signs <= {"::"} and (not names or names[-1] in WRAPPERS):
            return self._alternatives(group)
        for place, item in enumerate(operand):
            if item.kind == "group":
                before = operand[place - 1] if place and operand[place - 1].kind == "name" else None
                # Behind the name of a type it is a variable or a class of that name.
                is_declared = place > 1 and operand[place - 2].kind == "name"
                self._call(before.sign if before and not is_declared else "", item)
            elif item.kind == "text" and has_words(squeezed(item.text), 2):
                self._add(item, squeezed(item.text))
        return [GAP], None

    def _alternatives(self, group: _Token) -> tuple[list[str], _Token | None]:
        """What a bracket stands for: both sides of its conditional, if it has one."""
        items = group.items or []
        if any(item.sign in (",", ";") for item in items):
            self._walk(items)
            return [GAP], None
        question = next((place for place, item in enumerate(items) if item.kind == "sign" and item.sign == "?"), None)
        if question is not None:
            self._walk(items[:question])
            items = items[question + 1:]
        texts, first = [], None
        for arm in self._arms(items):
            values, literal = self._sum(arm)
            texts += values
            first = first or literal
        return texts or [""], first

    def _call(self, callee: str, group: _Token) -> None:
        if callee in NO_MESSAGES:
            return
        items = group.items or []
        if callee in LOCALIZED:
            before = len(self.found)
            self._walk(items, 4)
            self.found[before:] = [each for each in self.found[before:] if (each.text or "").endswith(".")]
            return
        if callee not in SINKS or not items:
            self._walk(items)
            return
        commas = [place for place, item in enumerate(items) if item.kind == "sign" and item.sign == ","]
        argument, rest = (items[:commas[0]], items[commas[0] + 1:]) if commas else (items, [])
        before = len(self.found)
        question = next((place for place, item in enumerate(argument) if item.kind == "sign" and item.sign == "?"), -1)
        self._walk(argument[question + 1:], 1)
        if len(self.found) == before and not self._is_known(argument):
            self._add(group, None, squeezed(callee + self.source[group.start:group.end]))
        self._walk(argument[:max(question, 0)])
        self._walk(rest)

    def _is_known(self, argument: list[_Token]) -> bool:
        """Whether it is what was made elsewhere, a declaration's parameter, or is made of a literal in this very file."""
        written = self.source[argument[0].start:argument[-1].end]
        if re.fullmatch(r"\w+", written) and re.search(rf"\b{written}\s*(?:=|\(|{{)\s*\"", self.source):
            return True
        return HANDED_ON.fullmatch(written) is not None or PARAMETER.fullmatch(written) is not None


def of_cpp(path: str, source: str) -> list[Message]:
    return _Cpp(path, source).found


# --- TypeScript and JavaScript ---

_JS_PLAIN = re.compile(r"""//[^\n]*|/\*.*?\*/|'((?:[^'\\\n]|\\.)*)'|"((?:[^"\\\n]|\\.)*)"|`|[{}]""", re.S)
_JS_TOLD = re.compile(r"(?:\.say|\.tell|console\.error|Error|error:|trouble =)\s*\(?\s*$")
_SENTENCE = re.compile(r"[A-Z“].*[.?!…]|….*[.?!]", re.S)


class _Js:
    """Texts that are sentences, and those that are given to what tells trouble; in HTML, what stands between tags."""

    def __init__(self, path: str, source: str) -> None:
        self.path, self.source, self.found = path, source, []
        self.takes_all = "/words/" in path
        self._code(0, len(source))

    def _code(self, place: int, end: int, until: str | None = None) -> int:
        """Goes through code up to the brace that closes it; gives the place behind."""
        depth = 0
        while match := _JS_PLAIN.search(self.source, place, end):
            sign = match[0]
            place = match.end()
            if sign == "`":
                place = self._template(match.start())
            elif sign == "{":
                depth += 1
            elif sign == "}":
                if depth == 0 and until:
                    return place
                depth -= 1
            elif sign[0] in "'\"":
                self._tell(match.start(), re.sub(r"\\(.)", r"\1", match[1] or match[2] or ""))
        return end

    def _template(self, start: int) -> int:
        text, place = "", start + 1
        while place < len(self.source) and self.source[place] != "`":
            if self.source[place] == "\\":
                text += " " if self.source[place + 1] == "n" else self.source[place + 1]
                place += 2
            elif self.source.startswith("${", place):
                text += GAP
                place = self._code(place + 2, len(self.source), "}")
            else:
                text += self.source[place]
                place += 1
        if place >= len(self.source):
            # The search lost its way, by a pattern with such a sign perhaps.
            self.found.append(Message(self.path, self.source.count("\n", 0, start) + 1, None, "a template that does not end"))
        if re.search(r"\b(?:html|svg)$", self.source[max(0, start - 5):start]):
            for part in re.split(r"<[^<>]*>", text):
                if _SENTENCE.fullmatch(squeezed(part)):
                    self._tell(start, part)
        else:
            self._tell(start, text)
        return place + 1

    def _tell(self, start: int, text: str) -> None:
        before = self.source[max(0, start - 60):start]
        text = squeezed(re.sub(r"\{\w+\}", GAP, text) if "/words/" in self.path else text)
        if has_words(text, 2) and (self.takes_all or _SENTENCE.fullmatch(text) or _JS_TOLD.search(before)):
            self.found.append(Message(self.path, self.source.count("\n", 0, start) + 1, text))


def of_javascript(path: str, source: str) -> list[Message]:
    return _Js(path, source).found


# --- scripts ---

_SHELL_TOLD = re.compile(r"""(?:^|[;&|{(]\s*|\s)(say|echo|want_package)[ ]+(?:"((?:[^"\\]|\\.)*)"|'([^']*)'|([^\s;&|}>)][^\n;&|}>]*))""")
_SHELL_MADE = re.compile(r"\$\((?:[^()]|\([^()]*\))*\)|\$\{[^{}]*\}|\$\w+|\$[#?*@!-]")


def of_shell(path: str, source: str) -> list[Message]:
    found = []
    for number, line in enumerate(source.splitlines(), 1):
        if line.lstrip().startswith("#"):
            continue
        # First what is put in at run time, which may have quotes of its own.
        for match in _SHELL_TOLD.finditer(_SHELL_MADE.sub(GAP, line)):
            double, single, bare = match[2], match[3], match[4]
            if bare is not None and bare[0].isalpha():
                double = bare
            text = single if single is not None else double
            if text is None:
                found.append(Message(path, number, None, line.strip()))
                continue
            text = squeezed(text)
            if has_words(text, 1):
                found.append(Message(path, number, text))
    return found


def of_cmake(path: str, source: str) -> list[Message]:
    return [Message(path, source.count("\n", 0, match.start()) + 1,
                    squeezed(re.sub(r"\$\{\w+\}", GAP, re.sub(r"\\(.)", r"\1", match[1]))))
            for match in re.finditer(r"message\(\s*(?:FATAL_ERROR|SEND_ERROR|WARNING|STATUS)\s+\"((?:[^\"\\]|\\.)*)\"", source)]


def _python_text(value: ast.expr) -> str | None:
    if isinstance(value, ast.Constant) and isinstance(value.value, str):
        return value.value
    if isinstance(value, ast.JoinedStr):
        return "".join(_python_text(part) or GAP for part in value.values)
    if isinstance(value, ast.BinOp) and isinstance(value.op, ast.Add):
        return (_python_text(value.left) or GAP) + (_python_text(value.right) or GAP)
    return None


def of_python(path: str, source: str) -> list[Message]:
    """What a program says on standard error, ends with, or raises."""
    found = []
    for node in ast.walk(ast.parse(source)):
        if not isinstance(node, ast.Call) or not node.args:
            continue
        name = node.func.attr if isinstance(node.func, ast.Attribute) else getattr(node.func, "id", "")
        is_told = (name in ("exit", "SystemExit", "error") or name.endswith("Error")
                   or name == "print" and any(each.arg == "file" for each in node.keywords))
        if not is_told or isinstance(node.args[0], ast.Constant) and isinstance(node.args[0].value, int):
            continue
        text = _python_text(node.args[0])
        found.append(Message(path, node.lineno, None, ast.unparse(node)) if text is None else
                     Message(path, node.lineno, squeezed(text)))
    return found


def of_file(path: str, source: str) -> list[Message]:
    """The messages of a file, by what it is."""
    if path.endswith((".cpp", ".h")):
        return of_cpp(path, source)
    if path.endswith((".ts", ".mjs", ".js")):
        return of_javascript(path, source)
    if path.endswith(("CMakeLists.txt", ".cmake")):
        return of_cmake(path, source)
    interpreter = re.match(r"#!.*?(python|sh\b)|", source)
    if path.endswith(".py") or interpreter[1] == "python":
        return of_python(path, source)
    if path.endswith(".sh") or interpreter[1]:
        return of_shell(path, source)
    return []
