#!/usr/bin/env bash
# What no compiler checks: formatting, who includes whom, the size of files, and clang-tidy over the
# product and the simulator. Prints how much of the code is tests, too.
# usage: cmake/lint.sh <build folder with compile_commands.json>
set -euo pipefail
cd "$(dirname "$0")/.."
build=$1
status=0

fail() {
    echo "lint: $1" >&2
    status=1
}

all=$(git ls-files --cached --others --exclude-standard '*.cpp' '*.h' '*.py' '*.sh') || all=
if [ -z "$all" ]; then
    fail "git names no sources, so there is nothing to check; it needs a working copy"
    exit 1
fi
chosen() { grep -E "$1" <<<"$all"; }
lines() { xargs -d '\n' cat -- | wc -l; }

mapfile -t formatted < <(chosen '\.(cpp|h)$')
echo "clang-format: ${#formatted[@]} files"
clang-format --dry-run --Werror "${formatted[@]}" || fail "clang-format would write these otherwise"

# A folder may include itself and those that are built before it.
mapfile -t layers < <(sed -n 's/^add_subdirectory(\(.*\))$/\1/p' src/CMakeLists.txt)
echo "layers: ${layers[*]}"
for index in "${!layers[@]}"; do
    folder=${layers[$index]}
    above=$(IFS='|'; echo "${layers[*]:$((index + 1))}")
    if [ -n "$above" ] && grep -rnE "^#include \"($above)/" "src/$folder" --exclude=main.cpp; then
        fail "src/$folder includes a layer above it"
    fi
done
grep -rnE '^#include "(\.\.|src|tests|sim|bench)/' src && fail "src includes from outside its folders"
grep -rnE "^#include \"($(IFS='|'; echo "${layers[*]}"))/" sim --exclude-dir=tests &&
    fail "the simulator includes the client"

# A header and its source count as one file. Left out: a relaunch gives up the single instance,
# whose socket lies in the platform's folder.
echo "include cycles"
grep -rHE '^#include "[a-z]+/[^"]+\.h"' src |
    sed -nE 's#^src/([^:]*)\.(cpp|h):\#include "(.*)\.h".*#\1 \3#p' |
    grep -vx 'app/Platform app/SingleApp' |
    tsort >/dev/null || fail "these files include each other"

echo "windows"
grep -rnE '^#include "(login/DlgLogin|main/DlgMain)\.h"' src |
    grep -vE '^src/(app/main\.cpp:|(login/DlgLogin|main/DlgMain)[A-Za-z]*\.cpp:.*"\2\.h")' &&
    fail "only a window's own sources and main.cpp include its header"

echo "sizes"
chosen '^src/.*\.(cpp|h)$' | xargs -d '\n' wc -l | awk '$2 != "total" && $1 > 400' | grep . &&
    fail "a file of src has more than 400 lines"
product=$(chosen '^src/.*\.(cpp|h)$' | lines)
tests=$(chosen '^(tests|sim/tests)/' | lines)
echo "tests: $tests lines, $((100 * tests / product)) % of the $product in src"

mapfile -t checked < <(chosen '^(src|sim)/.*\.cpp$' | grep -v '^sim/tests/')
echo "clang-tidy: ${#checked[@]} files"
printf '%s\0' "${checked[@]}" |
    xargs -0 -n 8 -P 2 clang-tidy --quiet -p "$build" --warnings-as-errors='*' 2>/dev/null ||
    fail "clang-tidy is not content"

[ $status -eq 0 ] && echo "lint: nothing to mend"
exit $status
