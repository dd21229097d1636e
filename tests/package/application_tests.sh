#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs what an application's developer installs, moves it, and builds and runs the tests of examples/application_tests
# against it: application_tests.sh SOURCE BUILD WORK
set -euo pipefail
source=$1 build=$2 work=$3
rm -rf "$work"
mkdir -p "$work"

# Blanks in a path must not matter.
for component in Runtime Development testkit; do
    cmake --install "$build" --prefix "$work/before" --component "$component" >/dev/null
done
mv "$work/before" "$work/the prefix"

quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log" && exit 1; }; }
quietly cmake -S "$source/examples/application_tests" -B "$work/studio" -G Ninja -DCMAKE_BUILD_TYPE=None \
    -DCMAKE_PREFIX_PATH="$work/the prefix"
quietly cmake --build "$work/studio"
quietly ctest --test-dir "$work/studio" --no-tests=error --output-on-failure
grep -q '^100% tests passed, 0 tests failed out of 12' "$work/log" || { cat "$work/log" && exit 1; }
