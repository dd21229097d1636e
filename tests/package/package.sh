#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Tries scripts/package where it has to refuse, and compares the versions of the files in debian/: package.sh SOURCE
set -euo pipefail
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export GIT_CONFIG_GLOBAL=/dev/null GIT_AUTHOR_NAME=Test GIT_AUTHOR_EMAIL=test@example.org
export GIT_COMMITTER_NAME=Test GIT_COMMITTER_EMAIL=test@example.org

failed=0

version=$(sed -nE 's/^project\(KinovaneCore VERSION ([0-9.]+).*/\1/p' "$source/CMakeLists.txt")
packaged=$(sed -nE '1s/^kinovane-core \(([0-9.]+)\).*/\1/p' "$source/debian/changelog")
if [ "$packaged" != "$version" ]; then
    echo "debian/changelog has the version '$packaged' instead of $version"
    failed=1
fi

# The programs that the script looks for, and none of them.
mkdir -p "$work/scripts" "$work/bin" "$work/no-bin"
cp "$source/scripts/package" "$source/scripts/try-packages" "$work/scripts"
for program in bash dirname git sed id cat rm mktemp; do
    ln -s "$(type -P $program)" "$work/no-bin/$program"
done
cp -R "$work/no-bin/." "$work/bin"
for program in dpkg-buildpackage dh lintian cmake ninja debootstrap; do
    ln -s "$(type -P true)" "$work/bin/$program"
done
printf '#!/bin/sh\necho 1.1.0\n' >"$work/bin/dpkg-parsechangelog"
chmod +x "$work/bin/dpkg-parsechangelog"
cd "$work"
git init -q
printf 'bin/\nno-bin/\n' >.gitignore
echo 'project(KinovaneCore VERSION 1.2.0 LANGUAGES CXX' >CMakeLists.txt
git add -A
git commit -qm first

# refuses STATUS MESSAGE PATH ARGUMENTS…
refuses() {
    local status=0 actual
    actual=$(PATH=$3 scripts/package "${@:4}" 2>&1) || status=$?
    if [ "$status" -ne "$1" ] || [ "$actual" != "$2" ]; then
        echo "expected: $2"
        echo "actual:   $actual (exit status $status)"
        failed=1
    fi
}

usage='usage: scripts/package [--check|--try]'
refuses 2 "$usage" "$work/bin" --other
refuses 2 "$usage" "$work/bin" make
refuses 2 "$usage" "$work/bin" ''
refuses 2 "$usage" "$work/bin" --check --try
refuses 1 'scripts/package: dpkg-buildpackage is missing; scripts/setup package installs what is needed' "$work/no-bin"
refuses 1 'scripts/package: debootstrap is missing; scripts/setup package installs what is needed' "$work/no-bin" --try
refuses 1 'scripts/package: debian/changelog has the version 1.1.0 instead of 1.2.0' "$work/bin"
touch new
refuses 1 'scripts/package: there are uncommitted changes' "$work/bin"
exit "$failed"
