#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs the library that was built in BUILD and builds a small application against it, with CMake and with
# pkg-config: install_and_use.sh SOURCE BUILD WORK VERSION
set -euo pipefail
source=$1 build=$2 work=$3 version=$4
prefix=$work/prefix
rm -rf "$work"
mkdir -p "$work"

cmake --install "$build" --prefix "$prefix"

application=$source/tests/package/consumer
run() { "$source/tests/package/run_application.sh" "$source" "$version" "$1"; }

cmake -S "$application" -B "$work/application" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DEXPECTED_VERSION="$version" \
    -DCMAKE_MODULE_PATH="$source/tests/package/without_find_boost"
cmake --build "$work/application"
run "$work/application/application"

PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name kinovane-core.pc)")
export PKG_CONFIG_PATH
packageVersion=$(pkg-config --modversion kinovane-core)
if [ "$packageVersion" != "$version" ]; then
    echo "the version of the pkg-config file is $packageVersion instead of $version"
    exit 1
fi
read -ra flags <<<"$(pkg-config --cflags --libs kinovane-core)"
# shellcheck disable=SC2086 # several flags
"${CXX:-c++}" -std=c++20 ${CXXFLAGS:-} "$application/main.cpp" "${flags[@]}" -o "$work/application/by-pkg-config"
LD_LIBRARY_PATH=$(dirname "$PKG_CONFIG_PATH") run "$work/application/by-pkg-config"
