"""gdb shows what tests/debugging/Sample.cpp holds, by debugging/gdb/styles_printers.py, as it is written down here.

    gdb_printers.py source PROGRAM             the printers are sourced from the tree
    gdb_printers.py installed PROGRAM BUILD    the build is installed, and the printers come with the library

Addresses are compared as 0x*.
"""

import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
UNREADABLE = "<cannot be read: Cannot access memory at address 0x*>"
CORRUPT = f"{UNREADABLE} = {{<corrupt> = {UNREADABLE}}}"
JSON = ('object of 4 = {"name" = L"red", "count" = -3, "none" = null, '
        '"list" = array of 3 = {[0] = 0.5, [1] = true, [2] = object of 0}}')
OUTLINE = 'style "Outline" of "shape", 1 value = {width = (double) 0.5}'
FILL = 'style of "fill", is "fill" of "Warning", 1 value'
WARNING = ('style "Warning" of "shape", inherits "Outline", 3 values = '
           f'{{fill = {FILL}, note = L"look", '
           'stops = 2 styles = {[0] = style of "fill", 0 values, [1] = style of "fill", 0 values}}')

# What is printed at each stop, in the frame above it.
STOPS = [
    [
        ("empty", 'L""'),
        ("wide", 'L"straße \\"1\\"\\n🎨"'),
        ("narrow", '"straße"'),
        ("withZero", 'L"a\\u{0}b"'),
        ("longText", f'L"{"x" * 200}"...'),
        ("key", '"fill.color"'),
        ("reference", '"fill.color"'),
        ("Styles::PropertyKey::Empty", '""'),
        ("badText", UNREADABLE),
        ("nowhere", UNREADABLE),
        ("lengthless", "<no text at 0x*>"),
        ("badKey", UNREADABLE),
        ("nullKey", "<no key>"),
    ],
    [
        ("empty", "empty"),
        ("number", "(double) 0.5"),
        ("integer", "(unsigned int) 7"),
        ("truth", "(bool) true"),
        ("corner", "((anonymous namespace)::Corner) (anonymous namespace)::Corner::Round"),
        ("text", 'L"red"'),
        ("narrow", '"red"'),
        ("key", '"width"'),
        ("pointer", 'style of "shape", 1 value'),
        ("nullPointer", "null"),
        ("list", '2 styles = {[0] = style of "shape", 1 value, [1] = null}'),
        ("point", "((anonymous namespace)::Point) {x = 1, y = 2, z = 3}"),
        ("badValue", CORRUPT),
        ("document", JSON),
        ("json", JSON),
        ("array", "array of 3 = {[0] = 0.5, [1] = true, [2] = object of 0}"),
        ("badJson", "<no JSON value> = {<corrupt> = <no JSON value>}"),
        ("span", 'span of 2 = {[0] = style of "shape", 1 value, [1] = null}'),
        ("delegate", re.compile(r"delegate to \(anonymous namespace\)::ShowValues\(Styles::Style\*\)::.* const& at 0x\*")),
        ("function", re.compile(r"delegate to \(anonymous namespace\)::IsThere\(Styles::Style ?\*\) at 0x\*")),
    ],
    [
        ("lone", 'style of "shape", 1 value = {width = (double) 2}'),
    ],
    [
        ("sheet", f'sheet of 3 styles, version 2 = {{"Nobody" = null, "Outline" = {OUTLINE}, "Warning" = {WARNING}}}'),
        ("*outline", OUTLINE),
        ("*warning", WARNING),
        ("*substyle", f'{FILL} = {{color = L"red"}}'),
        ('$style_value(warning, "fill.color")', 'L"red"'),
        ('$style_value(*warning, "fill")', f'{FILL} = {{color = L"red"}}'),
        ('$style_value(warning, "hatch")', '"no own value hatch"'),
        ("withoutCategory", "style without category, 0 values"),
        ("external", 'style of "shape", external "elsewhere", 0 values'),
        ("first", 'style of "shape", inherits 0x*, 0 values'),
        ("emptySheet", "sheet of 0 styles, version 2"),
        ("category", 'category "shape" = {[0] = "width", [1] = "note", [2] = "stops", [3] = "fill"}'),
        ("badStyle", CORRUPT),
        ("badSheet", CORRUPT),
        ("*nobody", "Cannot access memory at address 0x*"),
    ],
]


