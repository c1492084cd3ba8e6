"""Every public operation of the exported headers has its place in docs/guarantees.md, and every operation and suite
that the page names is found in the tests that prove it."""

import re

import tree

# What definitions override is described as a whole; what is no operation of its own needs no row.
PASSED_OVER = {
    "GetDefaultValue", "GetNewSinceVersion", "GetElementCategoryName", "NeedAdjustementsForStyleIO",
    "DestroyPropertyData", "MovePropertyData", "SetOwner", "ProcessProperty", "MergeProperty",
    "MergeParentProperty", "FlattenProperty", "IsEqual", "IsDeprecated", "IsLess", "ProcessStylesInProperty",
    "CheckType", "IsTemporary", "IsSubstyle", "SetName", "CloneInto", "MoveInto", "Assign", "IsEnum",
    "GetEnumValue", "GetCategory", "HoldsType", "Holder", "HolderInterface", "ValueOf", "BaseStyleProperty",
    "GetPropertyName", "IStyleSheetDuplicationContext", "BadAnyCast", "CopyBytes", "MakeEmpty",
}

page = tree.read("docs/guarantees.md")
named = set(re.findall(r"\b[A-Z]\w+", " ".join(re.findall(r"`([^`]*)`", page))))
problems = []
for path in tree.files(".h", under=("include/styles/",)):
    if path.startswith("include/styles/testing/"):
        continue  # a failed test ends with it
    text = re.sub(r"//.*", "", tree.read(path))
    text = re.sub(r"private:.*?(?=\n};)", "", text, flags=re.DOTALL)
    for name in re.findall(r"^[ \t]+(?:\[\[nodiscard\]\] |virtual |static |STYLES_API )*[\w:<>,&* ]+?[ &*]([A-Z]\w+)\(", text,
                           re.MULTILINE):
        if name not in named and name not in PASSED_OVER and not name.isupper():
            problems.append(f"{path}: {name} has no row in docs/guarantees.md")

proofs = "\n".join(tree.read(path) for path in tree.files(".cpp", ".h", under=("tests/faults/",)))
for suites in re.findall(r"^Proved by (.*)$", page, re.MULTILINE):
    for suite in re.findall(r"`(\w+)`", suites):
        if not re.search(rf"\bTEST(_P|_F)?\({suite},", proofs):
            problems.append(f"docs/guarantees.md: there is no suite {suite} in tests/faults")
for row in re.findall(r"^\| (`[^|]*) \|", page, re.MULTILINE):
    for operation in re.findall(r"`([^`]*)`", row):
        name = operation.split("::")[-1].removeprefix("~").removeprefix("operator")
        if not re.search(rf"(?<!\w){re.escape(name)}(?!\w)", proofs):
            problems.append(f"docs/guarantees.md: {operation} is not called in tests/faults")
tree.finish("guarantees", sorted(set(problems)))
