#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# readme_quotes.sh finds each kind of mistake in a page: quotes_are_checked.sh SOURCE
set -euo pipefail
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir -p docs/decisions docs/guide examples/guide
touch README.md ARCHITECTURE.md CONTRIBUTING.md docs/a.md docs/decisions/a.md
echo 'foreach(program IN ITEMS stop)' >examples/guide/CMakeLists.txt
cat >examples/guide/stop.cpp <<'END'
int main() {
    //! [stop]
    if (asked)
        stop();
    //! [stop]
    //! [open]
    return 0;
}
END
cp examples/guide/stop.cpp examples/guide/loose.cpp
failed=0

# expect MESSAGE COMMENT CODE: the message for a page whose block has this comment in front.
expect() {
    printf 'Text.\n\n%s\n```cpp\n%s\n```\n' "$2" "$3" >docs/guide/page.md
    local actual
    actual=$("$source/tests/package/readme_quotes.sh" . 2>&1) || true
    if [ "$actual" != "$1" ]; then
        printf '%s\n%s\n  gave: %s\n  instead of: %s\n' "$2" "$3" "$actual" "$1"
        failed=1
    fi
}

at=docs/guide/page.md:4:
from='<!-- from examples/guide/stop.cpp'
region=$'if (asked)\n    stop();'
expect '' "$from [stop] -->" "$region"
expect '' "$from -->" '    stop();'
expect "$at this is not the region [stop] of examples/guide/stop.cpp" "$from [stop] -->" 'if (asked)'
expect "$at this is not the region [stop] of examples/guide/stop.cpp" "$from [stop] -->" "${region/asked/told}"
expect "$at this is not the region [open] of examples/guide/stop.cpp" "$from [open] -->" 'return 0;'
expect "$at this is not the region [none] of examples/guide/stop.cpp" "$from [none] -->" "$region"
expect "$at this is not in examples/guide/stop.cpp" "$from -->" 'go();'
expect "$at examples/guide/loose.cpp is not a compiled example" '<!-- from examples/guide/loose.cpp [stop] -->' "$region"
expect "$at examples/guide/none.cpp is not a compiled example" '<!-- from examples/guide/none.cpp -->' "$region"
expect "$at no comment before this block names the example that it is quoted from" '' "$region"
exit "$failed"
