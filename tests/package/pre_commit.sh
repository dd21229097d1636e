#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Commits with .githooks/pre-commit in a repository of its own: pre_commit.sh SOURCE
set -euo pipefail
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export GIT_CONFIG_GLOBAL=/dev/null GIT_AUTHOR_NAME=Test GIT_AUTHOR_EMAIL=test@example.org
export GIT_COMMITTER_NAME=Test GIT_COMMITTER_EMAIL=test@example.org
unset GIT_DIR GIT_INDEX_FILE GIT_WORK_TREE

cd "$work"
git init -q
mkdir -p .githooks scripts src/common
cp "$source/.clang-format" .
cp "$source/.githooks/pre-commit" .githooks
cp "$source"/scripts/check-{format,includes} scripts
git add -A
git commit -qm first
git config core.hooksPath .githooks

failed=0
licence='// SPDX-License-Identifier: Apache-2.0'
good=$licence$'\n\n#include <string>\n\nint one() { return 1; }'
badly_formatted=$licence$'\n\nint one() {return 1;}'
forbidden=$licence$'\n\n#include <boost/json.hpp>'
refused='pre-commit: nothing was committed; scripts/check-format --fix formats, and --no-verify skips this check'

# commit STATUS FIRST_LINE LAST_LINE: commits what is staged. Both lines are empty if nothing is printed.
commit() {
    local before output status=0 made=no
    before=$(git rev-parse HEAD)
    output=$(git commit -qm change 2>&1) || status=$?
    [ "$(git rev-parse HEAD)" = "$before" ] || made=yes
    if [ "$made" != "$1" ] || [ "$(head -n 1 <<<"$output")" != "$2" ] || [ "$(tail -n 1 <<<"$output")" != "$3" ]; then
        echo "expected: a commit: $1, $2 … $3"
        echo "actual:   a commit: $made, $output (exit status $status)"
        failed=1
    fi
    git reset -q --hard
    git clean -qfd
}

echo "$good" >'src/common/a file.cpp'
git add -A
commit yes '' ''

echo "$badly_formatted" >src/common/b.cpp
git add -A
commit no 'src/common/b.cpp:3:12: error: code should be clang-formatted [-Wclang-format-violations]' "$refused"

echo "$forbidden" >src/common/b.cpp
git add -A
commit no 'src/common/b.cpp:3: src/common may not include <boost/json.hpp>' "$refused"

echo 'int one() { return 1; }' >src/common/b.cpp
git add -A
commit no "src/common/b.cpp:1: the line 'SPDX-License-Identifier: Apache-2.0' is missing" "$refused"

# What is staged counts, not the file.
echo "$good" >src/common/c.cpp
git add -A
echo "$badly_formatted" >src/common/c.cpp
commit yes '' ''

echo "$badly_formatted" >src/common/d.cpp
git add -A
echo "$good" >src/common/d.cpp
commit no 'src/common/d.cpp:3:12: error: code should be clang-formatted [-Wclang-format-violations]' "$refused"

# Files that were committed before are not examined again, and a removed one not at all.
echo "$badly_formatted" >src/common/e.cpp
git add -A
git commit -qm 'without the check' --no-verify
echo 'Text without a licence line.' >text.md
git add -A
commit yes '' ''
git rm -q src/common/e.cpp
commit yes '' ''

# A missing tool.
mkdir "$work/tools"
for tool in bash basename cp dirname find git grep mktemp rm sed xargs; do
    ln -s "$(command -v "$tool")" "$work/tools/$tool"
done
echo "$good" >src/common/f.cpp
git add src
missing='scripts/check-format: clang-format-19 is missing; scripts/setup installs it'
actual=$(PATH=$work/tools git commit -qm change 2>&1) || true
if [ "$actual" != "$missing" ]; then
    echo "expected: $missing"
    echo "actual:   $actual"
    failed=1
fi

# usage STATUS MESSAGE COMMAND…
usage() {
    local actual status=0
    actual=$("${@:3}" 2>&1) || status=$?
    if [ "$status" -ne "$1" ] || [ "$actual" != "$2" ]; then
        echo "expected: $2"
        echo "actual:   $actual (exit status $status)"
        failed=1
    fi
}
usage 2 'usage: .githooks/pre-commit   (git runs it)' .githooks/pre-commit --all
usage 2 'usage: scripts/check-format [--fix] [FOLDER]' scripts/check-format --repair
usage 2 'usage: scripts/check-format [--fix] [FOLDER]' scripts/check-format src tests
usage 2 'scripts/check-format: the folder nowhere cannot be read' scripts/check-format nowhere
usage 2 'usage: scripts/check-includes [FOLDER]' scripts/check-includes --fix
usage 2 'scripts/check-includes: the folder nowhere cannot be read' scripts/check-includes nowhere
exit "$failed"
