#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Each row is a file with one include that scripts/check-includes has to refuse, and the folder that it names:
#   forbidden_includes.sh CHECK
set -euo pipefail
check=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

failed=0

# expect MESSAGE FILE: checks the tree, which holds FILE only.
expect() {
    local actual status=0
    actual=$("$check" "$tree" 2>&1) || status=$?
    if [ "$status" -ne 1 ] || [ "$actual" != "$1" ]; then
        echo "expected: $1"
        echo "actual:   $actual (exit status $status)"
        failed=1
    fi
    rm "$tree/$2"
}

while read -r folder file include; do
    mkdir -p "$tree/$(dirname "$folder/$file")"
    echo "#include $include" >"$tree/$folder/$file"
    expect "$folder/$file:1: $folder may not include $include" "$folder/$file"
done <<'ROWS'
include/kinovane json.hpp <boost/json.hpp>
include/kinovane json.hpp <unistd.h>
include/kinovane json.hpp "common/utf8.hpp"
include/kinovane json.hpp <kinovane/workspace.hpp>
include/kinovane film_project.hpp <kinovane/production_plan.hpp>
include/kinovane workspace.hpp <kinovane/process.hpp>
include/kinovane agent_runtime.hpp <kinovane/workspace.hpp>
src/common a.cpp "common/json/decoder.hpp"
src/common a.cpp <kinovane/tooling.hpp>
src/common a.cpp <boost/json.hpp>
src/common/json a.cpp "common/files/regular_file.hpp"
src/common/json a.cpp <openssl/evp.h>
src/common/files a.cpp "common/json/decoder.hpp"
src/common/files a.cpp "workspace/plan_tables.hpp"
src/workspace a.cpp <boost/json/value.hpp>
src/workspace a.cpp "tooling/process/process_runner.hpp"
src/tooling/process a.hpp "tooling/film_tool/replies.hpp"
src/tooling/process a.hpp "workspace/plan_tables.hpp"
src/tooling/process a.hpp <kinovane/tooling.hpp>
src/tooling/film_tool a.cpp "handoff/project_directory.hpp"
src/tooling/film_tool a.cpp <openssl/evp.h>
src/handoff a.cpp "agent_runtime/tables.hpp"
src/handoff a.cpp "tooling/film_tool/replies.hpp"
src/agent_runtime a.cpp "handoff/project_directory.hpp"
src/agent_runtime a.cpp "workspace/plan_tables.hpp"
tools kinovane/a.cpp "common/utf8.hpp"
tools kinovane/a.cpp <openssl/evp.h>
simulators vistrel/a.cpp <kinovane/json.hpp>
simulators vistrel/a.cpp "common/json/decoder.hpp"
examples a.cpp <boost/json.hpp>
examples a.cpp <boost/asio/post.hpp>
examples a.cpp <QObject>
examples a.cpp <QtCore/QObject>
examples a.cpp <glib.h>
include/kinovane/testing a.hpp <gtest/gtest.h>
include/kinovane/testing a.hpp "common/utf8.hpp"
examples/application_tests a.cpp <boost/json.hpp>
tests/testkit a.cpp "support/sample_film.hpp"
examples/desk a.cpp <boost/asio/post.hpp>
examples/desk a.cpp <QtCore/QObject>
examples/executors a.cpp <boost/json.hpp>
examples/executors a.cpp <QtCore/private/qobject_p.h>
examples/executors a.cpp "common/utf8.hpp"
src/common a.cpp <glib-unix.h>
tests/examples a.cpp "handoff/project_directory.hpp"
benchmarks a.cpp "common/utf8.hpp"
fuzz a.cpp <CLI/CLI.hpp>
tests/scenario a.cpp "handoff/project_directory.hpp"
tests/common a.cpp <CLI/CLI.hpp>
ROWS

mkdir -p "$tree/include/kinovane"
touch "$tree/include/kinovane/other.hpp"
expect 'include/kinovane/other.hpp: scripts/check-includes does not know this public header' include/kinovane/other.hpp
mkdir "$tree/src/other"
touch "$tree/src/other/a.cpp"
expect 'src/other: scripts/check-includes does not know this module' src/other/a.cpp
exit "$failed"
