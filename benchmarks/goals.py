"""What the library is to reach beside whom, and in which order the questions are told."""

import dataclasses
import re

OURS = "ours"

# In place of a peer: the figure itself is held to the goal, or how the time grows when the size doubles.
ITSELF = "itself"
GROWTH = "half the size"

# The programs, and the headings that their rows stand under.
QUESTIONS = {
    "AnyBenchmark": "Values",
    "KeyBenchmark": "Keys",
    "LookUpBenchmark": "Looking values up",
    "ImportBenchmark": "Reading a sheet",
    "ExportBenchmark": "Writing a sheet",
    "MemoryBenchmark": "Memory",
    "WholeStyleBenchmark": "Whole styles",
    "SheetBenchmark": "Large sheets",
    "DependencyBenchmark": "Dependencies",
    "GrowthBenchmark": "Growth",
}


@dataclasses.dataclass(frozen=True)
class Goal:
    """Ours is at most `reach` times the peer; `beyond` is what would be better still. Either may be None."""

    workload: str  # a regular expression for the whole name
    peer: str
    reach: float | None
    beyond: float | None = None

    def concerns(self, workload):
        return re.fullmatch(self.workload, workload) is not None


MAP = "std::map<const void*, Any>"
TEXTS = "std::map<wstring,any>"

GOALS = [
    Goal(r"(make and destroy|copy and destroy|assign|compare|read|relocate) a (number|pointer).*", "std::any", 1.0),
    Goal(r"(copy and destroy|assign|compare|read) a (number|pointer).*", "std::variant", None, 1.2),
    Goal(r"copy and destroy a wide text of 10", "QVariant", 1.0),
    Goal(r"(assign|compare) a wide text of 10.*", "std::any", 1.0),
    Goal(r"intern a known name among 10000", "std::unordered_set<wstring>", 1.0, 0.6),
    Goal(r"intern a known name among 10000 by \d+ threads", "std::unordered_set<wstring> and mutex", None, 1.0),
    Goal(r"compare two keys", "pointer", 1.0),
    Goal(r"(find|miss) a key among 24", "std::map<const void*>", 1.1),
    Goal(r"look up/(hit at the root|default)/parents \d+", MAP, 1.2, 1.0),
    Goal(r"look up/hit at the root/parents [1-9]\d*", TEXTS, 0.35),
    Goal(r"look up/through owners/.*", "look-ups in std::map<const void*, Any>", 2.5),
    Goal(r"import/\d+", "RapidJSON events", 1.0, 0.6),
    Goal(r"import/\d+", "nlohmann::ordered_json", 0.4),
    Goal(r"first import in a process/\d+", "RapidJSON events", 1.0, 0.6),
    Goal(r"parse/\d+", "simdjson document", None, 3.0),
    Goal(r"export/\d+", "RapidJSON writer", 1.0),
    Goal(r"export/\d+", "limit: copying the texts", None, 1.5),
    Goal(r"memory/bytes per property", TEXTS, 0.70),
    Goal(r"memory/blocks per property", TEXTS, 0.75),
    Goal(r"memory/peak of an import per byte that stays", ITSELF, 2.5),
    Goal(r"whole style/.*", MAP, 1.2),
    Goal(r"sheet/find by name/\d+", "std::map<wstring> folding ASCII", None, 1.5),
    Goal(r"(sheet|dependencies|growth)/.*", GROWTH, 2.3),
]
