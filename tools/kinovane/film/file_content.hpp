// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <system_error>

namespace kinovane::tool {

/// The content of a file of at most `largest` bytes. When it cannot be read, `error` is set and the result is
/// empty: EISDIR for a folder, EFBIG for a larger file. A named pipe is read to its end, or until it is
/// larger.
std::string contentOf(const std::filesystem::path& file, std::error_code& error,
                      std::uintmax_t largest = std::numeric_limits<std::uintmax_t>::max());

/// The first bytes of a file, at most 4096, in which formats have their marks. Empty when it cannot be read.
std::string beginningOf(const std::filesystem::path& file);

} // namespace kinovane::tool
