#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs each component by itself and compares the files; then starts the installed command-line tool from a prefix
# other than the one it was installed to:
#   install_components.sh SOURCE BUILD WORK VERSION LIBDIR LIBEXECDIR REAL_NAME SONAME LINK_NAME
set -euo pipefail
source=$1 build=$2 work=$3 version=$4 libdir=$5 libexecdir=$6 realName=$7 soname=$8 linkName=$9
rm -rf "$work"
mkdir -p "$work"

failed=0

# expect COMPONENT FILES…
expect() {
    local component=$1 expected actual
    shift
    expected=$(printf '%s\n' "$@" | LC_ALL=C sort)
    cmake --install "$build" --prefix "$work/$component" --component "$component" >/dev/null
    actual=$(cd "$work/$component" && find . ! -type d | sed 's,^\./,,; s,-\(shared\|testkit\)-[a-z]*\.cmake,-\1-CONFIG.cmake,' | LC_ALL=C sort)
    if [ "$actual" != "$expected" ]; then
        echo "the files of $component differ:"
        diff <(echo "$expected") <(echo "$actual") || true
        failed=1
    fi
}

headers=()
for header in "$source"/include/kinovane/*.hpp export.hpp version_macros.hpp; do
    headers+=("include/kinovane/$(basename "$header")")
done
package=$libdir/cmake/KinovaneCore/KinovaneCore

expect Runtime "$libdir/$realName" "$libdir/$soname"
expect Development "$libdir/$linkName" "${headers[@]}" "$libdir/pkgconfig/kinovane-core.pc" \
    "${package}Config.cmake" "${package}ConfigVersion.cmake" "${package}-shared.cmake" "${package}-shared-CONFIG.cmake"
manuals=()
for page in '' -{status,inspect,shots,artifacts,open,storyboard,verify,publish,copy,timeline,plan,approve,advance} \
    -{review,reroll,recover,export,doctor,help,completion,manual}; do
    manuals+=("share/man/man1/kinovane$page.1")
done
expect Tools bin/kinovane "${manuals[@]}" share/bash-completion/completions/kinovane \
    share/zsh/site-functions/_kinovane share/fish/vendor_completions.d/kinovane.fish
testHeaders=()
for header in "$source"/include/kinovane/testing/*.hpp; do
    testHeaders+=("include/kinovane/testing/$(basename "$header")")
done
expect testkit "$libexecdir"/kinovane-core/{film,pi,quexrun,vistrel} "${testHeaders[@]}" \
    "$package-testkit.cmake" "$package-testkit-CONFIG.cmake"

cmake --install "$build" --prefix "$work/before" --component Runtime >/dev/null
cmake --install "$build" --prefix "$work/before" --component Tools >/dev/null
mv "$work/before" "$work/after"
unset LD_LIBRARY_PATH DYLD_LIBRARY_PATH
actual=$("$work/after/bin/kinovane" --version) || true
if [ "$actual" != "kinovane ${version%.*}" ]; then
    echo "the moved command-line tool prints '$actual' as its version"
    failed=1
fi
exit "$failed"
