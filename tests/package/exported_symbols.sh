#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The shared library exports what lies in its own namespace, and the two version symbols: exported_symbols.sh LIBRARY
set -euo pipefail

symbols=$(nm -D --defined-only "$1" | awk '{ print $3 }')
# The Itanium C++ ABI's names of functions and objects, virtual tables and type information in namespace kinovane.
others=$(grep -vE '^(_ZN8kinovane|_ZNK8kinovane|_ZT[VIS]N8kinovane|KinovaneCoreVersion(Number|String)$)' <<<"$symbols" || true)
if [ -n "$others" ]; then
    echo 'exported as well:'
    c++filt <<<"$others"
    exit 1
fi
for symbol in KinovaneCoreVersionNumber KinovaneCoreVersionString; do
    grep -qx "$symbol" <<<"$symbols" || { echo "$symbol is not exported"; exit 1; }
done
