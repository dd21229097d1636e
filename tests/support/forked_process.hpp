// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <string>

namespace kinovane::test {

/// Runs `job` in a forked process, where it may change signals, descriptors and limits. Returns the text of
/// the job, or a description of its failure.
std::string inForkedProcess(const std::function<std::string()>& job);

} // namespace kinovane::test
