# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Read by scripts that configure a build: Homebrew may keep OpenSSL where CMake does not look.
if [ "$(uname -s)" = Darwin ] && command -v brew >/dev/null; then
    OPENSSL_ROOT_DIR=$(brew --prefix openssl@3)
    export OPENSSL_ROOT_DIR
fi
