# SPDX-License-Identifier: Apache-2.0
# A toolchain file: compiles on another processor for Linux on arm64, with the headers and libraries of the system in
# KINOVANE_ARM64_ROOT. Used by scripts/portable/arm64.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KINOVANE_ARM64_ROOT)
set(CMAKE_SYSROOT ${KINOVANE_ARM64_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(ENV{PKG_CONFIG_SYSROOT_DIR} ${KINOVANE_ARM64_ROOT})
set(ENV{PKG_CONFIG_LIBDIR}
    ${KINOVANE_ARM64_ROOT}/usr/lib/aarch64-linux-gnu/pkgconfig:${KINOVANE_ARM64_ROOT}/usr/share/pkgconfig)
