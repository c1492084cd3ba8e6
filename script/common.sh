# What the scripts share; each sources this file. It stops a script at the first error, goes to the top of the
# tree and offers `say` and `stop`.
# shellcheck shell=bash
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# say TEXT: what the script does next.
say() {
    printf '\n==> %s\n' "$*"
}

# stop TEXT: one clear line, and the end.
stop() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Compiled objects are shared between the builds of one machine, where ccache is there to do it.
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_NOHASHDIR=1 CCACHE_BASEDIR="$PWD"
fi
