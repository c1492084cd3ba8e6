"""Measures the library beside its alternatives and reports.

    report.py [--quick] [PROGRAM...]   measures (all programs, unless some are named), prints the table, writes the page
    report.py --report                 does so from what was measured before
    report.py --glance                 runs the smallest rows of each program once and makes a page of that, which is
                                       thrown away: whether everything works, not how fast

The programs are those of the benchmark preset; what they say is kept in build/benchmark/results. The page is
docs/performance.md: performance.md.in with the figures, and with the notes of notes.md under the headings of the same
name.
"""

import argparse
import dataclasses
import json
import math
import pathlib
import re
import statistics
import tempfile

import measure
import plots
from goals import GOALS, GROWTH, ITSELF, MAP, OURS, QUESTIONS, TEXTS

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent
NO_COLUMN = "-"


@dataclasses.dataclass
class Row:
    """What a contender takes for an item of a workload: nanoseconds, or `figure` for what is no time."""

    program: str
    workload: str
    contender: str
    value: float
    spread: float = 0.0  # half the interquartile range, as a part of the median
    whole: float = 0.0  # nanoseconds of the whole operation
    is_time: bool = True
    instructions: float | None = None


def middle(values):
    """The median and the spread."""
    median = statistics.median(values)
    if len(values) < 4:
        return median, (max(values) - min(values)) / 2 / median if median else 0.0
    first, _, third = statistics.quantiles(values, n=4, method="inclusive")
    return median, (third - first) / 2 / median if median else 0.0


def row_of(program, name, runs):
    workload, _, contender = name.rpartition("/")
    if "figure" in runs[0]:
        median, spread = middle([run["figure"] for run in runs])
        return Row(program, workload, contender, median, spread, is_time=False)
    median, spread = middle([1e9 / run["items_per_second"] for run in runs])
    clock = "real_time" if runs[0].get("threads", 1) > 1 else "cpu_time"
    return Row(program, workload, contender, median, spread, statistics.median(run[clock] for run in runs))


def load(results):
    """The rows as they were measured, in the order of the questions, and what else is known."""
    rows = []
    if not (results / "more.json").exists():
        raise SystemExit("nothing has been measured yet")
    more = json.loads((results / "more.json").read_text())
    for program in QUESTIONS:
        path = results / f"{program}.json"
        runs = {}
        told = json.loads(path.read_text()) if path.exists() else []
        for run in sorted(told, key=lambda run: run["family_index"]):  # the order of the program, not of chance
            name = re.sub(r"(/(iterations|repeats|threads):\d+|/min_time:[^/]*|/real_time)+$", "", run["run_name"])
            runs.setdefault(name, []).append(run)
        rows += [row_of(program, name, all_runs) for name, all_runs in runs.items()]
        if program == measure.FIRST_PROGRAM:
            for contender, times in more.get("first", {}).items():
                size = measure.FIRST_ROW.rpartition("/")[2]
                rows.append(Row(program, f"first import in a process/{size}", contender, *middle(times)))
        counts = more.get("instructions", {}).get(program, {})
        for row in rows:
            if row.program == program:
                row.instructions = counts.get(f"{row.workload}/{row.contender}")
    return rows, more


def figure(row):
    """A figure with three digits and its unit."""
    value, unit = row.value, ""
    if row.is_time:
        for unit in (" ns", " µs", " ms", " s"):
            if value < 999.5:
                break
            value /= 1000
    digits = 2 - math.floor(math.log10(value)) if value > 0 else 0
    return f"{value:.{min(max(digits, 0), 2)}f}{unit}"


def spelt(value):
    return f"{value:.2f}" if value < 99.5 else f"{value:.0f}"


def size_of(workload):
    """(the workload without its size, the size), or (workload, None)."""
    found = re.fullmatch(r"(.*?)/?(?:[a-z]+ )?(\d+)", workload)
    return (found[1], int(found[2])) if found and "/" in workload else (workload, None)


def verdict(ratio, goal, rows):
    """`rows` are those that the ratio is made of."""
    if goal.reach is None:
        return "reached" if ratio <= goal.beyond else "open"
    if ratio > goal.reach * (1 + sum(row.spread for row in rows)):
        return "**missed**"
    if ratio > goal.reach:
        return "within the spread"
    return "met, and beyond" if goal.beyond is not None and ratio <= goal.beyond else "met"


