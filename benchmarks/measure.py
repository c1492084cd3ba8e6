"""Runs the benchmark programs and keeps what they say, raw, in a folder: a file for each program and one for what else
there is to know (`more.json`)."""

import concurrent.futures
import dataclasses
import datetime
import json
import os
import pathlib
import platform
import re
import shutil
import subprocess
import tempfile

from goals import OURS


@dataclasses.dataclass(frozen=True)
class Plan:
    """How a program is measured. What takes long is repeated less often, and instructions are counted of small rows."""

    repetitions: int = 9
    seconds: float = 0.03  # that a row runs at least, in each repetition
    counted: tuple[str, ...] = ()  # parts of the names of the rows whose instructions are counted
    smallest: str = "."  # the rows that show in no time that the program works


PLANS = {
    "AnyBenchmark": Plan(11, 0.01, ("",)),
    "KeyBenchmark": Plan(11, 0.02, ("",)),
    "LookUpBenchmark": Plan(11, 0.02, ("",)),
    "ImportBenchmark": Plan(7, 0.1, ("/1000/",), "/100/"),
    "ExportBenchmark": Plan(7, 0.1, ("/1000/",), "/100/"),
    "MemoryBenchmark": Plan(1),
    "WholeStyleBenchmark": Plan(11, 0.02, ("",)),
    "SheetBenchmark": Plan(3, smallest="/(125000|2500)/"),
    "DependencyBenchmark": Plan(5, smallest="/12500/"),
    "GrowthBenchmark": Plan(3, smallest="/(1|125000|12500|1250)/"),
}

# The first import in a process pays for pages of memory and for keys that are new.
FIRST_PROGRAM = "ImportBenchmark"
FIRST_ROW = "import/10000"
FIRST_CONTENDERS = (OURS, "RapidJSON events")
FIRST_TIMES = 9


def run(*command):
    """What the command says; what it complains of only when it fails."""
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True)
    if done.returncode != 0:
        raise SystemExit(f"{done.stderr}{' '.join(command)} failed with status {done.returncode}")
    return done.stdout


def say(text):
    print(f"    {text}", flush=True)


def time_rows(program, row_filter, plan, pin):
    """The runs of the rows that the filter lets through, as Google Benchmark describes them."""
    command = [str(program), f"--benchmark_filter={row_filter}", "--benchmark_format=json",
               f"--benchmark_repetitions={plan.repetitions}", f"--benchmark_min_time={plan.seconds}"]
    if plan.repetitions > 1:
        command.append("--benchmark_enable_random_interleaving=true")
    if pin and shutil.which("taskset"):
        command = ["taskset", "-c", str(max(os.sched_getaffinity(0))), *command]
    said = run(*command)
    return json.loads(said)["benchmarks"] if said.strip() else []


def time_program(program, plan):
    """Rows of one thread stay on one processor, and the others get all."""
    runs = []
    listed = run(str(program), "--benchmark_list_tests").splitlines()
    if any("/threads:" not in name for name in listed):
        runs += time_rows(program, "-/threads:", plan, pin=True)
    if any("/threads:" in name for name in listed):
        runs += time_rows(program, "/threads:", plan, pin=False)
    return [run for run in runs if run["run_type"] == "iteration"]


def first_imports(program):
    """Nanoseconds per style of each contender, the contenders taking turns."""
    listed = run(str(program), "--benchmark_list_tests").splitlines()
    contenders = [name for name in FIRST_CONTENDERS if f"{FIRST_ROW}/{name}" in listed]
    times = {name: [] for name in contenders}
    for _ in range(FIRST_TIMES):
        for name in contenders:
            times[name].append(float(run(str(program), f"--run-once={FIRST_ROW}/{name}")))
    return times


