#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Tries scripts/release in a repository of its own, first where it has to refuse: release.sh SOURCE
set -euo pipefail
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export GIT_CONFIG_GLOBAL=/dev/null GIT_AUTHOR_NAME=Test GIT_AUTHOR_EMAIL=test@example.org
export GIT_COMMITTER_NAME=Test GIT_COMMITTER_EMAIL=test@example.org

mkdir "$work/scripts"
cp "$source/scripts/release" "$work/scripts"
cd "$work"
git init -q
echo build/ >.gitignore
echo 'project(KinovaneCore VERSION 1.2.0 LANGUAGES CXX' >CMakeLists.txt
printf '# Changelog\n\n## [1.2.0] - 2026-01-31\n\n### Added\n\n- A feature.\n\n## [1.1.0] - 2025-12-01\n\n- Older.\n' >CHANGELOG.md
printf '#!/bin/sh\nexit 1\n' >scripts/test
chmod +x scripts/test
commit() { git add -A && git commit -qm "$1"; }
commit first

failed=0

# refuses STATUS MESSAGE ARGUMENTS…
refuses() {
    local status=0 actual expected=$2
    actual=$(scripts/release "${@:3}" 2>&1) || status=$?
    if [ "$status" -ne "$1" ] || [ "$actual" != "$expected" ] || [ -n "$(git tag)" ]; then
        echo "expected: $expected"
        echo "actual:   $actual (exit status $status)"
        failed=1
    fi
}

usage='usage: scripts/release [--no-test] VERSION   such as 1.2.0'
refuses 2 "$usage"
refuses 2 "$usage" 1.2
refuses 1 'scripts/release: CMakeLists.txt has the version 1.2.0 instead of 1.3.0' --no-test 1.3.0
refuses 1 'scripts/release: a check failed' 1.2.0

touch new
refuses 1 'scripts/release: there are uncommitted changes' --no-test 1.2.0
rm new

sed -i.before 's/1\.2\.0/1.3.0/' CMakeLists.txt && rm CMakeLists.txt.before
commit version
refuses 1 'scripts/release: CHANGELOG.md has no section for 1.3.0' --no-test 1.3.0
git reset -q --hard HEAD~1

scripts/release --no-test 1.2.0 >/dev/null
checksum=(sha256sum)
command -v sha256sum >/dev/null || checksum=(shasum -a 256) # macOS
(cd build/release-1.2.0 && "${checksum[@]}" -c kinovane-core-1.2.0.tar.gz.sha256 >/dev/null)
tar -tzf build/release-1.2.0/kinovane-core-1.2.0.tar.gz | grep -qx 'kinovane-core-1.2.0/CMakeLists.txt'
message=$(git tag --list --format='%(contents)' v1.2.0)
expected=$(printf 'KinovaneCore 1.2.0\n\n### Added\n\n- A feature.')
if [ "$message" != "$expected" ]; then
    echo "expected: $expected"
    echo "actual:   $message"
    failed=1
fi
actual=$(scripts/release --no-test 1.2.0 2>&1) && failed=1
if [ "$actual" != 'scripts/release: the tag v1.2.0 exists already' ]; then
    echo "$actual"
    failed=1
fi
exit "$failed"
