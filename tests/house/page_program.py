"""The programs that the pages show.

    page_program.py extract <page> <source>    joins the C++ of a page into one program, with the lines of the page
    page_program.py check <page> <program> [<language>]

`check` runs the program in a folder of its own, and compares what it prints with the blocks of that language (text, if
none is named) that the page shows; in a page that has C++, only those that come after some.
"""

import difflib
import pathlib
import re
import subprocess
import sys
import tempfile

BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def blocks(page):
    """Language, text, and number of the first line of each block of a page."""
    text = pathlib.Path(page).read_text(encoding="utf-8")
    return [(match[1], match[2], text.count("\n", 0, match.start()) + 2) for match in BLOCK.finditer(text)]


def extract(page, source):
    """Compilers then tell errors by the lines of the page."""
    parts = [f'#line {line} "{page}"\n{code}' for language, code, line in blocks(page) if language == "cpp"]
    if not parts:
        sys.exit(f"{page}: no program")
    pathlib.Path(source).write_text("".join(parts), encoding="utf-8")


def check(page, program, wanted="text"):
    """Status 0 when the program ends well and prints what the page shows."""
    shown = blocks(page)
    first = next((i for i, block in enumerate(shown) if block[0] == "cpp"), 0)
    expected = "".join(text for language, text, _ in shown[first:] if language == wanted)
    if not expected:
        sys.exit(f"{page}: shows nothing that a program prints")
    with tempfile.TemporaryDirectory() as folder:
        run = subprocess.run([pathlib.Path(program).resolve()], cwd=folder, capture_output=True, check=False)
    printed = run.stdout.decode("utf-8", "replace")
    if run.returncode != 0:
        sys.exit(f"the program of {page} ends with status {run.returncode}: {run.stderr.decode('utf-8', 'replace')}")
    if printed != expected:
        difference = difflib.unified_diff(expected.splitlines(True), printed.splitlines(True), page, "what is printed")
        sys.exit("".join(difference))


{"extract": extract, "check": check}[sys.argv[1]](*sys.argv[2:])