def wanted(goal):
    if goal.reach is None:
        return f"({goal.beyond:g})"
    return f"{goal.reach:g}" + (f" ({goal.beyond:g})" if goal.beyond is not None else "")


def growth_lines(goal, rows):
    """A line for each workload that was measured at several sizes: its worst growth for a doubling, and theirs."""
    families = {}
    for row in rows:
        family, size = size_of(row.workload)
        if goal.concerns(row.workload) and size is not None and row.is_time:
            families.setdefault(family, {}).setdefault(row.contender, {})[size] = row
    for family, contenders in families.items():
        def growth(contender, small, large):
            sized = contenders[contender]
            return (sized[large].whole / sized[small].whole) ** (1 / math.log2(large / small))

        sizes = sorted(contenders.get(OURS, ()))
        steps = [(growth(OURS, *step), step) for step in zip(sizes, sizes[1:])]
        if not steps:
            continue
        ratio, step = max(steps)
        others = [growth(contender, *step) for contender, sized in contenders.items()
                  if contender != OURS and all(size in sized for size in step)]
        yield [family, figure(contenders[OURS][step[1]]), f"{GROWTH}, at {step[1]:,}",
               f"grows {spelt(min(others))}" if others else NO_COLUMN, spelt(ratio), wanted(goal),
               verdict(ratio, goal, [contenders[OURS][size] for size in step])]


def goal_lines(rows):
    """The lines of the table of goals, in the order of the rows."""
    by_name = {(row.workload, row.contender): row for row in rows}
    ours = {row.workload: row for row in rows if row.contender == OURS}
    lines = []
    for program in QUESTIONS:
        mine = {workload: row for workload, row in ours.items() if row.program == program}
        for workload, row in mine.items():
            for goal in GOALS:
                peer = row if goal.peer == ITSELF else by_name.get((workload, goal.peer))
                if goal.peer == GROWTH or not goal.concerns(workload) or peer is None:
                    continue
                ratio = row.value if goal.peer == ITSELF else row.value / peer.value
                shown = [NO_COLUMN, NO_COLUMN] if goal.peer == ITSELF else [f"`{peer.contender}`", figure(peer)]
                lines.append([workload, figure(row), *shown, spelt(ratio), wanted(goal),
                              verdict(ratio, goal, [row, peer])])
        for goal in GOALS:
            if goal.peer == GROWTH:
                lines += growth_lines(goal, [row for row in rows if row.program == program])
    return lines


def table(head, lines, right):
    """A table as pages write it, its columns aligned; those in `right` to the right."""
    widths = [max(len(line[i]) for line in [head, *lines]) for i in range(len(head))]

    def write(cells):
        return "| " + " | ".join(cell.rjust(width) if i in right else cell.ljust(width)
                                 for i, (cell, width) in enumerate(zip(cells, widths))) + " |"

    rule = "|" + "|".join("-" * (width + 1) + (":" if i in right else "-") for i, width in enumerate(widths)) + "|"
    return "\n".join([write(head), rule, *map(write, lines)])


def goal_table(rows):
    return table(["Workload", "Ours", "Beside", "Theirs", "Ratio", "Goal", ""], goal_lines(rows), {1, 3, 4, 5})


def full_table(rows):
    ours = {row.workload: row for row in rows if row.contender == OURS}
    lines = []
    for workload in dict.fromkeys(row.workload for row in rows):
        same = [row for row in rows if row.workload == workload]
        for row in sorted(same, key=lambda row: (row.contender != OURS, row.value)):
            ratio = NO_COLUMN
            if workload in ours and row.contender != OURS and row.value > 0:
                ratio = spelt(ours[workload].value / row.value)
            lines.append([workload if row is same[0] or row.contender == OURS else "", row.contender, figure(row),
                          f"{row.spread:.0%}" if row.is_time else NO_COLUMN, ratio,
                          f"{row.instructions:,.0f}" if row.instructions is not None else NO_COLUMN])
        lines[len(lines) - len(same)][0] = workload
    return table(["Workload", "Contender", "Figure", "Spread", "Ours / theirs", "Instructions"], lines, {2, 3, 4, 5})


def notes():
    """The notes by heading."""
    path = HERE / "notes.md"
    parts = re.split(r"^## (.*)$", path.read_text(), flags=re.MULTILINE)[1:] if path.exists() else []
    return {heading.strip(): text.strip() for heading, text in zip(parts[::2], parts[1::2])}


