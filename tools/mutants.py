"""Mutants of C++ sources: each is one small change that a good test should notice.

The operators work on tokens, not on a syntax tree: they rely on the layout of clang-format, which
puts blanks around binary operators and none inside template brackets. A change that makes no sense
does not compile, and costs no more than that.
"""

import re
from dataclasses import dataclass

# Text that is never changed: comments, literals, preprocessor lines.
HIDDEN = re.compile("|".join((
    r"//[^\n]*",
    r"/\*.*?\*/",
    r'R"(\w*)\(.*?\)\1"',
    r'"(?:\\.|[^"\\\n])*"',
    r"(?<!\w)'(?:\\.|[^'\\\n])+'",
    r"^[ \t]*#(?:\\\n|[^\n])*",
)), re.DOTALL | re.MULTILINE)

SWAPS = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "+": "-", "-": "+",
    "&&": "||", "||": "&&", "|": "&", "^": "|", "<<": ">>", ">>": "<<", "+=": "-=", "-=": "+=",
    "|=": "&=", "^=": "|=", "%": "/",
}
BINARY = re.compile(r"(?<= )(?:" + "|".join(
    re.escape(token) for token in sorted(SWAPS, key=len, reverse=True)) + r")(?= |\n)")
STEP = re.compile(r"\+\+|--")
NUMBER = re.compile(r"(?<![\w.'])(0[xX][0-9a-fA-F']+|\d[\d']*)([uUlL]*)(?![\w.'])")
WORD = re.compile(r"\b(?:true|false)\b")
NOT = re.compile(r"!(?=[\w(])")
CONDITION = re.compile(r"\b(?:if|while) \(")
CALL = re.compile(r"(?<![\w:.>])[A-Za-z_][\w:]*(?:(?:\.|->)\w+)*\(")
RETURN = re.compile(r"\breturn ([^;{}]+);")


@dataclass(frozen=True)
class Mutant:
    start: int  # the range of the text that is replaced
    end: int
    text: str
    operator: str

    def applied(self, source):
        return source[:self.start] + self.text + source[self.end:]


def masked(source):
    """The source with blanks in place of HIDDEN text. All offsets stay the same."""
    return HIDDEN.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), source)


def closing(code, opening):
    """The offset after the parenthesis that closes the one at `opening`; None without one."""
    depth = 0
    for at in range(opening, len(code)):
        depth += (code[at] == "(") - (code[at] == ")")
        if depth == 0:
            return at + 1
    return None


def swaps(code):
    for match in BINARY.finditer(code):
        other = SWAPS[match.group()]
        yield Mutant(*match.span(), other, f"{match.group()} to {other}")
    for match in STEP.finditer(code):
        other = "--" if match.group() == "++" else "++"
        yield Mutant(*match.span(), other, f"{match.group()} to {other}")


def constants(code):
    for match in NUMBER.finditer(code):
        digits = match.group(1).replace("'", "")
        more = int(digits, 0 if digits[:2] in ("0x", "0X") else 10) + 1
        text = (hex(more) if digits[:2] in ("0x", "0X") else str(more)) + match.group(2)
        yield Mutant(*match.span(), text, "constant by one")
    for match in WORD.finditer(code):
        other = "false" if match.group() == "true" else "true"
        yield Mutant(*match.span(), other, f"{match.group()} to {other}")


def conditions(code, source):
    for match in NOT.finditer(code):
        yield Mutant(*match.span(), "", "no negation")
    for match in CONDITION.finditer(code):
        end = closing(code, match.end() - 1)
        inner = code[match.end():end - 1] if end else ";"
        # Declarations cannot be negated.
        if ";" not in inner and not re.search(r"[^=!<>]=[^=]", inner):
            inner = source[match.end():end - 1]  # with its strings
            yield Mutant(match.end() - 1, end, f"(!({inner}))", "negated condition")


def calls(code):
    for match in CALL.finditer(code):
        end = closing(code, match.end() - 1)
        before = code[:match.start()].rstrip()[-1:]
        if end and code[end:end + 1] == ";" and before in (";", "{", "}", ":", ")"):
            yield Mutant(match.start(), end, "", "no call")


def returns(code):
    for match in RETURN.finditer(code):
        if match.group(1) not in ("0", "true", "false", "nullptr", "*this"):
            yield Mutant(*match.span(1), "{}", "other return value")


def mutants_of(source):
    """All mutants of the source, in order of their places."""
    code = masked(source)
    found = (*swaps(code), *constants(code), *conditions(code, source), *calls(code),
             *returns(code))
    return sorted(found, key=lambda mutant: (mutant.start, mutant.end, mutant.operator))
