#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the library as a part of another project: subproject.sh SOURCE WORK VERSION
# WORK/build holds a static library afterwards, ready to be installed.
set -euo pipefail
source=$1 work=$2 version=$3
rm -rf "$work"
mkdir -p "$work"

fail() {
    echo "$*"
    exit 1
}

# configure OPTIONS…: without optimisation, which makes the build shorter.
configure() {
    rm -rf "$work/build"
    cmake -S "$source/tests/package/parent" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=None \
        -DCMAKE_MODULE_PATH="$source/tests/package/without_find_boost" -DKINOVANE_SOURCE="$source" "$@" >"$work/configure.log" 2>&1 || fail "$(cat "$work/configure.log")"
}

# The library is of the kind that the parent project chose, and sets nothing for the parent's own libraries.
while read -r expected options; do
    # shellcheck disable=SC2086 # an empty list of options is no argument
    configure $options
    actual=$(cat "$work/build/kind.txt")
    [ "$actual" = "$expected" ] || fail "with options '$options': expected $expected, found $actual"
    [ -n "$options" ] || ! grep '^BUILD_SHARED_LIBS' "$work/build/CMakeCache.txt" || fail 'BUILD_SHARED_LIBS was set'
done <<'ROWS'
SHARED_LIBRARY -DBUILD_SHARED_LIBS=ON
STATIC_LIBRARY -DBUILD_SHARED_LIBS=OFF
STATIC_LIBRARY
SHARED_LIBRARY -DBUILD_SHARED_LIBS=ON -DKINOVANE_FETCH=ON
ROWS

# Nothing of the library is installed with the parent project, unless asked for.
for options in -DKINOVANE_FETCH=OFF -DKINOVANE_FETCH=ON; do
    configure "$options"
    cmake --install "$work/build" --prefix "$work/prefix" >/dev/null
    installed=$(cd "$work/prefix" && find . ! -type d)
    [ "$installed" = ./share/parent/CMakeLists.txt ] || fail "$options installs $installed"
    rm -rf "$work/prefix"
done

# The application's tests run a simulator from the build tree.
configure -DKINOVANE_BUILD_SIMULATORS=ON
cmake --build "$work/build" --target pi
[ "$(cat "$work/build/pi.txt")" = 'pi 0.0.0-simulator' ] || fail "the simulator printed '$(cat "$work/build/pi.txt")'"

configure -DKINOVANE_INSTALL=ON -DKINOVANE_FETCH=ON
cmake --build "$work/build"
"$source/tests/package/run_application.sh" "$source" "$version" "$work/build/application"
