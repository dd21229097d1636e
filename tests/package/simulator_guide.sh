#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Checks that docs/guide/testing.md lists everything that a simulator's behaviour depends on, and nothing else: the
# arguments of its usage, the environment variables and files in its sources, and the values that it knows itself:
#   simulator_guide.sh SOURCE PROGRAMS
set -euo pipefail
source=$1 programs=$2
guide=$source/docs/guide/testing.md
failed=0

# in_guide HEADING: the first column of the section's tables, where it is in code style, below the tables' headings.
in_guide() {
    awk -v heading="## $1" '
        /^## / { inside = $0 == heading }
        inside && /^\| `/ && !/`[A-Z]+_MISBEHAVE` \| Effect/ { split($0, part, "`"); print part[2] }' "$guide"
}

# in_program NAME
in_program() {
    local variable output
    "$programs/$1" 2>&1 | sed -nE "s/^(usage: |       )$1 //p" || true
    # Variables, and the file of pi. The film tool also prints two variables, which are meant for the coding agent.
    grep -ohE '"([A-Z]+(_[A-Z]+)+|VERSION)"' "$source/simulators/$1"/*.cpp | tr -d '"' |
        grep -vxE 'QUEX_FILM_TOOLS_(PLUGIN|RUN_MANIFEST)' || true
    variable=$(tr a-z A-Z <<<"$1")_MISBEHAVE
    case $1 in
    film) set -- film recover "$PWD/run.json" ;;
    vistrel) set -- vistrel production import-film "$PWD/handoff.json" --output json ;;
    quexrun) set -- quexrun agent status --json ;;
    *) return 0 ;;
    esac
    output=$(env "$variable=unknown" "$programs/$1" "${@:2}" 2>&1) || true
    tr ' ' '\n' <<<"${output#*; known are }"
}

# compare HEADING NAME
compare() {
    local difference
    if ! difference=$(diff <(in_program "$2" | LC_ALL=C sort -u) <(in_guide "$1" | LC_ALL=C sort -u)); then
        echo "docs/guide/testing.md, \"$1\": missing (<) or not known to $2 (>):"
        grep '^[<>]' <<<"$difference"
        failed=1
    fi
}

compare 'The film tool' film
compare 'The importer' vistrel
compare 'The agent runtime' quexrun
compare 'The coding agent' pi

# The lines for CMake are those of the example.
while IFS= read -r line; do
    if [ -n "$line" ] && ! grep -qE "^ *$(sed 's/[][().*^$\\/]/\\&/g' <<<"$line")\$" \
        "$source/examples/application_tests/CMakeLists.txt"; then
        echo "docs/guide/testing.md: this line is not in examples/application_tests/CMakeLists.txt: $line"
        failed=1
    fi
done < <(sed -n '/^```cmake$/,/^```$/{/^```/!p}' "$guide")
exit "$failed"
