// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kinovane::test {

/// Exchanges two directory entries of any type atomically.
inline void exchange(const std::filesystem::path& one, const std::filesystem::path& other) {
    if (::syscall(SYS_renameat2, AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) != 0)
        throw std::filesystem::filesystem_error("cannot exchange", one, other,
                                                std::error_code(errno, std::generic_category()));
}

} // namespace kinovane::test
