// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace simulator {

/// A reason not to do what was asked for, as one sentence for the film maker.
class Refusal : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Throws a Refusal such as `cannot open "/films/run/handoff.json": Permission denied`.
[[noreturn]] void refuseForSystem(std::string_view attempt, const std::filesystem::path& file,
                                  std::error_code reason);

/// The error of the last failed system call.
std::error_code lastSystemError();

} // namespace simulator
