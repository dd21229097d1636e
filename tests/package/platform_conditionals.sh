#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Conditional compilation in the library's sources is limited to the files that exist once for each platform, and to
# feature tests in the files that are listed here:
#   platform_conditionals.sh SOURCE
set -euo pipefail
cd "$1"

# The standard library has std::from_chars for double or not, whatever the platform is.
feature_tests=src/common/json/real_number.cpp

conditional='^[[:space:]]*#[[:space:]]*(if|ifdef|ifndef|elif)'
failed=0
while IFS=: read -r file line text; do
    case $file in
    *_linux.cpp | *_macos.cpp) ;;
    "$feature_tests")
        if [[ $text != *__cpp_lib_* && $text != *__has_include* ]]; then
            echo "$file:$line: not a feature test: $text"
            failed=1
        fi
        ;;
    *)
        echo "$file:$line: differences between platforms belong to a pair of files *_linux.cpp and *_macos.cpp: $text"
        failed=1
        ;;
    esac
done < <(grep -rnE "$conditional" --include='*.hpp' --include='*.cpp' src || true)

# Every file of one platform has a counterpart and a header.
for file in $(find src -name '*_linux.cpp' -o -name '*_macos.cpp' | sort); do
    stem=${file%_*.cpp}
    for other in "${stem}_linux.cpp" "${stem}_macos.cpp" "$stem.hpp"; do
        if [ ! -f "$other" ]; then
            echo "$file: $other is missing"
            failed=1
        fi
    done
done
exit "$failed"
