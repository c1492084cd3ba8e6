"""What hosts are compiled and linked against changes only on purpose: tests/house/interface holds it, and
script/interface writes it anew.

    interface.py layout               the fields of each public class, and the order of its virtual functions
    interface.py symbols LIBRARY...   the symbols that a library exports
    interface.py changes LIBRARY...   what abidiff says since the last version
    interface.py cost                 how many lines each public header makes the compiler read, against its bound

With --update the kept files are written instead of compared; cost keeps no file, its bounds are below.
"""

import difflib
import gzip
import pathlib
import re
import subprocess
import sys
import tempfile

import tree

KEPT = tree.ROOT / "tests/house/interface"
INCLUDES = [f"-I{tree.ROOT / 'include'}", f"-I{tree.ROOT / 'platform/include'}"]
OURS = ("Styles::", "VelPlatform::", "VelUtils::", "VelPref::")

# The classes whose objects or virtual functions are shared by hosts and library.
CLASSES = """
    Styles::PropertyKey Styles::BaseStyleProperty Styles::StyleProperty Styles::TemporaryStyleProperty
    Styles::StyleSetProperty Styles::StyleArrayProperty Styles::StyleCategory
    Styles::StyleManager Styles::Style Styles::IStyleSheetDuplicationContext Styles::StyleSheet Styles::SubStyle
    Styles::StylePresetManager Styles::TextPolicy<double> Styles::RangeValidator<double>
    Styles::ChoiceValidator<double> VelPlatform::VelString VelPlatform::VelStringA VelPref::Detail::BadConversion
    VelPref::Detail::IConversionPolicy VelPref::Validator VelUtils::Any VelUtils::Delegate<void()>
    VelUtils::Json::Array VelUtils::Json::Object VelUtils::Json::Variant VelUtils::maybe_sorted_span<int>
    VelUtils::ThreadLock VelUtils::SingletonRecord VelUtils::SingletonLibrary VelUtils::Stream VelUtils::MemoryStream
    VelUtils::StringPool VelUtils::TextStream VelUtils::TextStreamReader VelUtils::TextStreamWriter
""".split()

# Preprocessed lines that including a header may cost; each is about a tenth above what it was when it was set.
COSTS = {
    "styles/Any.h": 37000, "styles/PropertyKey.h": 53000, "styles/Style.h": 64000, "styles/StyleManager.h": 64000,
    "styles/StyleOverrides.h": 64000, "styles/StylePresetManager.h": 64000, "styles/StyleProperty.h": 57500,
    "styles/StyleSheet.h": 64000, "styles/Styles.h": 60000,
    "styles/StylesApi.h": 500, "styles/StylesFwd.h": 500, "styles/StylesIO.h": 1000, "styles/SubStyle.h": 64000,
    "styles/testing/StylesMatchers.h": 102500, "styles/testing/StylesMatchersDetail.h": 102500,
    "styles/testing/StylesPrinters.h": 64000,
    "styles/TextPolicy.h": 37000, "styles/ValueValidators.h": 37000, "VelPlatform/Module.h": 500,
    "VelPlatform/String.h": 27500, "VelPlatform/StringDetail.h": 27000, "VelPlatform/StringIO.h": 32500,
    "VelPlatform/Unicode.h": 15000, "VelPlatform/VelApi.h": 500, "VelPref/ConversionPolicy.h": 27500,
    "VelPref/Validator.h": 500, "VelUtils/CaseInsensitiveOrder.h": 27500, "VelUtils/Delegate.h": 39000,
    "VelUtils/Json.h": 49500, "VelUtils/LogMessage.h": 45000, "VelUtils/MaybeSortedSpan.h": 20000,
    "VelUtils/Path.h": 27500, "VelUtils/Singleton.h": 44000, "VelUtils/Stream.h": 41000,
    "VelUtils/StringPool.h": 49500, "VelUtils/StringUtils.h": 45000, "VelUtils/TextStream.h": 41000,
}


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def public_headers():
    return [re.sub("^(platform/)?include/", "", name)
            for name in tree.files(".h", under=("include/", "platform/include/"))]


def compare(name, text, update):
    """The problems of a kept file: the lines in which it differs from `text`."""
    path = KEPT / name
    if update:
        path.write_text(text)
        return []
    kept = path.read_text() if path.exists() else ""
    return [line for line in difflib.unified_diff(kept.splitlines(), text.splitlines(), f"kept {name}", "now", "", "", 1, "")]


