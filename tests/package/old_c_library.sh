#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Configuring with a C library that lacks what the library calls stops with a sentence that names the minimum:
#   old_c_library.sh SOURCE BUILD
set -euo pipefail
source=$1 build=$2
expected='KinovaneCore needs glibc 2.34 or newer on Linux, because it starts programs with posix_spawn_file_actions_addclosefrom_np. This C library does not have it; musl is not supported.'

rm -rf "$build"
mkdir -p "$build/include"
# Before the headers of the system. It declares none of the functions.
echo >"$build/include/spawn.h"
status=0
output=$(CPATH="$build/include" cmake -S "$source" -B "$build/tree" -DKINOVANE_BUILD_TESTS=OFF \
    -DKINOVANE_BUILD_TOOLS=OFF -DKINOVANE_BUILD_SIMULATORS=OFF 2>&1) || status=$?
if [ "$status" -eq 0 ] || [[ $(tr -s ' \n' ' ' <<<"$output") != *"$expected"* ]]; then
    echo "expected: $expected"
    echo "actual (exit status $status): $output"
    exit 1
fi
