#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs the application of tests/package/consumer and compares what it prints: run_application.sh SOURCE VERSION PROGRAM
set -euo pipefail
source=$1 version=$2 program=$3

expected="KinovaneCore ${version%.*} (headers $version): A Lamp for the Late Ferry, 59 assets"
actual=$("$program" "$source/examples/a-lamp-for-the-late-ferry/run.json")
if [ "$actual" != "$expected" ]; then
    echo "expected: $expected"
    echo "actual:   $actual"
    exit 1
fi
