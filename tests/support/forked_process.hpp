// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <string>

namespace kinovane::test {

/// Runs `job` in a copy of this process, where it may spoil signals, descriptors and limits for itself. Gives
/// the text it returned, or says how it failed.
std::string inForkedProcess(const std::function<std::string()>& job);

} // namespace kinovane::test
