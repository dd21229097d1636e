// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane {

/// Writes the message and a line end to standard error, and calls std::abort. Only for conditions that cannot
/// occur with a valid workspace, where continuing would publish wrong data.
[[noreturn]] void fatalStop(std::string_view message) noexcept;

} // namespace kinovane
