#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Tries scripts/abi with a small library in several versions, each beside the one that was recorded: abi.sh SOURCE
set -euo pipefail
check=$1/scripts/abi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

failed=0

# library NAME FLAGS FIELDS FUNCTION: types have to be in a file with the name of a public header. abidw does not find
# that file in the debug information of clang; the recorded library is made by g++ as well.
library() {
    mkdir "$work/$1"
    echo "namespace kinovane { struct Record { int first; $3 }; }" >"$work/$1/film_project.hpp"
    printf '#include "film_project.hpp"\nnamespace kinovane { %s }\n' "$4" >"$work/$1/source.cpp"
    # shellcheck disable=SC2086 # several flags
    g++ -shared -fPIC $2 "$work/$1/source.cpp" -Wl,-soname,libRecord.so.1 -o "$work/$1.so"
}

# expect STATUS MESSAGE ARGUMENTS…: compares the last line.
expect() {
    local status=0 actual expected=$2
    actual=$("$check" "${@:3}" 2>&1 | tail -n 1) || status=$?
    if [ "$status" -ne "$1" ] || [ "$actual" != "$expected" ]; then
        echo "arguments: ${*:3}"
        echo "expected:  $expected"
        echo "actual:    $actual (exit status $status)"
        failed=1
    fi
}

read='int read(const Record& record) { return record.first; }'
library recorded -g '' "$read"
library same '-g -O2' '' "$read"
library with_function -g '' "$read int write(Record& record) { return record.first = 1; }"
library with_field -g 'int second;' "$read"
library without_function -g '' 'int write(Record& record) { return record.first = 1; }'
library without_debug -g0 '' "$read"
echo text >"$work/text"
record=$work/record.abi.xz

usage='usage: scripts/abi [--record] [LIBRARY [RECORD]]'
expect 2 "$usage" --other
expect 2 "$usage" "$work/same.so" "$record" more
expect 1 "scripts/abi: there is no library $work/none.so; build it first" "$work/none.so" "$record"
expect 1 "scripts/abi: $work/text is not a shared library" "$work/text" "$record"
expect 1 "scripts/abi: $work/without_debug.so has no debug information" "$work/without_debug.so" "$record"
expect 1 "scripts/abi: there is no record $record; scripts/abi --record makes it" "$work/same.so" "$record"
expect 0 '' --record "$work/recorded.so" "$record"
expect 0 '' "$work/same.so" "$record"
expect 1 'scripts/abi: the binary interface has additions that are not recorded; scripts/abi --record records them' \
    "$work/with_function.so" "$record"
breaks="scripts/abi: the binary interface differs from $record in a way that breaks programs (docs/compatibility.md)"
expect 1 "$breaks" "$work/with_field.so" "$record"
expect 1 "$breaks" "$work/without_function.so" "$record"
exit "$failed"
