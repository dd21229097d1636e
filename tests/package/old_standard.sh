#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# A compiler that is set to an older C++ is told so by the first error, whichever public header is included:
#   old_standard.sh COMPILER SOURCE BUILD
set -euo pipefail
compiler=$1 source=$2 build=$3

failed=0
for header in "$source"/include/kinovane/*.hpp; do
    name=kinovane/$(basename "$header")
    first=$(echo "#include <$name>" |
        "$compiler" -std=c++17 -fsyntax-only -I "$source/include" -I "$build/include" -x c++ - 2>&1 |
        grep -m 1 'error:' || true)
    if [[ $first != *'"KinovaneCore needs C++20 (-std=c++20)"'* ]]; then
        echo "the first error of $name is: $first"
        failed=1
    fi
done
exit "$failed"