PLOTS = {  # name: (program, workloads, contenders, title, title of x, title of y, nanoseconds in the unit of y)
    "look-up-depth": ("LookUpBenchmark", r"look up/hit at the root/parents \d+",
                      (OURS, MAP, TEXTS, "nlohmann::ordered_json", "QVariantMap"),
                      "A value that the root has", "parents on the way (logarithmic)",
                      "nanoseconds a look-up (logarithmic)", 1),
    "import-size": ("ImportBenchmark", r"import/\d+",
                    (OURS, "RapidJSON events", "RapidJSON document", "nlohmann::json events",
                     "nlohmann::ordered_json", "limit: simdjson into maps by address"),
                    "Reading a sheet", "styles (logarithmic)", "microseconds a style (logarithmic)", 1000),
    "export-size": ("ExportBenchmark", r"export/\d+",
                    (OURS, "RapidJSON writer", "RapidJSON pretty writer", "nlohmann::ordered_json, pretty",
                     "limit: copying the texts"),
                    "Writing a sheet", "styles (logarithmic)", "microseconds a style (logarithmic)", 1000),
}


def write_plots(rows, folder):
    """Draws what there are rows for. {program: the line of the page that shows it}"""
    folder.mkdir(parents=True, exist_ok=True)
    shown = {}
    for name, (program, workloads, contenders, title, x_title, y_title, unit) in PLOTS.items():
        series = {}
        for contender in contenders:
            points = [(size_of(row.workload)[1], row.value / unit) for row in rows if row.program == program
                      and row.contender == contender and re.fullmatch(workloads, row.workload)]
            if points:
                series[contender] = sorted(points)
        if any(len(points) > 1 for points in series.values()):
            (folder / f"{name}.svg").write_text(plots.plot(title, x_title, y_title, series))
            shown[program] = f"![{title}: {y_title}, by {x_title}](images/{name}.svg)"
    return shown


def page(rows, more, shown):
    told = notes()
    sections = []
    for program, heading in QUESTIONS.items():
        mine = [row for row in rows if row.program == program]
        note = told.pop(heading, "")
        if not mine:
            continue
        parts = [f"## {heading}", shown.get(program, ""), note, full_table(mine)]
        sections.append("\n\n".join(part for part in parts if part))
    sections += [f"## {heading}\n\n{note}" for heading, note in told.items()]
    verdicts = [line[-1] for line in goal_lines(rows) if line[-1] not in ("reached", "open")]
    met = sum(said.startswith("met") for said in verdicts)
    close = verdicts.count("within the spread")
    machine = table(["", ""], [[name, text] for name, text in more["machine"].items()], set())
    template = (HERE / "performance.md.in").read_text()
    missed = len(verdicts) - met - close
    summary = f"Of {len(verdicts)} goals {met} are met, {close} within the spread, {missed} missed."
    for name, text in {"SUMMARY": summary, "GOALS": goal_table(rows),
                       "SECTIONS": "\n\n".join(sections), "MACHINE": machine, "DATE": more["date"]}.items():
        template = template.replace(f"@{name}@", text)
    return template


def report(results, docs):
    rows, more = load(results)
    shown = write_plots(rows, docs / "images")
    (docs / "performance.md").write_text(page(rows, more, shown))
    print(f"\n{goal_table(rows)}\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--quick", action="store_true", help="fewer repetitions, no instruction counts")
    parser.add_argument("--report", action="store_true", help="do not measure")
    parser.add_argument("--glance", action="store_true", help="only see that everything works")
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/benchmark", help="where it was built")
    parser.add_argument("programs", nargs="*", help="LookUpBenchmark, say; all, unless some are named")
    arguments = parser.parse_args()
    there = {path.stem: arguments.build / "benchmarks" / path.stem for path in sorted(HERE.glob("*Benchmark.cpp"))}
    for name in {*there, *arguments.programs}:
        if name not in QUESTIONS or name not in there:
            raise SystemExit(f"there is no {name} among {', '.join(name for name in QUESTIONS if name in there)}")
    chosen = {name: there[name] for name in QUESTIONS if name in (arguments.programs or there)}
    if arguments.glance:
        with tempfile.TemporaryDirectory() as folder:
            measure.glance(chosen, pathlib.Path(folder, "results"))
            report(pathlib.Path(folder, "results"), pathlib.Path(folder, "docs"))
        return
    results = arguments.build / "results"
    if not arguments.report:
        measure.measure(chosen, results, arguments.quick, count=not arguments.quick)
    report(results, ROOT / "docs")


if __name__ == "__main__":
    main()