def run_gdb(program, first, stops, environment=(), locale="C.UTF-8"):
    """What gdb answers to each expression, stop by stop."""
    # Where the rules of a container forbid turning the randomisation off, gdb goes on without.
    commands = ["set pagination off", "set debuginfod enabled off", "set startup-with-shell off",
                "set disable-randomization off", "set print frame-arguments none", "break Pause", *first]
    # LeakSanitizer traces its own process, which has a tracer already.
    commands += [f"set environment {setting}" for setting in ("ASAN_OPTIONS=detect_leaks=0", *environment)]
    commands.append("run")
    for number, stop in enumerate(stops):
        commands += ["echo \\n@ stop\\n", "continue"] if number > 0 else []
        commands.append("up")
        for expression, _ in stop:
            commands += [f"echo \\n@ {number} {expression}\\n", f"print {expression}"]
    commands += ["echo \\n@ end\\n", "kill"]
    line = ["gdb", "-nx", "-batch", *(word for command in commands for word in ("-ex", command)), program]
    with subprocess.Popen(line, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          encoding="utf-8", start_new_session=True, env={**os.environ, "LC_ALL": locale}) as process:
        try:
            told = process.communicate(timeout=150)[0]
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            told = process.communicate()[0]
            sys.exit(f"gdb did not end by itself; it said:\n{told}")
    if "Breakpoint 1, " not in told:
        sys.exit(f"gdb did not get the program to its first stop (may it trace processes here?); it said:\n{told[:2000]}")
    return told


def compare(told, stops):
    problems = []
    for number, stop in enumerate(stops):
        for expression, expected in stop:
            found = re.search(rf"^@ {number} {re.escape(expression)}\n(.*?)\n(?:\n@|\Z)", told, re.MULTILINE | re.DOTALL)
            answer = re.sub(r"^\$\d+ = |^\(.*?&\) @0x[0-9a-f]+: ", "", found[1].strip()) if found else "(nothing)"
            answer = re.sub(r"^\(.*?&\) @0x[0-9a-f]+: ", "", answer)
            answer = re.sub(r"0x[0-9a-f]+", "0x*", answer)
            if not (expected.fullmatch(answer) if isinstance(expected, re.Pattern) else answer == expected):
                problems.append(f"stop {number}, {expression}\n  expected {expected}\n  but was  {answer}")
    return problems


def main():
    mode, program = sys.argv[1:3]
    if mode == "source":
        told = run_gdb(program, [f"source {ROOT / 'debugging/gdb/styles_printers.py'}"], STOPS)
        problems = compare(told, STOPS)
    else:
        problems = check_installed(program, sys.argv[3])
    for problem in problems:
        print(problem)
    print(f"gdb printers, {mode}: {len(problems)} problems")
    sys.exit(1 if problems else 0)


def check_installed(program, build):
    with tempfile.TemporaryDirectory() as folder:
        prefix = pathlib.Path(folder).resolve() / "prefix"
        for component in ("runtime", "development"):
            subprocess.run(["cmake", "--install", build, "--prefix", prefix, "--component", component], check=True,
                           stdout=subprocess.DEVNULL)
        loaders = list((prefix / "share/gdb/auto-load").rglob("*-gdb.py"))
        library = next(prefix.rglob("libstyles.so"))
        scripts = prefix / "share/gdb/auto-load"
        allow = [f"add-auto-load-safe-path {prefix}", f"add-auto-load-scripts-directory {scripts}"]
        where = [f"LD_LIBRARY_PATH={library.parent}"]
        # Nothing is sourced here. And the terminal has ASCII only.
        stops = [[(expression, re.sub("[^ -~]", lambda match: f"\\u{{{ord(match[0]):X}}}", expected))
                  for expression, expected in STOPS[0]]]
        told = run_gdb(program, allow, stops, where, "C")
        problems = compare(told, stops)
        if len(loaders) != 2:
            problems.append(f"installed loaders: {loaders}")
    return problems


main()