def layout(update):
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "all.cpp"
        # What tests of hosts include is compiled into them alone.
        lines = [f"#include <{header}>\n" for header in public_headers() if not header.startswith("styles/testing/")]
        lines += [f"static_assert(sizeof({name}) > 0);\n" for name in CLASSES]
        source.write_text("".join(lines))
        fields = run("clang++-14", "-std=c++20", *INCLUDES, "-fsyntax-only", "-Xclang", "-fdump-record-layouts",
                     str(source))
        run("g++", "-std=c++20", *INCLUDES, "-fsyntax-only", f"-fdump-lang-class={folder}/classes", str(source))
        classes = (pathlib.Path(folder) / "classes").read_text()

    records = {}
    for record in re.split(r"\*\*\* Dumping AST Record Layout\n", fields)[1:]:
        head = re.match(r" +0 \| (?:class|struct) (.*?)(?: \(empty\))?\n", record)
        if head and head[1].startswith(OURS) and "lambda" not in head[1]:
            records.setdefault(head[1], own_lines(record))
    tables = {}
    for table in re.findall(r"^Vtable for (.*)\n((?:.+\n)+)", classes, re.MULTILINE):
        if table[0].startswith(OURS):
            tables[table[0]] = "".join(line + "\n" for line in table[1].splitlines() if re.match(r"\d+ ", line))
    text = "".join(f"{name}\n{records[name]}\n" for name in sorted(records))
    text += "".join(f"virtual functions of {name}\n{tables[name]}\n" for name in sorted(tables))
    return compare("layout.txt", re.sub(r"\(anonymous at [^)]*\)", "(anonymous)", text), update)


def own_lines(record):
    """A record's layout without the insides of the standard library's types, which are not ours to keep."""
    kept = []
    hidden_below = None
    for line in record.splitlines():
        if not line.strip():
            break
        match = re.match(r"( *[\d:-]* \|)( +)(.*)", line)
        if not match:
            kept.append(line)
            continue
        depth = len(match[2])
        if hidden_below is not None and depth > hidden_below:
            continue
        hidden_below = depth if re.match(r"(class|struct|union) std::", match[3]) else None
        kept.append(line)
    return "".join(line + "\n" for line in kept)


def symbols(libraries, update):
    problems = []
    for library in libraries:
        found = set()
        for line in run("nm", "-D", "-C", "--defined-only", library).splitlines():
            kind, name = line[17:18], line[19:]
            # What templates and inline functions leave behind depends on the compiler's mood.
            if kind in "TBDR" or (kind == "V" and re.match(r"(vtable|typeinfo) for (Styles|Vel\w+)::", name)):
                found.add(name)
        stem = pathlib.Path(library).name.split(".")[0]
        problems += compare(f"{stem}.symbols", "".join(f"{name}\n" for name in sorted(found)), update)
    return problems


def changes(libraries, update):
    problems = []
    describe = ["abidw", "--drop-private-types", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs",
                "--exported-interfaces-only", "--headers-dir", str(tree.ROOT / "include"), "--headers-dir",
                str(tree.ROOT / "platform/include")]
    for library in libraries:
        path = KEPT / (pathlib.Path(library).name.split(".")[0] + ".abi.gz")
        if update:
            path.write_bytes(gzip.compress(run(*describe, library).encode(), mtime=0))
            continue
        with tempfile.TemporaryDirectory() as folder:
            before = pathlib.Path(folder) / "before.abi"
            before.write_bytes(gzip.decompress(path.read_bytes()))
            now = pathlib.Path(folder) / "now.abi"
            now.write_text(run(*describe, library))
            told = subprocess.run(["abidiff", "--no-added-syms", "--no-unreferenced-symbols", str(before), str(now)],
                                  capture_output=True, text=True)
            if told.returncode != 0:
                problems += told.stdout.splitlines() + told.stderr.splitlines()
    return problems


def cost():
    problems = []
    for header in public_headers():
        lines = sum(1 for line in run("g++", "-std=c++20", *INCLUDES, "-E", "-P", "-x", "c++", "-include",
                                      header, "/dev/null").splitlines() if line.strip())
        bound = COSTS.get(header)
        if bound is None:
            problems.append(f'{header} has no bound; it costs:  "{header}": {(lines * 11 // 10 + 499) // 500 * 500},')
        elif lines > bound:
            problems.append(f"{header} costs {lines} lines, more than {bound}")
    return problems


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--update"]
    update = "--update" in sys.argv
    what, libraries = arguments[0], arguments[1:]
    checks = {"layout": lambda: layout(update), "symbols": lambda: symbols(libraries, update),
              "changes": lambda: changes(libraries, update), "cost": cost}
    tree.finish(what, checks[what]())


if __name__ == "__main__":
    main()
