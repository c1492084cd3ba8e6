"""debugging/styles.natvis is well-formed, and every type and every member that it names stands in a header."""

import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "house"))
import tree  # noqa: E402

SCHEMA = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
ELEMENTS = {"DisplayString", "StringView", "Expand", "Item", "ExpandedItem"}
LANGUAGE = {"nullptr"}
HEADERS = {name: re.sub(r"//.*", "", tree.read(name))
           for name in tree.files(".h", under=("include/", "platform/include/"))}


def declaring(name):
    """The text of the header that defines the class of this whole name; empty when none does."""
    *outer, own = name.split("::")
    for text in HEADERS.values():
        namespaces = "::".join(re.findall(r"^namespace ([\w:]+)$", text, re.MULTILINE))
        nested = rf"\b(class|struct)( \w+)* ({outer[-1]}::)?{own}\b(<[^;{{]*>)?( final)?( : [^;{{]*)?\s*\{{"
        enclosing_is_here = all(re.search(rf"\b{part}\b", namespaces) or re.search(rf"\bclass( \w+)* {part}\b", text)
                                for part in outer)
        if enclosing_is_here and re.search(nested, text):
            return text
    return ""


def expressions(element):
    """What the debugger is to work out for an element."""
    text = element.text or ""
    yield from re.findall(r"\{([^}]*)\}", text) if element.tag == SCHEMA + "DisplayString" else [text]
    yield element.get("Condition", "")


def check(element, text):
    for expression in expressions(element):
        expression = re.sub(r"\]s[u8]$", "]", expression.strip())
        for type_ in re.findall(r"\(([\w:]+)\*\)", expression):
            named = declaring(type_)
            if not named:
                yield f"no header defines {type_}"
            text += named
            expression = expression.replace(type_, "")
        for word in set(re.findall(r"[A-Za-z_]\w*", expression)) - LANGUAGE:
            # Members of the class, or of one that a member points to.
            known = text if re.search(rf"\b{word}\b", text) else "".join(HEADERS.values())
            if not re.search(rf"\b{word}(;| = | *\{{|\[|\)?\(|, )", known):
                yield f"no header declares {word}"


def main():
    page = ElementTree.parse(tree.ROOT / "debugging/styles.natvis").getroot()
    problems = []
    types = page.findall(SCHEMA + "Type")
    if len(types) != len(list(page)) or not types:
        problems.append("there is something that is no Type")
    for type_ in types:
        name = type_.get("Name")
        text = declaring(re.sub("<.*", "", name))
        if not text:
            problems.append(f"{name}: no header defines it")
        for element in list(type_.iter())[1:]:
            if element.tag.removeprefix(SCHEMA) not in ELEMENTS:
                problems.append(f"{name}: unknown element {element.tag}")
            problems += [f"{name}: {problem}" for problem in check(element, text)]
    tree.finish(f"natvis, {len(types)} types", problems)


main()
