#!/usr/bin/env bash
# Formatting of the whole tree, the order of the layers, and clang-tidy over the product's code.
# usage: cmake/lint.sh <build folder with compile_commands.json>
set -euo pipefail
cd "$(dirname "$0")/.."
build=$1
status=0

mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
echo "clang-format: ${#sources[@]} files"
clang-format --dry-run --Werror "${sources[@]}" || status=1

# A folder may include itself and the folders before it.
echo "layers"
layers=(app orch widgets dispatch monitor maintenance upgrade login main)
for index in "${!layers[@]}"; do
    folder=${layers[$index]}
    above=$(IFS='|'; echo "${layers[*]:$((index + 1))}")
    [ -n "$above" ] || continue
    if grep -nE "^#include \"($above)/" "src/$folder"/*.h "src/$folder"/*.cpp |
        grep -v '^src/app/main.cpp:'; then
        echo "src/$folder includes a layer above it" >&2
        status=1
    fi
done
if grep -rnE '^#include "(src|tests|sim|bench)/' src; then
    echo "src includes code that is not shipped" >&2
    status=1
fi
if grep -rnE '^#include "(app|orch|widgets|dispatch|monitor|maintenance|upgrade|login|main)/' sim; then
    echo "the simulator includes the client's code" >&2
    status=1
fi

mapfile -t checked < <(git ls-files --cached --others --exclude-standard 'src/*.cpp' 'sim/*.cpp' ':!sim/tests')
echo "clang-tidy: ${#checked[@]} files"
printf '%s\0' "${checked[@]}" |
    xargs -0 -n 8 -P 2 clang-tidy --quiet -p "$build" --warnings-as-errors='*' 2>/dev/null || status=1
exit $status
