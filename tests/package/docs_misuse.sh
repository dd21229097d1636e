#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Wrong options of scripts/docs and scripts/try-guide end with one sentence and the status 2, a missing Doxygen with one
# sentence and the status 1: docs_misuse.sh SOURCE
set -uo pipefail
source=$1
failed=0

# expect STATUS SENTENCE COMMAND…
expect() {
    local actual status
    actual=$("${@:3}" 2>&1)
    status=$?
    if [ "$status" -ne "$1" ] || [ "$actual" != "$2" ]; then
        printf '%s\n  ended with %s: %s\n  instead of %s: %s\n' "${*:3}" "$status" "$actual" "$1" "$2"
        failed=1
    fi
}

empty=$(mktemp -d)
trap 'rm -rf "$empty"' EXIT
ln -s "$(command -v dirname)" "$(command -v bash)" "$empty"

docs=$source/scripts/docs
expect 2 'usage: scripts/docs' "$docs" --help
expect 2 'usage: scripts/docs' "$docs" ''
expect 1 'scripts/docs: doxygen is missing; scripts/setup docs installs it' env PATH="$empty" bash "$docs"

try=$source/scripts/try-guide
usage='usage: scripts/try-guide [--root DIR] (--packages DIR | --source | --prefix DIR)'
expect 2 "scripts/try-guide: one of --packages, --source and --prefix is needed; $usage" "$try"
expect 2 "scripts/try-guide: --help is unknown; $usage" "$try" --help
expect 2 "scripts/try-guide: --prefix needs a folder; $usage" "$try" --prefix
expect 2 "scripts/try-guide: there is no folder $empty/prefix; $usage" "$try" --prefix "$empty/prefix"
expect 2 "scripts/try-guide: --source and --prefix exclude each other; $usage" "$try" --prefix "$empty" --source
expect 2 "scripts/try-guide: --packages and --source exclude each other; $usage" "$try" --source --packages "$empty"
expect 2 "scripts/try-guide: --root and --prefix exclude each other; $usage" "$try" --root "$empty" --prefix "$empty"
expect 1 "scripts/try-guide: there is no kinovane-core.pc in $empty" "$try" --prefix "$empty"
expect 1 "scripts/try-guide: there are no packages in $empty" "$try" --packages "$empty"
exit "$failed"
