// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <system_error>

namespace kinovane {

/// Whether a system call failed because the access is denied: EACCES by permission bits, or EPERM by the
/// privacy settings of macOS.
constexpr bool isDenied(int error) noexcept { return error == EACCES || error == EPERM; }

inline bool isDenied(std::error_code error) noexcept {
    return error == std::errc::permission_denied || error == std::errc::operation_not_permitted;
}

} // namespace kinovane
