"""Shows strings, keys, values, styles, sheets and JSON values of the styles libraries in gdb.

gdb loads this file by itself together with the installed shared libraries, where it is allowed to; anywhere else

    (gdb) source styles_printers.py

Nothing of the program is called, so that core files are read as well as running programs. What cannot be read is said
in angle brackets, and no printer raises. Texts and lists are cut at `set print elements`. A style inside a value is one
line, so that styles that nest in themselves end; `print $style_value(style, "fill.color")` goes further in.
"""

import pathlib
import re
import sys

import gdb
import gdb.printing

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from styles_reading import (
    Unreadable, basic, guarded, guarded_children, key_text, limit, map_items, object_at, pointer_at, quoted, round_up,
    symbol_at, text_of, vector_items)

sys.path.pop(0)


# Values


def held_by(value):
    """What an Any holds: nothing (None), a value, or only the name of its type (str)."""
    on_heap = bool(value["m_onHeap"])
    holder = int(value["m_heap"]) if on_heap else int(value["m_storage"].address)
    if holder == 0:
        return None
    table = symbol_at(pointer_at(holder))
    match = re.match(r"vtable for (VelUtils::Any::Holder<(.*), (?:true|false), (?:true|false)>)$", table)
    if not match:
        raise Unreadable(f"no value at {holder:#x}")
    try:
        return object_at(holder, gdb.lookup_type(match[1]))["value"]
    except gdb.error:
        return match[2]


def is_style_pointer(type_):
    return type_.code == gdb.TYPE_CODE_PTR and basic(type_.target()).tag == "Styles::Style"


def is_style_list(type_):
    return re.match(r"std::vector<Styles::Style ?\*,", str(type_)) is not None


class StringPrinter:
    def __init__(self, value):
        self.value = value

    @guarded
    def to_string(self):
        wide = "" if basic(self.value.type).template_argument(0).sizeof == 1 else "L"
        return wide + quoted(*text_of(self.value))


class KeyPrinter:
    def __init__(self, value):
        self.value = value

    @guarded
    def to_string(self):
        return quoted(*key_text(self.value))


class AnyPrinter:
    """A number says its type, which is a part of the value; texts and styles speak for themselves."""

    def __init__(self, value):
        self.value = value

    @guarded
    def to_string(self):
        held = held_by(self.value)
        if held is None:
            return "empty"
        if isinstance(held, str):
            return f"<a value of the type {held}>"
        type_ = basic(held.type)
        if is_style_pointer(type_):
            return style_line(held)
        if is_style_list(type_):
            count = vector_items(held, type_.template_argument(0))[0]
            return f"{count} styles"
        printer = find_printer(held)
        if printer:
            return printer.to_string()
        return f"({type_}) {held.format_string()}"

    @guarded_children
    def children(self):
        held = held_by(self.value)
        if not isinstance(held, gdb.Value):
            return
        type_ = basic(held.type)
        if is_style_list(type_):
            for index, style in enumerate(vector_items(held, type_.template_argument(0))[1]):
                yield f"[{index}]", style_line(style)
        elif not is_style_pointer(type_):
            yield from getattr(find_printer(held), "children", tuple)()


# Styles


class SheetNames:
    """The names of styles in the sheets that the functions under way know: a style itself has none."""

    def __init__(self):
        self.names = None
        for event in ("cont", "stop", "memory_changed", "before_prompt", "inferior_call", "exited"):
            if hasattr(gdb.events, event):
                getattr(gdb.events, event).connect(self.forget)
        self.frame = None

    def forget(self, *_):
        self.names = None

    def name_of(self, style):
        try:
            frame = gdb.selected_frame()
        except gdb.error:
            return None
        if self.names is None or self.frame != frame:
            self.names, self.frame = {}, frame
            self.search(frame)
        return self.names.get(int(style))

    def search(self, frame):
        for _ in range(32):
            if frame is None:
                return
            try:
                self.search_block(frame)
                frame = frame.older()
            except (gdb.error, RuntimeError):
                return

    def search_block(self, frame):
        block = frame.block()
        while block is not None and not block.is_global:
            for symbol in block:
                if symbol.is_variable or symbol.is_argument:
                    try:
                        self.add(symbol.value(frame) if symbol.needs_frame else symbol.value())
                    except (gdb.error, RuntimeError, Unreadable):
                        pass  # not made yet, or optimised out
            block = block.superblock

    def add(self, variable):
        if basic(variable.type).code == gdb.TYPE_CODE_PTR:
            variable = variable.dereference()
        elif variable.type.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            variable = variable.referenced_value()
        type_ = basic(variable.type)
        if type_.code != gdb.TYPE_CODE_STRUCT or not is_a(type_, "Styles::StyleSheet"):
            return
        if not symbol_at(pointer_at(int(variable.address))).startswith("vtable for "):
            return
        for name, style in map_items(variable["m_stylesByName"].dereference()):
            self.names[int(style)] = text_of(name)[0]


