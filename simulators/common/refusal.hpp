// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include "common/json_text.hpp"

namespace simulator {

/// A reason to refuse a command, as one sentence for the film maker.
class Refusal : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Throws a Refusal such as `cannot open "/films/run/handoff.json": Permission denied`.
[[noreturn]] inline void refuseForSystem(const std::string& attempt, const std::filesystem::path& file,
                                         std::error_code reason) {
    throw Refusal("cannot " + attempt + " " + jsonQuoted(file.native()) + ": " + reason.message());
}

/// The error of the last failed system call.
inline std::error_code lastSystemError() { return {errno, std::system_category()}; }

} // namespace simulator