def count_instructions(program, part):
    """{row: instructions per item} of the rows with `part` in their names."""
    counts = {}
    with tempfile.TemporaryDirectory() as folder:
        run("valgrind", "--tool=callgrind", "--instr-atstart=no", f"--callgrind-out-file={folder}/counted",
            str(program), "--count-instructions", part)
        for path in pathlib.Path(folder).iterdir():
            text = path.read_text()
            named = re.search(r"^desc: Trigger: Client Request: (.*)=(\d+)$", text, re.MULTILINE)
            total = re.search(r"^(?:summary|totals): (\d+)", text, re.MULTILINE)
            if named and total:
                counts[named[1]] = int(total[1]) / int(named[2])
    return counts


def version_of(package):
    told = subprocess.run(["dpkg-query", "-W", "-f", "${source:Upstream-Version}", package], capture_output=True,
                          text=True)
    return told.stdout if told.returncode == 0 else ""


def describe_machine():
    """What has a bearing on the figures, and nothing that tells whose machine it is."""
    cpu = pathlib.Path("/proc/cpuinfo").read_text()
    memory = pathlib.Path("/proc/meminfo").read_text()
    flags = re.search(r"^flags\s*: (.*)$", cpu, re.MULTILINE)
    vectors = [name for name in ("avx512f", "avx2") if flags and name in flags[1].split()]
    model = re.search(r"^model name\s*: (.*)$", cpu, re.MULTILINE)
    system = platform.freedesktop_os_release().get("PRETTY_NAME", "Linux")
    peers = {"RapidJSON": "rapidjson-dev", "nlohmann-json": "nlohmann-json3-dev", "simdjson": "libsimdjson-dev",
             "Qt": "qt6-base-dev", "Boost": "libboost1.81-dev", "GLib": "libglib2.0-dev",
             "Google Benchmark": "libbenchmark-dev"}
    versions = {name: version_of(package) for name, package in peers.items()}
    return {
        "Processor": f"{model[1] if model else platform.machine()}, {os.cpu_count()} cores"
                     + (f", with {vectors[0].upper()}" if vectors else ""),
        "Memory": f"{round(int(re.search(r'MemTotal: *([0-9]+)', memory)[1]) / 2**20)} GiB",
        "System": f"{system}, {platform.machine()}, {' '.join(platform.libc_ver())}",
        "Compiler": run("g++", "--version").splitlines()[0],
        "Flags": "-O2 -DNDEBUG, shared libraries",
        "Peers": ", ".join(f"{name} {version}" for name, version in versions.items() if version),
    }


def measure(programs, results, quick, count):
    """Measures the programs (paths by name) and keeps the results, leaving those of other programs as they were."""
    results.mkdir(parents=True, exist_ok=True)
    more_path = results / "more.json"
    more = json.loads(more_path.read_text()) if more_path.exists() else {}
    more["machine"] = describe_machine()
    more["date"] = datetime.date.today().isoformat()
    for name, program in programs.items():
        plan = PLANS.get(name, Plan())
        if quick:
            plan = dataclasses.replace(plan, repetitions=min(plan.repetitions, 3), seconds=plan.seconds / 2)
        say(f"{name}: timing")
        (results / f"{name}.json").write_text(json.dumps(time_program(program, plan), indent=1))
        if name == FIRST_PROGRAM:
            more["first"] = first_imports(program)
    if count and shutil.which("valgrind"):
        parts = [(name, part) for name in programs for part in PLANS.get(name, Plan()).counted]
        say("counting instructions")
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            counted = pool.map(lambda pair: count_instructions(programs[pair[0]], pair[1]), parts)
            for (name, _), counts in zip(parts, counted):
                more.setdefault("instructions", {}).setdefault(name, {}).update(counts)
    more_path.write_text(json.dumps(more, indent=1))


def glance(programs, results):
    """Runs the smallest rows of each program once, to see that they work; the times say nothing."""
    results.mkdir(parents=True, exist_ok=True)
    for name, program in programs.items():
        plan = PLANS.get(name, Plan())
        say(name)
        runs = time_rows(program, plan.smallest, Plan(1, 0.001), pin=False)
        if not runs:
            raise SystemExit(f"{name} has no rows")
        (results / f"{name}.json").write_text(json.dumps(runs))
    (results / "more.json").write_text(json.dumps({"machine": describe_machine(),
                                                   "date": datetime.date.today().isoformat()}))
