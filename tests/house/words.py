"""The tree speaks for itself: no file refers to papers, machines or people that a reader cannot look up.

The patterns are written so that they do not match themselves.
"""

import re

import tree

WORDS = re.compile("|".join([
    r"\bPart[s]? [1-6]\.[0-9]",
    r"\bspe[c]\.md",
    r"\b[Tt]he spe[c](ification)?\b",
    r"\b[Pp]er spe[c]\b",
    r"\b[Cc]laud[e]\b",
    r"/wor[k]/",
    r"/far[m]/",
    r"/hom[e]/[a-z]",
    r"/roo[t]/",
    r"\bsub-?agent[s]?\b",
    r"\bT[O]DO\b|\bFIXM[E]\b|\bX[X]X\b",
]))


def main():
    problems = []
    for name in tree.files():
        if WORDS.search("/" + name):
            problems.append(f"{name}: the name")
        for number, line in enumerate((tree.read(name) or "").split("\n")):
            if match := WORDS.search(line):
                problems.append(f"{name}:{number + 1}: {match.group(0)}")
    tree.finish("words", problems)


main()
