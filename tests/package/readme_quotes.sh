#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# What the README quotes of an example stands in that example, to the letter but for indentation:
#   readme_quotes.sh SOURCE
set -euo pipefail
cd "$1"

unindented() { sed -E 's/^[[:space:]]+//'; }

quotes=0
while IFS= read -r file; do
    quotes=$((quotes + 1))
    quote=$(awk -v marker="<!-- from $file -->" '
        $0 == marker { found = 1; next }
        found && /^```/ { if (inside) exit; inside = 1; next }
        inside' README.md | unindented)
    if [ -z "$quote" ] || [[ "$(unindented <"$file")" != *"$quote"* ]]; then
        echo "README.md quotes $file otherwise than it stands there"
        exit 1
    fi
done < <(sed -nE 's/^<!-- from (.*) -->$/\1/p' README.md)
[ "$quotes" -gt 0 ]
