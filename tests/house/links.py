"""The links between the pages lead somewhere: to a file of the tree, and to a heading that is there."""

import posixpath
import re

import tree

LINK = re.compile(r"\]\(([^)\s]+)\)")
CODE = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)


def anchor(heading):
    """What a heading is linked by."""
    return re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")


def prose(name):
    return CODE.sub("", tree.read(name))


def anchors(name):
    return {anchor(heading) for heading in re.findall(r"^#+ (.*)$", prose(name), re.MULTILINE)}


def main():
    problems = []
    for name in tree.files(".md"):
        for link in LINK.findall(prose(name)):
            if re.match(r"[a-z]+:", link):
                continue
            path, _, heading = link.partition("#")
            target = posixpath.normpath(posixpath.join(posixpath.dirname(name), path)) if path else name
            if not (tree.ROOT / target).exists():
                problems.append(f"{name}: there is no {target}")
            elif heading and heading not in anchors(target):
                problems.append(f"{name}: there is no heading for {link}")
    tree.finish("links", problems)


main()