def is_a(type_, name):
    return type_.tag == name or any(field.is_base_class and is_a(basic(field.type), name) for field in type_.fields())


SHEETS = SheetNames()


def name_or_address(style):
    name = SHEETS.name_of(style)
    return quoted(name) if name is not None else f"{int(style):#x}"


@guarded
def style_line(style):
    """A style, or a pointer to one, in a line."""
    pointer = style.address if basic(style.type).code == gdb.TYPE_CODE_STRUCT else style
    if pointer is None or int(pointer) == 0:
        return "null"
    style = pointer.dereference()
    name = SHEETS.name_of(pointer)
    line = "style" if name is None else f"style {quoted(name)}"
    category = style["m_category"]["_M_ptr"]
    line += f" of {quoted(*key_text(category['m_categoryName']))}" if int(category) != 0 else " without category"
    if int(style["m_parent"]) != 0:
        line += f", inherits {name_or_address(style['m_parent'])}"
    if int(style["m_owner"]) != 0:
        place = quoted(*key_text(style["m_ownersSubstylePropertyName"]))
        line += f", is {place} of {name_or_address(style['m_owner'])}"
    external = [text_of(style[member])[0] for member in ("m_externalName", "m_externalID")]
    if any(external):
        line += f", external {quoted(external[0] or external[1])}"
    count = int(style["m_properties"]["_M_t"]["_M_impl"]["_M_node_count"])
    return f"{line}, {count} values" if count != 1 else f"{line}, 1 value"


