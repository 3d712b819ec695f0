#!/usr/bin/env python3
"""doc_check.py ROOT: checks what the pages of a source tree refer to.

- A relative link in a Markdown page leads to a file, and its fragment to a heading there.
- README.md links to every page of docs, but for the decisions.
- A page named in a source, as in "see docs/guide/json.md", exists.
- docs/guide/errors.md lists the error codes that the libraries define, and no others.
"""
import pathlib
import re
import sys

FENCED = re.compile(r"^( *)```.*?^\1```", re.DOTALL | re.MULTILINE)
INLINE_CODE = re.compile(r"`[^`\n]*`")
LINK = re.compile(r"\[[^]]*\]\(([^)\s]+)\)|^\[[^]]+\]: *(\S+)", re.MULTILINE)
HEADING = re.compile(r"^#+ +(.*?) *$", re.MULTILINE)
MENTION = re.compile(r"\bdocs/[\w/.-]+\.md\b")
SOURCES = (".h", ".cpp", ".inc", ".py", ".txt", ".cmake")
CODE = re.compile(r'"(error\.vx[\w.]+)"')


def blanked(pattern, text):
    """The text without matches of `pattern`; lines stay where they are."""
    return pattern.sub(lambda match: "\n" * match.group().count("\n"), text)


def anchors(page):
    """The fragments of the headings of a page, as GitHub makes them."""
    seen = {}
    for heading in HEADING.findall(blanked(FENCED, page.read_text(encoding="utf-8"))):
        heading = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading)
        anchor = re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")
        count = seen[anchor] = seen.get(anchor, -1) + 1
        yield f"{anchor}-{count}" if count else anchor


def broken_links(page):
    text = page.read_text(encoding="utf-8")
    text = blanked(INLINE_CODE, blanked(FENCED, text))
    for match in LINK.finditer(text):
        link = match.group(1) or match.group(2)
        if re.match(r"[a-z]+:", link):
            continue
        path, _, fragment = link.partition("#")
        target = page.parent / path if path else page
        if not target.exists():
            problem = "leads to no file"
        elif fragment and fragment not in anchors(target):
            problem = "leads to no heading"
        else:
            continue
        yield text.count("\n", 0, match.start()) + 1, f"the link {link} {problem}"


def broken_mentions(root, source):
    text = source.read_text(encoding="utf-8", errors="replace")
    for match in MENTION.finditer(text):
        if not (root / match.group()).exists():
            yield text.count("\n", 0, match.start()) + 1, f"there is no {match.group()}"


def wrong_codes(root):
    defined = {code for source in (root / "int/src").rglob("*.cpp")
               for code in CODE.findall(source.read_text(encoding="utf-8"))}
    page = root / "docs/guide/errors.md"
    table = page.read_text(encoding="utf-8").partition("\n## All codes\n")[2]
    listed = set(re.findall(r"`(error\.[\w.]+)`", table))
    for code in sorted(defined - listed):
        yield f"{page.relative_to(root)}: {code} is missing"
    for code in sorted(listed - defined):
        yield f"{page.relative_to(root)}: no library defines {code}"


def unlinked_pages(root):
    readme = (root / "README.md").read_text(encoding="utf-8")
    for page in sorted((root / "docs").rglob("*.md")):
        path = page.relative_to(root).as_posix()
        if page.parent.name != "decisions" and f"({path}" not in readme:
            yield f"README.md: there is no link to {path}"


def files(folder):
    """All files below, without what is built or hidden."""
    for path in sorted(folder.iterdir()):
        if path.name.startswith(".") or path.name == "build":
            continue
        if path.is_dir():
            yield from files(path)
        else:
            yield path


def main():
    root = pathlib.Path(sys.argv[1])
    problems = [*wrong_codes(root), *unlinked_pages(root)]
    for path in files(root):
        found = []
        if path.suffix == ".md":
            found = broken_links(path)
        elif path.suffix in SOURCES:
            found = broken_mentions(root, path)
        problems += [f"{path.relative_to(root)}:{line}: {what}" for line, what in found]
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
