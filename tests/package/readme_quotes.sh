#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Checks that every ```cpp block of the documentation is quoted from a compiled example, and that every file of the
# repository which the documentation names exists:
#   readme_quotes.sh SOURCE
# The line before a block names the file: <!-- from examples/NAME.cpp -->. The block has to be there line by line, except
# that the indentation of the whole block may be smaller.
set -euo pipefail
cd "$1"

failed=0
blocks=0

# in_file QUOTE FILE
in_file() {
    local indent text
    for indent in 0 4 8 12; do
        text=$(sed -E "s/^ {$indent}//" "$2")
        [[ $'\n'$text$'\n' != *$'\n'"$1"$'\n'* ]] || return 0
    done
    return 1
}

# is_compiled FILE: whether the CMakeLists.txt beside it makes a program of this source.
is_compiled() {
    if [[ $1 =~ ^examples/([a-z_]+)\.cpp$ ]]; then
        grep -qE "^foreach.*[ ]${BASH_REMATCH[1]}[ )]" examples/CMakeLists.txt
    else
        [[ $1 =~ ^examples/executors/([a-z_]+)_main_loop\.cpp$ ]] &&
            grep -qE "^ *executor_example\(${BASH_REMATCH[1]} " examples/executors/CMakeLists.txt
    fi
}

# check_block DOCUMENT LINE SOURCE QUOTE
check_block() {
    blocks=$((blocks + 1))
    if [ -z "$3" ]; then
        echo "$1:$2: no comment before this block names the example that it is quoted from"
    elif ! is_compiled "$3"; then
        echo "$1:$2: $3 is not a compiled example"
    elif ! in_file "$4" "$3"; then
        echo "$1:$2: this is not in $3"
    else
        return 0
    fi
    failed=1
}

# check_files DOCUMENT: links, and paths in `…` that have a folder and end in an extension. These are relative to the
# repository, or to one of the folders below.
# shellcheck disable=SC2016 # these are the quotes of Markdown
check_files() {
    local file folder
    while read -r file; do
        for folder in . src include tests; do
            [ ! -e "$folder/$file" ] || continue 2
        done
        echo "$1: there is no $file"
        failed=1
    done < <(grep -oE '`[a-z_]+/[a-z0-9_/.-]+\.(cpp|hpp|md|sh)`' "$1" | tr -d '`' | sort -u)
    while read -r file; do
        [ -e "$(dirname "$1")/$file" ] && continue
        echo "$1: this link leads nowhere: $file"
        failed=1
    done < <(grep -oE '\]\([A-Za-z0-9_/.-]+\)' "$1" | sed -E 's/^..(.*).$/\1/' | sort -u)
}

# shellcheck disable=SC2094 # nothing below writes to a document
for document in README.md ARCHITECTURE.md CONTRIBUTING.md docs/*.md docs/decisions/*.md; do
    check_files "$document"
    number=0 start=0 source='' quote=''
    while IFS= read -r line || [ -n "$line" ]; do
        number=$((number + 1))
        if [ "$start" -gt 0 ]; then
            if [ "$line" = '```' ]; then
                check_block "$document" "$start" "$source" "${quote%$'\n'}"
                start=0 source=''
            else
                quote+=$line$'\n'
            fi
        elif [[ $line == '```cpp'* ]]; then
            start=$number quote=''
        elif [[ $line =~ ^'<!-- from '(.*)' -->'$ ]]; then
            source=${BASH_REMATCH[1]}
        else
            source=''
        fi
    done <"$document"
    if [ "$start" -gt 0 ]; then
        echo "$document:$start: this block does not end"
        failed=1
    fi
done
if [ "$blocks" -eq 0 ]; then
    echo 'no block was found'
    failed=1
fi
exit "$failed"
