"""What the printers of the styles libraries read from memory, and what they say where that fails."""

import functools
import re

import gdb

MOST_ELEMENTS = 1 << 20  # where gdb itself knows no limit
DEEPEST_TREE = 128


class Unreadable(Exception):
    """What stands in memory is no object of its type."""


def guarded(function):
    """Makes what goes wrong the answer: a printer that raises hides everything around its value."""

    @functools.wraps(function)
    def answer(*arguments):
        try:
            return function(*arguments)
        except Unreadable as problem:
            return f"<{problem}>"
        except (gdb.error, RuntimeError, ValueError, TypeError, OverflowError) as problem:
            return f"<cannot be read: {str(problem).rstrip('.')}>"

    return answer


def guarded_children(function):
    """The same for the elements of a value: those before the problem are shown."""

    @functools.wraps(function)
    def answer(self):
        try:
            yield from function(self)
        except Unreadable as problem:
            yield "<corrupt>", f"<{problem}>"
        except (gdb.error, RuntimeError, ValueError, TypeError, OverflowError) as problem:
            yield "<corrupt>", f"<cannot be read: {str(problem).rstrip('.')}>"

    return answer


def limit():
    return gdb.parameter("print elements") or MOST_ELEMENTS


def basic(type_):
    if type_.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        type_ = type_.target()
    return type_.unqualified().strip_typedefs()


def pointer_at(address):
    return int(gdb.Value(address).cast(gdb.lookup_type("void").pointer().pointer()).dereference())


def object_at(address, type_):
    return gdb.Value(int(address)).cast(type_.pointer()).dereference()


def symbol_at(address):
    """The name of what stands at an address of the program's images; empty when nothing does."""
    found = gdb.execute(f"info symbol {int(address)}", to_string=True)
    return re.split(r" \+ \d+| in section ", found)[0].strip() if " in section " in found else ""


def quoted(text, is_cut=False):
    """The text as a line of characters that the terminal has."""
    short = {"\n": "\\n", "\r": "\\r", "\t": "\\t", '"': '\\"', "\\": "\\\\"}
    shown = ""
    for character in text:
        if character in short:
            shown += short[character]
        elif character.isprintable() and is_printable_here(character):
            shown += character
        else:
            shown += f"\\u{{{ord(character):X}}}"
    return f'"{shown}"' + ("..." if is_cut else "")


def is_printable_here(character):
    try:
        return bool(character.encode(gdb.host_charset()) and character.encode(gdb.target_charset()))
    except (UnicodeEncodeError, LookupError):
        return False


def text_of(string):
    """The text of a string, and whether it was cut."""
    unit = basic(string.type).template_argument(0).sizeof
    start = int(string["m_text"])
    if start == 0:
        return "", False
    word = gdb.lookup_type("void").pointer().sizeof
    references, size, capacity = (pointer_at(start - back * word) for back in (3, 2, 1))
    if references == 0 or size > capacity or capacity >= 1 << (8 * word - 2):
        raise Unreadable(f"no text at {start:#x}")
    shown = min(size, limit())
    units = bytes(gdb.selected_inferior().read_memory(start, shown * unit)) if shown else b""
    encoding = {1: "utf-8", 2: "utf-16-le", 4: "utf-32-le"}[unit]
    return units.decode(encoding, "replace" if unit == 1 else "surrogatepass"), shown < size


def key_text(key):
    pooled = key["m_text"]
    if int(pooled) == 0:
        raise Unreadable("no key")
    return text_of(pooled.dereference())


def map_items(tree):
    """The keys and values of a std::map, in order."""
    type_ = basic(tree.type)
    key_type, value_type = type_.template_argument(0), type_.template_argument(1)
    root = tree["_M_t"]["_M_impl"]
    header, count = root["_M_header"], int(root["_M_node_count"])
    align = max(key_type.alignof, value_type.alignof)
    to_key = round_up(basic(header.type).sizeof, align)
    to_value = to_key + round_up(key_type.sizeof, value_type.alignof)
    node = header["_M_left"]
    for _ in range(min(count, limit())):
        if int(node) == 0:
            raise Unreadable("the tree ends early")
        yield object_at(int(node) + to_key, key_type), object_at(int(node) + to_value, value_type)
        node = next_node(node)


def round_up(offset, align):
    return (offset + align - 1) // align * align


def next_node(node):
    steps = 0
    right = node["_M_right"]
    if int(right) != 0:
        node = right
        while int(node["_M_left"]) != 0 and steps < DEEPEST_TREE:
            node, steps = node["_M_left"], steps + 1
        return node
    above = node["_M_parent"]
    while int(above) != 0 and int(above["_M_right"]) == int(node) and steps < DEEPEST_TREE:
        node, above, steps = above, above["_M_parent"], steps + 1
    return above


def vector_items(vector, element):
    """How many elements a std::vector has, and those to be shown."""
    implementation = vector["_M_impl"]
    begin, end = int(implementation["_M_start"]), int(implementation["_M_finish"])
    count, rest = divmod(end - begin, element.sizeof)
    if count < 0 or rest != 0 or (begin == 0 and end != 0):
        raise Unreadable("no list")
    return count, (object_at(begin + index * element.sizeof, element) for index in range(min(count, limit())))
