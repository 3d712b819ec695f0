#!/usr/bin/env python3
"""long_functions.py FILE...: fails when a C++ function has more than 50 lines, head included.

Works on braces, and needs no more than sources that compile. A function inside another counts with
it; initialisers in braces before the body of a constructor do not count.
"""
import re
import sys

from mutants import masked

LIMIT = 50
LABELS = re.compile(r"(\s|(public|protected|private)\s*:)*")
SCOPE = re.compile(r"\b(namespace|class|struct|union|enum|extern)\b")


def is_function(head):
    """Whether `head`, the text before a brace outside functions, belongs to one."""
    bare = head
    for nested in (r"<[^<>()]*>", r"\([^()]*\)"):  # `class` may be in there
        while re.search(nested, bare):
            bare = re.sub(nested, "", bare)
    return "(" in head and not SCOPE.search(bare)


def functions(code):
    """Offsets of each function's start and end."""
    start = 0  # of what a brace belongs to
    depth = 0  # of braces inside a function
    for match in re.finditer(r"[;{}]", code):
        mark = match.group()
        if depth == 0 and mark == "{" and is_function(code[start:match.start()]):
            first = LABELS.match(code, start).end()
            depth = 1
        elif depth != 0 and mark != ";":
            depth += 1 if mark == "{" else -1
            if depth == 0:
                yield first, match.end()
        start = match.end()


def main():
    failed = False
    for path in sys.argv[1:]:
        with open(path, encoding="ascii", errors="replace") as file:
            code = masked(file.read())
        for start, end in functions(code):
            lines = code.count("\n", start, end) + 1
            if lines > LIMIT:
                print(f"{path}:{code.count(chr(10), 0, start) + 1}: a function of {lines} lines")
                failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
