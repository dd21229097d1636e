// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane {

/// Ends the process after writing one line to standard error. Only for what a sound workspace cannot produce,
/// where going on would publish something wrong.
[[noreturn]] void fatalStop(std::string_view message) noexcept;

} // namespace kinovane
