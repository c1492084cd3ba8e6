"""Behaviour kept on purpose: comments, the page docs/kept-behaviour.md and the tests agree.

A comment reads

    // KEPT: <what looks wrong>. <Why it stays.>
    // Pinned by <Suite>.<Test>

and the page has a row for each: | behaviour | `file` | `Suite.Test` |. Every comment has its row, every row its
comment, and every test named exists. Rows and comments are matched by file and test.

With --rows it prints the rows that the comments call for instead, for pasting into the page.
"""

import re
import sys

import tree

PAGE = "docs/kept-behaviour.md"
TEST = r"[A-Za-z]\w*\.[A-Za-z]\w*"


def comments():
    """(file, line, test or None, what the comment says) of each comment."""
    for name in tree.files(".h", ".cpp", under=("include/", "src/", "platform/", "examples/")):
        lines = tree.read(name).split("\n")
        for number, line in enumerate(lines):
            if not re.search(r"//+ ?KEPT\b", line):
                continue
            if not re.search(r"// KEPT: \S|/// KEPT: \S", line):
                yield name, number + 1, None, ""
                continue
            # The comment goes on as long as lines do that are comments and not the next one of its kind.
            block = [line]
            for following in lines[number + 1:]:
                if not re.match(r"\s*//", following) or re.search(r"//+ ?KEPT\b", following):
                    break
                block.append(following)
            text = " ".join(re.sub(r"^.*?//+<? ?", "", part) for part in block)
            pinned = re.findall(rf"Pinned by ({TEST}(?:(?:,| and) {TEST})*)", text)
            what = re.sub(r"\s*Pinned by.*", "", text.removeprefix("KEPT: ")).strip()
            for test in re.findall(TEST, " ".join(pinned)) or [None]:
                yield name, number + 1, test, what


def rows():
    """(file, test, line) of each row of the page."""
    for number, line in enumerate(tree.read(PAGE).split("\n")):
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if not line.startswith("|") or len(cells) != 3 or cells[0] == "Behaviour" or set(cells[0]) <= set("-: "):
            continue
        for test in re.findall(r"`([^`]+)`", cells[2]) or [""]:
            yield cells[1].strip("`"), test, number + 1


def tests():
    """The names of all tests, as Suite.Test."""
    found = set()
    for name in tree.files(".cpp", under=("tests/", "examples/")):
        pattern = r"\b(?:TYPED_)?TEST(?:_[FP])?\(\s*(\w+)\s*,\s*(\w+)\s*\)"
        found.update(f"{suite}.{test}" for suite, test in re.findall(pattern, tree.read(name)))
    return found


def print_rows():
    for name, _, test, what in comments():
        print(f"| {what.replace('|', chr(92) + '|')} | `{name}` | `{test}` |")


def main():
    problems = []
    written = set()
    for name, line, test, _ in comments():
        if test is None:
            problems.append(f"{name}:{line}: the comment does not end with 'Pinned by Suite.Test'")
        else:
            written.add((name, test))
    listed = {}
    for name, test, line in rows():
        if (name, test) in listed:
            problems.append(f"{PAGE}:{line}: listed twice: {name}, {test}")
        listed[(name, test)] = line
    existing = tests()

    for name, test in sorted(written - listed.keys()):
        problems.append(f"{name}: kept behaviour pinned by {test} has no row in {PAGE}")
    for (name, test), line in sorted(listed.items()):
        if (name, test) not in written:
            problems.append(f"{PAGE}:{line}: no comment in {name} is pinned by {test}")
    for test in sorted({test for _, test in written | listed.keys()} - existing):
        problems.append(f"no such test: {test}")
    tree.finish(f"{len(written)} kept behaviours", problems)


if sys.argv[1:] == ["--rows"]:
    print_rows()
else:
    main()