class StylePrinter:
    """The style in a line, and its own values in the order of their names."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return style_line(self.value)

    @guarded_children
    def children(self):
        yield from sorted(own_values(self.value), key=lambda own: own[0])


def own_values(style):
    for key, value in map_items(style["m_properties"]):
        yield key_text(key)[0], value


class SheetPrinter:
    def __init__(self, value):
        self.value = value

    @guarded
    def to_string(self):
        names = self.value["m_stylesByName"]
        if int(names) == 0:
            return "sheet without a collection"
        count = int(names["_M_t"]["_M_impl"]["_M_node_count"])
        return f"sheet of {count} {'style' if count == 1 else 'styles'}, version {int(self.value['m_version'])}"

    @guarded_children
    def children(self):
        names = self.value["m_stylesByName"]
        if int(names) != 0:
            for name, style in map_items(names.dereference()):
                yield quoted(*text_of(name)), style.dereference() if int(style) != 0 else "null"


class CategoryPrinter:
    def __init__(self, value):
        self.value = value

    @guarded
    def to_string(self):
        return f"category {quoted(*key_text(self.value['m_categoryName']))}"

    @guarded_children
    def children(self):
        names = self.value["m_propertyNames"]
        for index, key in enumerate(vector_items(names, basic(names.type).template_argument(0))[1]):
            yield f"[{index}]", quoted(*key_text(key))


# JSON


class VariantPrinter:
    """As the value that is held. The alternatives of a std::variant share its beginning."""

    def __init__(self, value):
        self.value = value

    def held(self):
        variant = self.value["m_held"]
        index = int(variant["_M_index"])
        if not 0 <= index < 9:
            raise Unreadable("no JSON value")
        return object_at(variant.address, basic(basic(variant.type).template_argument(index)))

    @guarded
    def to_string(self):
        held = self.held()
        if held.type.code == gdb.TYPE_CODE_ENUM:
            return "null"
        printer = find_printer(held)
        return printer.to_string() if printer else held.format_string()

    @guarded_children
    def children(self):
        yield from getattr(find_printer(self.held()), "children", tuple)()


class ArrayPrinter:
    def __init__(self, value):
        self.value = value

    def items(self):
        return vector_items(self.value["m_values"], gdb.lookup_type("VelUtils::Json::Variant"))

    @guarded
    def to_string(self):
        count = self.items()[0]
        return f"array of {count}"

    @guarded_children
    def children(self):
        for index, value in enumerate(self.items()[1]):
            yield f"[{index}]", value


class ObjectPrinter:
    """A member is a name and a variant; the type that says so is known to the library alone."""

    def __init__(self, value):
        self.value = value
        self.name = gdb.lookup_type("VelPlatform::VelStringT<wchar_t>")
        self.variant = gdb.lookup_type("VelUtils::Json::Variant")

    def items(self):
        to_value = round_up(self.name.sizeof, self.variant.alignof)
        member = gdb.lookup_type("char").array(to_value + round_up(self.variant.sizeof, self.name.alignof) - 1)
        count, members = vector_items(self.value["m_members"], member)
        return count, ((object_at(member.address, self.name), object_at(int(member.address) + to_value, self.variant))
                       for member in members)

    @guarded
    def to_string(self):
        count = self.items()[0]
        return f"object of {count}"

    @guarded_children
    def children(self):
        for name, value in self.items()[1]:
            yield quoted(*text_of(name)), value


# Views


class SpanPrinter:
    def __init__(self, value):
        self.value = value

    def items(self):
        elements = self.value["m_elements"]
        return elements["_M_ptr"], int(elements["_M_extent"]["_M_extent_value"])

    @guarded
    def to_string(self):
        sorted_ = "sorted span" if bool(self.value["m_sorted"]) else "span"
        return f"{sorted_} of {self.items()[1]}"

    @guarded_children
    def children(self):
        first, count = self.items()
        for index in range(min(count, limit())):
            element = first[index]
            yield f"[{index}]", style_line(element) if is_style_pointer(basic(element.type)) else element


class DelegatePrinter:
    def __init__(self, value):
        self.value = value

    @guarded
    def to_string(self):
        caller = symbol_at(self.value["m_invoke"])
        target = int(self.value["m_target"]["object"])
        what = symbol_at(target) or template_argument_in(caller, ">::Delegate<") or "a callable"
        return f"delegate to {what} at {target:#x}"


def template_argument_in(name, opening):
    """What stands in the angle brackets behind `opening`, brackets in it included."""
    rest = name[name.find(opening) + len(opening):] if opening in name else ""
    depth = 1
    for place, character in enumerate(rest):
        depth += {"<": 1, ">": -1}.get(character, 0)
        if depth == 0:
            return rest[:place]
    return ""


PRINTERS = (
    (r"VelPlatform::VelStringT<.*>", StringPrinter),
    (r"VelUtils::PooledString<.*>|Styles::PropertyKey", KeyPrinter),
    (r"VelUtils::Any", AnyPrinter),
    (r"Styles::Style", StylePrinter),
    (r"Styles::StyleSheet", SheetPrinter),
    (r"Styles::StyleCategory", CategoryPrinter),
    (r"VelUtils::Json::Variant", VariantPrinter),
    (r"VelUtils::Json::Array", ArrayPrinter),
    (r"VelUtils::Json::Object", ObjectPrinter),
    (r"VelUtils::maybe_sorted_span<.*>", SpanPrinter),
    (r"VelUtils::Delegate<.*>", DelegatePrinter),
)


def find_printer(value):
    tag = basic(value.type).tag
    for pattern, printer in PRINTERS if tag else ():
        if re.fullmatch(pattern, tag):
            if value.type.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
                value = value.referenced_value()
            return printer(value)
    return None


class StylesPrinters(gdb.printing.PrettyPrinter):
    """All of them, under one name for `disable pretty-printer`."""

    def __init__(self):
        super().__init__("styles")

    def __call__(self, value):
        try:
            return find_printer(value)
        except (gdb.error, RuntimeError):
            return None


class StyleValue(gdb.Function):
    """The own value of a style at a path: $style_value(style, "fill.color"). A substyle is shown with its values."""

    def __init__(self):
        super().__init__("style_value")

    def invoke(self, style, path):
        if basic(style.type).code == gdb.TYPE_CODE_PTR:
            style = style.dereference()
        held = None
        for key in path.string().split("."):
            if held is not None:
                style = held.dereference()
            value = dict(own_values(style)).get(key)
            if value is None:
                return f"no own value {key}"
            held = held_by(value)
            if not isinstance(held, gdb.Value) or not is_style_pointer(basic(held.type)) or int(held) == 0:
                return value
        return held.dereference()


def register(objfile):
    """For a library (or None: for all that is debugged), in the place of an earlier registration."""
    gdb.printing.register_pretty_printer(objfile, StylesPrinters(), replace=True)


StyleValue()
if __name__ == "__main__":
    register(None)
