#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs the library and builds a small application against it, with CMake and with pkg-config:
#   install_and_use.sh shared|static SOURCE BUILD WORK
set -euo pipefail
kind=$1 source=$2 build=$3 work=$4
prefix=$work/prefix
rm -rf "$prefix" "$work/application"
mkdir -p "$work"

if [ "$kind" = static ]; then
    build=$work/library
    cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
        -DKINOVANE_BUILD_TESTS=OFF -DKINOVANE_BUILD_TOOLS=OFF -DKINOVANE_BUILD_SIMULATORS=OFF
    cmake --build "$build"
fi
cmake --install "$build" --prefix "$prefix"

application=$source/tests/package/consumer
film=$source/examples/a-lamp-for-the-late-ferry/run.json
expected='KinovaneCore 1.0: A Lamp for the Late Ferry, 59 assets'

check() {
    local actual
    actual=$("$@" "$film")
    if [ "$actual" != "$expected" ]; then
        echo "expected: $expected"
        echo "actual:   $actual"
        exit 1
    fi
}

cmake -S "$application" -B "$work/application" -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
cmake --build "$work/application"
check "$work/application/application"

export PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name kinovane-core.pc)")
read -ra flags <<<"$(pkg-config --cflags --libs kinovane-core)"
"${CXX:-c++}" -std=c++20 "$application/main.cpp" "${flags[@]}" -o "$work/application/by-pkg-config"
LD_LIBRARY_PATH=$(dirname "$PKG_CONFIG_PATH") check "$work/application/by-pkg-config"
