// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <stdexcept>
#include <string>
#include <variant>

#include "commands/doctor.hpp"
#include "commands/inspect.hpp"
#include "commands/publish.hpp"
#include "commands/verify.hpp"

namespace kinovane::tool {

/// The help or the version, to be printed.
struct Notice {
    std::string text;
};

using Command = std::variant<Notice, InspectRequest, VerifyRequest, PublishRequest, DoctorRequest>;

/// The arguments are not a valid command line.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Throws UsageError.
Command parseCommandLine(int argumentCount, const char* const* arguments);

} // namespace kinovane::tool
