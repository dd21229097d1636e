#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs the library that was built in BUILD and follows the first page of the guide with it:
#   follow_guide.sh SOURCE BUILD WORK
set -euo pipefail
source=$1 build=$2 work=$3
rm -rf "$work"
for component in Runtime Development; do
    cmake --install "$build" --prefix "$work" --component "$component" >/dev/null
done
"$source/scripts/try-guide" --prefix "$work"
