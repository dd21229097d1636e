#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Tries scripts/release in a repository of its own, first where it has to refuse: release.sh SOURCE
set -euo pipefail
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export GIT_CONFIG_GLOBAL=/dev/null GIT_AUTHOR_NAME=Test GIT_AUTHOR_EMAIL=test@example.org
export GIT_COMMITTER_NAME=Test GIT_COMMITTER_EMAIL=test@example.org
export GIT_AUTHOR_DATE='2026-01-31T12:00:00Z' GIT_COMMITTER_DATE='2026-01-31T12:00:00Z'

mkdir -p "$work/project/scripts" "$work/project/debian"
cp "$source/scripts/release" "$work/project/scripts"
cd "$work/project"
git init -q
printf 'build/\nbuild.names\n' >.gitignore
cat >CMakeLists.txt <<'END'
cmake_minimum_required(VERSION 3.25)
project(KinovaneCore VERSION 1.2.0 LANGUAGES CXX
    DESCRIPTION "A library that is quickly built")
add_library(KinovaneCore library.cpp)
END
echo 'int one() { return 1; }' >library.cpp
echo 'kinovane-core (1.2.0) unstable; urgency=medium' >debian/changelog
cat >CHANGELOG.md <<'END'
# Changelog

## Unreleased

### Added

## [1.2.0] - 2026-01-31

### Added

- A feature.

## [1.1.0] - 2025-12-01

- Older.
END
printf '#!/bin/sh\nexit 1\n' >scripts/test
# Compares the functions of the library with a record that has one name on each line.
cat >scripts/abi <<'END'
#!/bin/sh
nm -D --defined-only "$1" | sed -n 's/.* T //p' | sort >build.names
record=${2:-abi/libKinovaneCore.so.1.abi.xz}
if comm -13 build.names "$record" | grep -q .; then
    echo 'scripts/abi: a difference' >&2
    exit 1
elif comm -23 build.names "$record" | grep -q .; then
    echo 'scripts/abi: the binary interface has additions that are not recorded' >&2
    exit 1
fi
END
mkdir abi
echo _Z3onev >abi/libKinovaneCore.so.1.abi.xz
chmod +x scripts/test scripts/abi
commit() { git add -A && git commit -qm "$1"; }
commit first

failed=0

# refuses STATUS MESSAGE ARGUMENTS…: the first tag and the first archive are made at the end.
refuses() {
    local status=0 actual expected=$2
    actual=$(scripts/release "${@:3}" 2>&1) || status=$?
    if [ "$status" -ne "$1" ] || [ "$actual" != "$expected" ] || [ -n "$(git tag)" ] || [ -e build ]; then
        echo "expected: $expected"
        echo "actual:   $actual (exit status $status)"
        failed=1
    fi
}

# refuses_after MESSAGE COMMAND…: commits a change, tries to release 1.2.0, and takes the change back.
refuses_after() {
    local message=$1
    shift
    "$@"
    commit change
    refuses 1 "$message" --no-test 1.2.0
    git reset -q --hard HEAD~1
}

# replace FROM TO FILE
replace() { sed -i.before "s/$1/$2/" "$3" && rm "$3.before"; }

usage='usage: scripts/release [--no-test] VERSION   such as 1.2.0'
refuses 2 "$usage"
refuses 2 "$usage" 1.2
refuses 2 "$usage" v1.2.0
refuses 2 "$usage" --test 1.2.0
refuses 2 "$usage" 1.2.0 1.3.0
refuses 1 'scripts/release: CMakeLists.txt has the version 1.2.0 instead of 1.3.0' --no-test 1.3.0
refuses 1 'scripts/release: a check failed' 1.2.0

touch new
refuses 1 'scripts/release: there are uncommitted changes' --no-test 1.2.0
rm new
echo '// changed' >>library.cpp
refuses 1 'scripts/release: there are uncommitted changes' --no-test 1.2.0
git checkout -q library.cpp

change_version() {
    replace 1.2.0 1.3.0 CMakeLists.txt
    replace 1.2.0 1.3.0 debian/changelog
}
change_version
commit version
refuses 1 'scripts/release: CHANGELOG.md has no section for 1.3.0' --no-test 1.3.0
git reset -q --hard HEAD~1

