// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace simulator {

/// A reason not to do what was asked for, worded as the one sentence that the film maker gets to read.
class Refusal : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Throws a Refusal such as `cannot open "/films/run/handoff.json": Permission denied`.
[[noreturn]] void refuseForSystem(std::string_view attempt, const std::filesystem::path& file,
                                  std::error_code reason);

/// The error that the last failed system call left in errno.
std::error_code lastSystemError();

} // namespace simulator
