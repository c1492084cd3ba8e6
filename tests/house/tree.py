"""What the tests of the tree share: which files there are, and how a failure is told."""

import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def files(*suffixes, under=("",)):
    """The text files of the tree that have one of the suffixes (any, if none is given), sorted."""
    listed = subprocess.run(
        ["git", "-C", str(ROOT), "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        check=True, capture_output=True).stdout.decode("utf-8")
    found = []
    for name in sorted(filter(None, listed.split("\0"))):
        if suffixes and not name.endswith(suffixes):
            continue
        if any(name.startswith(folder) for folder in under) and (ROOT / name).is_file():
            found.append(name)
    return found


def read(name):
    """The text of a file, or None when it is not text."""
    try:
        return (ROOT / name).read_bytes().decode("utf-8")
    except UnicodeDecodeError:
        return None


def finish(what, problems):
    """Prints the problems and ends the test: with status 0 when there are none."""
    for problem in problems:
        print(problem)
    print(f"{what}: {len(problems)} problems")
    sys.exit(1 if problems else 0)