prefix='scripts/release:'
refuses_after "$prefix debian/changelog has the version 1.1.0 instead of 1.2.0" replace 1.2.0 1.1.0 debian/changelog
refuses_after "$prefix the section for 1.2.0 in CHANGELOG.md has no date" replace ' - 2026-01-31' '' CHANGELOG.md
refuses_after "$prefix the section for 1.2.0 in CHANGELOG.md is empty" replace '- A feature.' '' CHANGELOG.md
refuses_after "$prefix CHANGELOG.md has no section for 1.2.0" replace '\[1.2.0\]' '[1x2.0]' CHANGELOG.md
refuses_after "$prefix CHANGELOG.md still has entries in the section Unreleased" \
    replace '## Unreleased' '## Unreleased\n- Forgotten.' CHANGELOG.md
refuses_after "$prefix CHANGELOG.md cannot be read" git rm -q CHANGELOG.md
refuses_after "$prefix scripts/abi cannot be read" git rm -q scripts/abi

refuses_after "scripts/abi: a difference"$'\n'"$prefix the binary interface is not the recorded one of SOVERSION 1" \
    replace one two library.cpp

# The first lines are the compiler's.
echo 'int one() { return "one"; }' >library.cpp
commit broken
actual=$(scripts/release --no-test 1.2.0 2>&1 | tail -n 1) || true
if [ "$actual" != "$prefix the archive cannot be built" ]; then
    echo "$actual"
    failed=1
fi
git reset -q --hard HEAD~1

# A missing tool.
mkdir "$work/tools"
for tool in bash dirname git awk sed tar cmake ninja; do
    ln -s "$(command -v "$tool")" "$work/tools/$tool"
done
PATH=$work/tools refuses 1 "$prefix sha256sum is missing" --no-test 1.2.0

# Outside of a repository.
mkdir -p "$work/copy/scripts"
cp scripts/release "$work/copy/scripts"
actual=$(GIT_CEILING_DIRECTORIES=$work "$work/copy/scripts/release" 1.2.0 2>&1) && failed=1
if [ "$actual" != "$prefix this is not a git repository with a commit" ]; then
    echo "$actual"
    failed=1
fi

expected='build/release-1.2.0/kinovane-core-1.2.0.tar.gz
build/release-1.2.0/kinovane-core-1.2.0.tar.gz.sha256
The tag v1.2.0; publish it with: git push origin v1.2.0'
actual=$(scripts/release --no-test 1.2.0 2>&1)
if [ "$actual" != "$expected" ]; then
    echo "expected: $expected"
    echo "actual:   $actual"
    failed=1
fi
checksum=(sha256sum)
command -v sha256sum >/dev/null || checksum=(shasum -a 256) # macOS
(cd build/release-1.2.0 && "${checksum[@]}" -c kinovane-core-1.2.0.tar.gz.sha256 >/dev/null)
files=$(tar -tzf build/release-1.2.0/kinovane-core-1.2.0.tar.gz)
grep -qx 'kinovane-core-1.2.0/CMakeLists.txt' <<<"$files"
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

# A later release of the same SOVERSION: a break that was recorded, and then an addition. release_next FUNCTIONS…
release_next() {
    local name
    git reset -q --hard v1.2.0
    change_version
    replace '## Unreleased' '## Unreleased\n## 1.3.0 - 2026-02-28\n- Another.' CHANGELOG.md
    : >library.cpp
    : >abi/libKinovaneCore.so.1.abi.xz
    for name in "$@"; do
        echo "int $name() { return 1; }" >>library.cpp
        echo "_Z3${name}v" >>abi/libKinovaneCore.so.1.abi.xz
    done
    commit 1.3.0
    scripts/release --no-test 1.3.0 2>&1
}
actual=$(release_next two) || true
expected="scripts/abi: a difference"$'\n'"$prefix the binary interface breaks programs that were linked with v1.2.0"
if [ "$actual" != "$expected" ] || [ -n "$(git tag --list v1.3.0)" ]; then
    echo "expected: $expected"
    echo "actual:   $actual"
    failed=1
fi
actual=$(release_next one two) || true
[ -n "$(git tag --list v1.3.0)" ] || { echo "an addition was refused: $actual" && failed=1; }
git tag -d v1.3.0 >/dev/null || true
git reset -q --hard v1.2.0

# The same commit makes the same archive.
mv build/release-1.2.0 build/before
git tag -d v1.2.0 >/dev/null
scripts/release --no-test 1.2.0 >/dev/null 2>&1
cmp build/before/kinovane-core-1.2.0.tar.gz build/release-1.2.0/kinovane-core-1.2.0.tar.gz || failed=1
exit "$failed"
