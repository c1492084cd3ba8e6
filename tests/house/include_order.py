"""The headers stand on each other like floors, and a header includes only what stands below it.

The floors are those of docs/how-it-is-built.md. Also checked: no public header includes a private one or the JSON
library, and one private source file alone knows that library.
"""

import posixpath
import re

import tree

FLOORS = {
    "StylesApi.h": 0, "StylesFwd.h": 0,
    "Any.h": 1, "PropertyKey.h": 1, "StylesIO.h": 1,
    "StyleProperty.h": 2, "TextPolicy.h": 2, "ValueValidators.h": 2,
    "StyleManager.h": 3,
    "Style.h": 4,
    "StyleSheet.h": 5,
    "SubStyle.h": 6, "StyleOverrides.h": 6, "StylePresetManager.h": 6,
    "Styles.h": 7,
    "testing/StylesPrinters.h": 8, "testing/StylesMatchersDetail.h": 9, "testing/StylesMatchers.h": 10,
}

# Headers for the tests of hosts, and the library that hosts have for it.
TESTING = "styles/testing/"
TEST_LIBRARY = "gmock/gmock.h"

# The highest header that the sources of a folder may include. Three doors open upwards: the definitions call Style,
# Style finds its category (which is below), and its JSON asks the sheet for names.
SOURCE_FLOORS = {
    "src/core/": "Style.h",
    "src/properties/": "Style.h",
    "src/registry/": "StyleManager.h",
    "src/sheet/": "StyleSheet.h",
    "src/utils/": "StyleOverrides.h",
    "src/presets/": "StylePresetManager.h",
}
DOORS = {"src/core/StyleJson.cpp": "StyleSheet.h"}

# Which support libraries a support library may use.
PLATFORM = {
    "VelPlatform": {"VelPlatform"},
    "VelUtils": {"VelPlatform", "VelUtils"},
    "VelPref": {"VelPlatform", "VelUtils", "VelPref"},
}


def includes(name):
    """(line, included path); a public header that names its neighbour alone is given with its folder"""
    folder = posixpath.dirname(name)
    for number, line in enumerate(tree.read(name).split("\n")):
        match = re.match(r'\s*#\s*include\s+([<"])([^>"]+)[>"]', line)
        if not match:
            continue
        path = match.group(2)
        neighbour = posixpath.join(folder, path)
        if match.group(1) == '"' and neighbour.startswith("include/") and (tree.ROOT / neighbour).is_file():
            path = neighbour.removeprefix("include/")
        yield number + 1, path


def main():
    problems = []
    public = {name.removeprefix("include/") for name in tree.files(".h", under=("include/",))}
    platform = {name.removeprefix("platform/include/") for name in tree.files(".h", under=("platform/include/",))}

    for header in sorted(public):
        if header.removeprefix("styles/") not in FLOORS:
            problems.append(f"include/{header}: stands on no floor; add it to {__file__}")

    def floor_of(path):
        return FLOORS.get(path.removeprefix("styles/"), -1)

    for header in sorted(public):
        name = "include/" + header
        for line, path in includes(name):
            where = f"{name}:{line}"
            if path in public:
                if floor_of(path) >= floor_of(header):
                    problems.append(f"{where}: {path} does not stand below {header}")
            elif path == TEST_LIBRARY and header.startswith(TESTING):
                continue
            elif "/" in path and path not in platform:
                problems.append(f"{where}: {path} is neither public nor of the standard library")
            elif path.endswith(".h") and "/" not in path:
                problems.append(f"{where}: {path} is no public header")

    for name in tree.files(".h", ".cpp", under=("src/",)):
        folder = next((folder for folder in SOURCE_FLOORS if name.startswith(folder)), None)
        if folder is None:
            problems.append(f"{name}: lies in no folder of the engine")
            continue
        highest = floor_of(DOORS.get(name, SOURCE_FLOORS[folder]))
        for line, path in includes(name):
            if path in public and floor_of(path) > highest:
                problems.append(f"{name}:{line}: {path} stands above {folder}")

    for name in tree.files(".h", ".cpp", under=("platform/",)):
        library = name.split("/")[2]
        for line, path in includes(name):
            used = path.split("/")[0]
            if path.startswith("styles/") or (used in PLATFORM and used not in PLATFORM.get(library, PLATFORM)):
                problems.append(f"{name}:{line}: {library} does not stand on {path}")

    problems += [f"{name}: only platform/src/VelUtils/JsonLibrary.h and .cpp may include the JSON library"
                 for name in tree.files(".h", ".cpp", under=("include/", "src/", "platform/", "examples/"))
                 if any(path.startswith("boost/") for _, path in includes(name))
                 and not name.startswith("platform/src/VelUtils/JsonLibrary.")]
    problems += [f"{name}: only private source files of the platform may include JsonLibrary.h"
                 for name in tree.files(".h", ".cpp", under=("include/", "src/", "platform/", "examples/"))
                 if any(path == "JsonLibrary.h" for _, path in includes(name))
                 and not name.endswith(".cpp")]
    tree.finish(f"{len(public)} public headers, {len(platform)} of the platform", problems)


main()
