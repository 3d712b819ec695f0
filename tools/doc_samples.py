#!/usr/bin/env python3
"""doc_samples.py FOLDER PAGE...: makes tests of the C++ samples in Markdown pages.

Writes into FOLDER a source for each page that has samples, and one for each sample that is a whole
program, and prints the paths of all of them. Each run of samples that belong together is one test.
Diagnostics of the compiler and failed expectations name the page and its line. CONTRIBUTING.md
describes the comments that say how a sample is meant.
"""
import pathlib
import re
import sys
from dataclasses import dataclass, field

COMMENT = re.compile(r"\s*<!-- sample: *(.*)$")
FENCE = re.compile(r"(\s*)```(\S*)\s*$")
INCLUDE = re.compile(r"#include .*\n")
MAIN = re.compile(r"^int main\((.*)\)", re.MULTILINE)
ROW = re.compile(r"\|[^`|]*\| `(.*?[^\\])`")  # the code in the second cell
MARK = re.compile(r"continues|declares|rows|output|given:|fails error[.\w]+|not compiled: .+")


class PageError(Exception):
    pass


@dataclass
class Sample:
    line: int  # of the first line of the code, from 1
    code: str
    marks: list
    given: str = ""  # code of the comment, which readers do not see
    given_line: int = 0
    output: str | None = None  # of the text block that follows
    output_line: int = 0

    def mark(self, word):
        """What follows `word` in its mark; None without such a mark."""
        return next((mark[len(word):].strip() for mark in self.marks if mark.startswith(word)), None)

    def is_program(self):
        return MAIN.search(self.code) is not None

    def parameters(self):
        """Those of the program's `main`."""
        return MAIN.search(self.code)[1]


@dataclass
class Page:
    path: str
    samples: list = field(default_factory=list)

    def name(self):
        return re.sub(r"\W", "_", self.path.removeprefix("docs/").removesuffix(".md"))

    def fail(self, line, message):
        raise PageError(f"{self.path}:{line}: {message}")


class PageReader:
    """Takes one page apart: its samples, the comments before them and the outputs after them."""

    def __init__(self, path):
        self.page = Page(path)
        self.lines = pathlib.Path(path).read_text(encoding="utf-8").splitlines()
        self.next = 0
        self.marks, self.marks_line = [], 0
        self.given, self.given_line = "", 0

    def until(self, end, start):
        """The lines before the one that matches `end`, which is passed too."""
        first = self.next
        while self.next < len(self.lines) and not re.match(end, self.lines[self.next]):
            self.next += 1
        if self.next == len(self.lines):
            self.page.fail(start, "what begins here does not end")
        self.next += 1
        return self.lines[first:self.next - 1]

    def read_comment(self, text):
        if self.marks:
            self.page.fail(self.marks_line, "no sample follows this comment")
        self.marks_line = self.next
        if text.endswith("-->"):
            text = text.removesuffix("-->")
        else:
            self.given_line = self.next + 1
            self.given = "\n".join(self.until(r"\s*-->", self.next)) + "\n"
        self.marks = [mark.strip() for mark in text.split(";")]
        for mark in self.marks:
            if not MARK.fullmatch(mark):
                self.page.fail(self.marks_line, f"'{mark}' is no mark of a sample")
        if (self.marks[-1] == "given:") != (self.given != ""):
            self.page.fail(self.marks_line, "code follows 'given:', and only that")

    def read_block(self, indent, language):
        line = self.next + 1
        block = self.until(rf"{indent}```\s*$", self.next)
        text = "".join(row.removeprefix(indent) + "\n" for row in block)
        samples = self.page.samples
        if language == "cpp":
            if "continues" in self.marks and (not samples or samples[-1].is_program()):
                self.page.fail(line, "there are no statements to continue")
            samples.append(Sample(line, text, self.marks, self.given, self.given_line))
        elif self.marks == ["output"] and language == "text" and samples:
            samples[-1].output, samples[-1].output_line = text, line
        elif self.marks:
            self.page.fail(self.marks_line, "no sample follows this comment")
        self.marks, self.given = [], ""

    def read_rows(self):
        """A table as one sample, with a scope for each row."""
        line, code = self.next, ""
        self.next -= 1
        while self.next < len(self.lines) and self.lines[self.next].startswith("|"):
            match = ROW.match(self.lines[self.next])
            code += f"{{ {match.group(1)}; }}\n".replace("\\|", "|") if match else "\n"
            self.next += 1
        self.page.samples.append(Sample(line, code, self.marks, self.given, self.given_line))
        self.marks, self.given = [], ""

    def read(self):
        while self.next < len(self.lines):
            row = self.lines[self.next]
            self.next += 1
            if match := COMMENT.match(row):
                self.read_comment(match.group(1))
            elif match := FENCE.match(row):
                self.read_block(match.group(1), match.group(2))
            elif "rows" in self.marks and row.startswith("|"):
                self.read_rows()
            elif self.marks and row.strip():
                self.page.fail(self.marks_line, "no sample follows this comment")
        if self.marks:
            self.page.fail(self.marks_line, "no sample follows this comment")
        self.page.samples = [sample for sample in self.page.samples
                             if sample.mark("not compiled:") is None]
        return self.page


