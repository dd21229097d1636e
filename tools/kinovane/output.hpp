// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane::tool {

/// Writes to standard output, at once. Throws std::filesystem::filesystem_error when it cannot be written
/// whole, so that nobody takes half a result for a result.
void printResult(std::string_view text);

/// Writes to standard error as far as that is possible; there is nobody left to tell when it is not.
void printMessage(std::string_view text) noexcept;

} // namespace kinovane::tool
