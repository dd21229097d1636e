// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane::tool {

/// Writes to standard output without a buffer. Throws std::filesystem::filesystem_error when not all of the
/// text can be written.
void printResult(std::string_view text);

/// Writes to standard error. Errors are ignored.
void printMessage(std::string_view text) noexcept;

} // namespace kinovane::tool