def at(page, line, code):
    return f'#line {line} "{page.path}"\n{code}'


def body(page, sample):
    """The sample as statements of a test."""
    code = at(page, sample.given_line, sample.given) if sample.given else ""
    code += at(page, sample.line, sample.code)
    last = sample.line + sample.code.count("\n") - 1
    error = sample.mark("fails ")
    if error is not None:
        missing = at(page, last, f'ADD_FAILURE() << "this sample does not fail";\n')
        code = f'try {{\n{code}{missing}}} catch (vxcore::ErrorException const & e) {{\n'
        code += at(page, last, f'EXPECT_STREQ(output.code_of(e), "{error}");\n}}\n')
    if sample.output is not None:
        code = f"output.take();\n{code}"  # what samples before this one wrote
        code += at(page, sample.output_line, f'EXPECT_EQ(output.take(), doc_samples::trimmed(R"__({sample.output})__"));\n')
    return code


def test(page, run):
    """One test of samples that continue one another, in a namespace with what they declare."""
    declared = "".join(at(page, s.line, s.code) for s in run if s.mark("declares") is not None)
    statements = "".join(body(page, s) for s in run if s.mark("declares") is None)
    if not statements:
        return f"namespace line_{run[0].line} {{\n{declared}}}\n"
    return (f"namespace line_{run[0].line} {{\n{declared}"
            f"TEST({page.name()}, line_{run[0].line}) {{\ndoc_samples::Output output;\n{statements}}}\n}}\n")


def program(page, sample):
    """The source of a whole program, which includes nothing but what it names."""
    end = max(match.end() for match in INCLUDE.finditer(sample.code))
    head, rest = sample.code[:end], sample.code[end:].rstrip()
    # Only a `main` may leave out to return 0.
    if re.search(r"^int main\(.*\) try", rest, re.MULTILINE):
        rest = re.sub(r"^} catch", "return 0; } catch", rest, count=1, flags=re.MULTILINE)
    else:
        rest = rest.removesuffix("}") + "return 0; }"
    rest = MAIN.sub(r"int run(\1)", rest)
    declaration = f"int run({sample.parameters()});"
    return (at(page, sample.line, head) + f"namespace {page.name()}_{sample.line} {{\n{declaration}\n"
            + at(page, sample.line + head.count("\n"), rest) + "\n}\n")


def program_test(page, sample):
    name = f"{page.name()}_{sample.line}"
    arguments = "1, doc_samples::arguments" if sample.parameters() else ""
    call = Sample(sample.line, f"EXPECT_EQ({name}::run({arguments}), 0);\n", sample.marks,
                  output=sample.output, output_line=sample.output_line)
    return f"namespace {name} {{ int run({sample.parameters()}); }}\n" + test(page, [call])


def sources(page):
    """Name and text of each source of a page."""
    runs = []
    for sample in page.samples:
        if "continues" in sample.marks and runs:
            runs[-1].append(sample)
        else:
            runs.append([sample])
    tests = ""
    for run in runs:
        if run[0].is_program():
            yield f"{page.name()}_{run[0].line}.program.cpp", program(page, run[0])
            tests += program_test(page, run[0])
        else:
            tests += f"namespace {page.name()} {{\nusing namespace vxattribute;\n{test(page, run)}}}\n"
    includes = INCLUDE.findall(tests)
    if tests:
        yield f"{page.name()}.cpp", ('#include "docs/doc_samples.h"\n' + "".join(includes)
                                     + INCLUDE.sub("\n", tests))


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    stale = set(folder.glob("*.cpp"))
    for path in sys.argv[2:]:
        try:
            page = PageReader(path).read()
        except PageError as error:
            print(error, file=sys.stderr)
            return 1
        for name, text in sources(page):
            file = folder / name
            if file not in stale or file.read_text(encoding="utf-8") != text:
                file.write_text(text, encoding="utf-8")
            stale.discard(file)
            print(file)
    for file in stale:
        file.unlink()
    return 0


if __name__ == "__main__":
    sys.exit(main())
