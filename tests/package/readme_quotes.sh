#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Checks that every ```cpp block of the documentation is quoted from a compiled example, and that every file of the
# repository which the documentation names exists:
#   readme_quotes.sh SOURCE
# The line before a block names the file: <!-- from examples/NAME.cpp -->. The block has to be there line by line, except
# that the indentation of the whole block may be smaller. With <!-- from examples/NAME.cpp [REGION] --> it has to be all
# that is there between two lines "//! [REGION]".
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

# is_region QUOTE FILE REGION: whether the quote is the whole region, which is neither empty nor open.
is_region() {
    local text
    text=$(awk -v "marker=//! [$3]" '
        { line = $0; sub(/^ +/, "", line) }
        line == marker { inside = !inside; next }
        inside && $0 != "" { match($0, /^ */); if (!seen++ || RLENGTH < indent) indent = RLENGTH }
        inside { lines[++count] = $0 }
        END { for (i = 1; !inside && i <= count; ++i) print substr(lines[i], indent + 1) }' "$2")
    [ -n "$text" ] && [ "$1" = "$text" ]
}

# is_compiled FILE: whether the CMakeLists.txt beside it makes a program of this source.
is_compiled() {
    local name
    [[ $1 =~ ^examples/([a-z_]+/)*([a-z_]+)\.cpp$ ]] && [ -f "$1" ] || return 1
    name=${BASH_REMATCH[2]}
    grep -qE "^ *(foreach|executor_example|add_executable)\(.*\b(${name%_main_loop}|$name\.cpp|$name)\b" \
        "$(dirname "$1")/CMakeLists.txt"
}

# check_block DOCUMENT LINE SOURCE QUOTE
check_block() {
    local file=${3%% *} region=''
    [[ $3 =~ ' ['(.*)']'$ ]] && region=${BASH_REMATCH[1]}
    blocks=$((blocks + 1))
    if [ -z "$3" ]; then
        echo "$1:$2: no comment before this block names the example that it is quoted from"
    elif ! is_compiled "$file"; then
        echo "$1:$2: $file is not a compiled example"
    elif [ -n "$region" ] && ! is_region "$4" "$file" "$region"; then
        echo "$1:$2: this is not the region [$region] of $file"
    elif [ -z "$region" ] && ! in_file "$4" "$file"; then
        echo "$1:$2: this is not in $file"
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
    done < <(grep -oE '\]\([A-Za-z0-9_/.-]+(#[a-z0-9-]+)?\)' "$1" | sed -E 's/^..([^#]*).*\)$/\1/; s/\)$//' | sort -u)
}

# shellcheck disable=SC2094 # nothing below writes to a document
for document in README.md ARCHITECTURE.md CONTRIBUTING.md docs/*.md docs/decisions/*.md docs/guide/*.md; do
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
