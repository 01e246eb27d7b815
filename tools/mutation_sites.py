"""Finds the places of a C++ file at which tools/mutation.py breaks it, and what stands there then.

It reads tokens, not the language: some of what it proposes does not compile, and the compiler sorts
that out. It relies on the blanks that clang-format sets (a comparison has one on both sides, a
template's bracket has none)."""

import dataclasses
import re

TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\.)*)
  | (?P<string>(?:u8|[uUL])?R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|(?:u8|[uUL])?"(?:[^"\\\n]|\\.)*")
  | (?P<character>(?:u8|[uUL])?'(?:[^'\\\n]|\\.)+')
  | (?P<number>(?:0[xX][0-9a-fA-F']+|\.?\d(?:[\d.']|[eE][+-]?\d)*)[a-zA-Z_]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<mark_of_code><=>|<<=|>>=|->|::|\+\+|--|&&|\|\||[-+*/%&|^=!<>]=|<<|>>|[^\s\w])
""", re.VERBOSE | re.MULTILINE | re.DOTALL)

# A token that means this only where a blank stands on both sides of it.
INFIX = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "==": ["!="], "!=": ["=="], "&&": ["||"], "||": ["&&"],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["/"],
    "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="],
}
SWAPPED = {}
for one, other in (("x", "y"), ("width", "height"), ("left", "top"), ("right", "bottom"),
                   ("horizontal", "vertical"), ("column", "row")):
    SWAPPED[one] = other
    SWAPPED[other] = one

DECLARING = {"class", "struct", "union", "enum", "namespace"}
# What begins a statement that is no call and no assignment, or cannot go alone.
KEEPING = {"if", "for", "while", "do", "switch", "case", "default", "else", "try", "catch", "using",
           "static_assert", "const", "constexpr", "static", "auto", "public", "private", "protected",
           "class", "struct", "enum", "union", "namespace", "template", "typedef", "friend",
           "virtual", "explicit", "inline", "goto", "return", "co_return"}


@dataclasses.dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    line: int  # from 1
    start: int  # the characters that are replaced
    end: int
    replacement: str
    before: str  # the lines that change, as one, and what becomes of them
    after: str

    def apply(self, text):
        return text[:self.start] + self.replacement + text[self.end:]


def tokens_of(text):
    """The tokens without comments and preprocessor lines."""
    found = []
    for match in TOKEN.finditer(text):
        kind = match.lastgroup if match.lastgroup != "mark" else "string"
        if match.group("string") is not None:
            kind = "string"
        if kind not in ("comment", "directive"):
            found.append(Token(kind, match.group(), match.start(), match.end()))
    return found


def squeezed(text):
    return " ".join(text.split())


def mutant(file, text, start, end, replacement):
    first = text.rfind("\n", 0, start) + 1
    if replacement == ";":
        # A dropped statement is told from others like it by the line before it.
        first = text.rfind("\n", 0, max(first - 1, 0)) + 1
    last = text.find("\n", end)
    last = len(text) if last < 0 else last
    return Mutant(file, text.count("\n", 0, start) + 1, start, end, replacement,
                  squeezed(text[first:last]),
                  squeezed(text[first:start] + replacement + text[end:last]) or "(dropped)")


def other_number(text):
    """The number with another value, in the same notation."""
    match = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[\d.']+(?:[eE][+-]?\d+)?)([a-zA-Z_]*)", text)
    if not match:
        return None
    digits, suffix = match.group(1).replace("'", ""), match.group(2)
    if digits[:2] in ("0x", "0X"):
        return hex(int(digits, 16) + 1) + suffix
    if "." in digits or "e" in digits.lower():
        return repr(float(digits) + 1) + suffix
    return str(int(digits, 8 if len(digits) > 1 and digits[0] == "0" else 10) + 1) + suffix


def swapped_word(word):
    """twipsPerPixelX -> twipsPerPixelY, m_width -> m_height; None where no part has a counterpart."""
    parts = re.findall(r"[A-Z]?[a-z]+|[A-Z]+(?![a-z])|[^A-Za-z]+", word)
    for index, part in enumerate(parts):
        other = SWAPPED.get(part.lower())
        if other is None:
            continue
        if part[0].isupper():
            other = other.capitalize()
        return "".join(parts[:index] + [other] + parts[index + 1:])
    return None


def replacements(text, tokens, index):
    """What may stand in the place of one token."""
    token = tokens[index]
    if token.kind == "number":
        number = other_number(token.text)
        return [number] if number else []
    if token.kind == "character":
        return [token.text[:-2] + ("q'" if token.text[-2] != "q" else "z'")] \
            if "\\" not in token.text else []
    if token.kind == "word":
        if token.text in ("true", "false"):
            return ["false" if token.text == "true" else "true"]
        swapped = None if names_what_is_declared(text, tokens, index) else swapped_word(token.text)
        return [swapped] if swapped else []
    if token.kind != "mark_of_code":
        return []
    blank_before = text[token.start - 1:token.start].isspace()
    blank_behind = text[token.end:token.end + 1].isspace()
    if blank_before and blank_behind:
        if token.text == "+" and "string" in (tokens[index - 1].kind, tokens[index + 1].kind):
            return []  # texts know no difference
        return INFIX.get(token.text, [])
    if token.text in ("++", "--"):
        return ["--" if token.text == "++" else "++"]
    if token.text in ("!", "-") and not blank_behind:
        return [""]
    return []


def names_what_is_declared(text, tokens, index):
    """A name behind a type: with another name it is the same declaration."""
    before = tokens[index - 1] if index else None
    if before is None:
        return False
    if before.kind == "word":
        return before.text not in ("return", "case", "else", "throw", "co_return")
    return before.text in ("&", "*", ">") and not text[before.start - 1].isspace()


def opens_code(tokens, index):
    """Whether a brace opens statements, not a type's members or the values of an initialisation."""
    before = tokens[index - 1].text if index else ""
    if before in (")", "]", "{", "}", ";", "else", "do", "try", "const", "noexcept", "override", "mutable",
                  "final", ":"):
        return not declares(tokens, index)
    for back in range(index - 1, max(index - 12, 0), -1):
        if tokens[back].text in ("{", "}", ";", ","):
            return False
        if tokens[back].text == "->" and tokens[back - 1].text == ")":
            return True
    return False


