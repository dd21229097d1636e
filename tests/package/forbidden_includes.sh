#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The check of the includes has to find what is forbidden: one wrong include a row.
set -euo pipefail
check=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

failed=0
while read -r file include; do
    rm -rf "${tree:?}"/*
    mkdir -p "$tree"/{include/kinovane,src/{common,workspace,tooling,handoff}}
    mkdir -p "$tree/$(dirname "$file")"
    echo "#include $include" >"$tree/$file"
    if output=$("$check" "$tree") || [ "$output" != "$file:1: $(sed -E 's,(include|tools|simulators|examples|benchmarks|src/[a-z_]+)/.*,\1,' <<<"$file") may not include $include" ]; then
        echo "not found as it should be: $include in $file; the check said: $output"
        failed=1
    fi
done <<'ROWS'
include/kinovane/json.hpp <boost/json.hpp>
include/kinovane/json.hpp <unistd.h>
include/kinovane/json.hpp "common/utf8.hpp"
src/common/a.cpp "workspace/plan_tables.hpp"
src/common/a.cpp <kinovane/tooling.hpp>
src/workspace/a.cpp <boost/json/value.hpp>
src/workspace/a.cpp "tooling/process_runner.hpp"
src/tooling/a.hpp "handoff/project_directory.hpp"
src/tooling/a.hpp <openssl/evp.h>
src/handoff/a.cpp "agent_runtime/tables.hpp"
src/agent_runtime/a.cpp "handoff/project_directory.hpp"
tools/kinovane/a.cpp "common/utf8.hpp"
tools/kinovane/a.cpp <boost/json.hpp>
simulators/vistrel/a.cpp <kinovane/json.hpp>
examples/a.cpp <boost/json.hpp>
benchmarks/a.cpp "common/utf8.hpp"
ROWS
exit "$failed"
