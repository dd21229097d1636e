#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Configures an application that asks for components which are not there, and compares CMake's message:
#   missing_component.sh BUILD WORK
set -euo pipefail
build=$1 work=$2
rm -rf "$work"
mkdir -p "$work/application"
cmake --install "$build" --prefix "$work/prefix" --component Runtime >/dev/null
cmake --install "$build" --prefix "$work/prefix" --component Development >/dev/null

failed=0

# configure ARGUMENTS…: configures an application that calls find_package(KinovaneCore ARGUMENTS…).
configure() {
    cat >"$work/application/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(application LANGUAGES CXX)
find_package(KinovaneCore $*)
message(STATUS "found: \${KinovaneCore_FOUND}, testkit: \${KinovaneCore_testkit_FOUND}")
END
    cmake -S "$work/application" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" 2>&1
}

# refuses SENTENCE ARGUMENTS…
refuses() {
    local output status=0 sentence=$1
    shift
    output=$(configure "$@") || status=$?
    if [ "$status" -eq 0 ] || ! grep -qxF "  $sentence" <<<"$output"; then
        echo "expected for '$*': $sentence"
        echo "actual:   $output (exit status $status)"
        failed=1
    fi
}

# accepts LINE ARGUMENTS…
accepts() {
    local output status=0 line=$1
    shift
    output=$(configure "$@") || status=$?
    if [ "$status" -ne 0 ] || ! grep -qxF -- "-- $line" <<<"$output"; then
        echo "expected for '$*': $line"
        echo "actual:   $output (exit status $status)"
        failed=1
    fi
}

missing="The component 'testkit' of KinovaneCore is not installed."
accepts 'found: 1, testkit: ' 1.0 REQUIRED
accepts 'found: 1, testkit: FALSE' 1.0 REQUIRED OPTIONAL_COMPONENTS testkit
refuses "$missing" 1.0 REQUIRED COMPONENTS testkit
refuses "KinovaneCore has no component 'player'; its only component is testkit." 1.0 REQUIRED COMPONENTS player

cmake --install "$build" --prefix "$work/prefix" --component testkit >/dev/null
accepts 'found: 1, testkit: TRUE' 1.0 REQUIRED COMPONENTS testkit
exit "$failed"