def declares(tokens, index):
    for back in range(index - 1, -1, -1):
        if tokens[back].text in ("{", "}", ";", ")"):
            return False
        if tokens[back].text in DECLARING:
            return True
    return False


def drops(tokens, first):
    """Whether the statement that begins here is a call, an assignment or a jump."""
    if tokens[first].text in ("break", "continue", "throw", "++", "--"):
        return True
    if tokens[first].text == "return":
        return tokens[first + 1].text == ";"
    if tokens[first].text in KEEPING or tokens[first].kind not in ("word", "mark_of_code"):
        return False
    if tokens[first].kind == "mark_of_code" and tokens[first].text not in ("*", "(", "::"):
        return False
    # "Type name" and "Type& name" are declarations; a name behind a name is the mark of them.
    for index in range(first + 1, len(tokens)):
        text = tokens[index].text
        if text in ("(", "=", "+=", "-=", "*=", "/=", "|=", "&=", "++", "--", "["):
            return True
        if tokens[index].kind == "word" and tokens[index - 1].kind == "word" or text in ";{}<&":
            return False
    return False


def statements(tokens):
    """First and last token of each statement that may be dropped."""
    found = []
    open_marks = []  # what surrounds the token, innermost last: "code", "other"
    begins = False
    first = None
    for index, token in enumerate(tokens):
        in_code = bool(open_marks) and open_marks[-1] == "code"
        if begins and in_code and token.text not in "{};":
            if drops(tokens, index):
                first = (index, len(open_marks))
            begins = False
        if token.text == "{":
            code = opens_code(tokens, index)
            open_marks.append("code" if code else "other")
            begins = code
        elif token.text in ("(", "["):
            open_marks.append("condition" if token.text == "(" and controls(tokens, index) else "other")
        elif token.text in (")", "]", "}"):
            closed = open_marks.pop() if open_marks else ""
            begins = closed in ("code", "condition")
        elif token.text in (";", "else", "do"):
            if token.text == ";" and first and first[1] == len(open_marks):
                found.append((first[0], index))
                first = None
            begins = True
        elif token.text == ":" and in_code and labels(tokens, index):
            begins = True
    return found


def controls(tokens, index):
    before = tokens[index - 1].text if index else ""
    return before in ("if", "for", "while", "switch", "catch") or \
        before == "constexpr" and tokens[index - 2].text == "if"


def labels(tokens, index):
    for back in range(index - 1, max(index - 8, -1), -1):
        if tokens[back].text in ("case", "default"):
            return True
        if tokens[back].text in (";", "{", "}"):
            return False
    return False


def negated_conditions(tokens):
    """The brackets of conditions without a comparison, which nothing else turns round."""
    found = []
    for index, token in enumerate(tokens):
        if token.text != "(" or tokens[index - 1].text not in ("if", "while"):
            continue
        depth = 0
        for end in range(index, len(tokens)):
            depth += {"(": 1, ")": -1}.get(tokens[end].text, 0)
            if depth == 0:
                break
        inside = {inner.text for inner in tokens[index + 1:end]}
        if not inside & {"<", "<=", ">", ">=", "==", "!=", "&&", "||", "!", ";", "="}:
            found.append((token, tokens[end]))
    return found


def mutants_of(file, text):
    """Every mutant of a file, in the order of the file."""
    tokens = tokens_of(text)
    found = []
    asserted = 0  # the end of a static_assert, in which nothing can be caught at run time
    for index, token in enumerate(tokens):
        if token.text == "static_assert":
            asserted = next(t.end for t in tokens[index:] if t.text == ";")
        if token.start >= asserted:
            found += [mutant(file, text, token.start, token.end, replacement)
                      for replacement in replacements(text, tokens, index)]
    for first, last in statements(tokens):
        found.append(mutant(file, text, tokens[first].start, tokens[last].end, ";"))
    for opening, closing in negated_conditions(tokens):
        condition = text[opening.end:closing.start]
        found.append(mutant(file, text, opening.end, closing.start, f"!({condition})"))
    return sorted(found, key=lambda one: (one.start, one.end, one.replacement))
