#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Configures applications that use the CMake package well and wrongly, and compares what CMake says:
#   package_misuse.sh SHARED_BUILD STATIC_BUILD WORK
set -euo pipefail
shared=$1 static=$2 work=$3
rm -rf "$work"
mkdir -p "$work/application"

failed=0

install_component() { cmake --install "$1" --prefix "$work/prefix" --component "$2" >/dev/null; }

# configure ARGUMENTS…: configures an application that calls find_package(KinovaneCore ARGUMENTS…).
configure() {
    cat >"$work/application/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(application LANGUAGES CXX)
\${BEFORE}
find_package(KinovaneCore $*)
set(type "")
if(TARGET KinovaneCore::KinovaneCore)
    get_target_property(type KinovaneCore::KinovaneCore TYPE)
endif()
message(STATUS "found: \${KinovaneCore_FOUND} \${type}, testkit: \${KinovaneCore_testkit_FOUND}")
END
    sed -i.before "s/^.{BEFORE}\$/$before/" "$work/application/CMakeLists.txt"
    # shellcheck disable=SC2086 # an empty list of options is no argument
    cmake -S "$work/application" -B "$work/build" --fresh -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" $options 2>&1
}
options='' before=''

# CMake breaks long lines.
words() { tr -s '\n ' ' ' <<<"$1"; }

# refuses SENTENCE ARGUMENTS…
refuses() {
    local output status=0 sentence=$1
    shift
    output=$(configure "$@") || status=$?
    if [ "$status" -eq 0 ] || [[ $(words "$output") != *" $sentence "* ]]; then
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

# missing COMPONENT
missing() { echo "The component '$1' of KinovaneCore is not installed."; }
# incompatible VERSION
incompatible() {
    echo "Could not find a configuration file for package \"KinovaneCore\" that is compatible with requested version \"$1\"."
}

install_component "$shared" Runtime
install_component "$shared" Development
accepts 'found: 1 SHARED_LIBRARY, testkit: ' 1.0 REQUIRED
accepts 'found: 1 SHARED_LIBRARY, testkit: ' 1.0 REQUIRED COMPONENTS shared
accepts 'found: 1 SHARED_LIBRARY, testkit: FALSE' 1.0 REQUIRED OPTIONAL_COMPONENTS testkit
refuses "$(missing testkit)" 1.0 REQUIRED COMPONENTS testkit
refuses "$(missing static)" 1.0 REQUIRED COMPONENTS static
refuses "KinovaneCore has no component 'player', only shared, static and testkit." \
    1.0 REQUIRED COMPONENTS player
refuses "$(incompatible 2.0)" 2.0 REQUIRED
refuses "$(incompatible 1.99)" 1.99 REQUIRED
options=-DCMAKE_DISABLE_FIND_PACKAGE_Boost=ON
accepts 'found: 1 SHARED_LIBRARY, testkit: ' 1.0 REQUIRED

install_component "$shared" testkit
options=''
accepts 'found: 1 SHARED_LIBRARY, testkit: TRUE' 1.0 REQUIRED COMPONENTS testkit

# Both libraries in one prefix.
install_component "$static" Development
accepts 'found: 1 SHARED_LIBRARY, testkit: ' 1.0 REQUIRED
accepts 'found: 1 STATIC_LIBRARY, testkit: TRUE' 1.0 REQUIRED COMPONENTS static testkit
refuses 'The components shared and static of KinovaneCore exclude each other.' 1.0 REQUIRED COMPONENTS shared static
before='find_package(KinovaneCore REQUIRED COMPONENTS shared)'
refuses 'This directory uses the shared library of KinovaneCore already.' 1.0 REQUIRED COMPONENTS static
before=''
for row in 'Boost|Boost.JSON 1.81 or newer, which was not found (on Debian: libboost-json1.81-dev).' \
    'OpenSSL|libcrypto of OpenSSL 3.0 or newer, which was not found (on Debian: libssl-dev).'; do
    options=-DCMAKE_DISABLE_FIND_PACKAGE_${row%%|*}=ON
    refuses "The static library of KinovaneCore is linked with ${row#*|}" 1.0 REQUIRED COMPONENTS static
done

# An application that did not ask for a library gets the static one if there is no other.
rm "$work"/prefix/lib*/cmake/KinovaneCore/KinovaneCore-shared*.cmake
options=''
accepts 'found: 1 STATIC_LIBRARY, testkit: ' 1.0 REQUIRED
exit "$failed"
