// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include <boost/json/object.hpp>

#include "session/console.hpp"
#include "session/exit_status.hpp"

namespace kinovane::tool {

/// The arguments are not a valid command line.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A failure that a command describes itself.
class CommandError : public std::runtime_error {
  public:
    /// `details` are further members of the error in JSON.
    CommandError(ExitStatus status, const std::string& message, boost::json::object details = {})
        : std::runtime_error(message), status_(status),
          details_(std::make_shared<const boost::json::object>(std::move(details))) {}

    ExitStatus status() const noexcept { return status_; }
    const boost::json::object& details() const noexcept { return *details_; }

  private:
    ExitStatus status_;
    std::shared_ptr<const boost::json::object> details_; ///< Shared, so that copying never throws.
};

/// What a failure is, for the user and for programs.
struct Failure {
    ExitStatus status = ExitStatus::unexpected;
    std::string message;              ///< Without the name of the tool. May have several lines.
    boost::json::object details = {}; ///< Further members of the error in JSON.
};

/// Whether the error is that of an operation which a signal has stopped (see interruption.hpp).
bool isRequestedStop(const std::system_error& error) noexcept;

/// Describes the exception that is being handled.
Failure currentFailure();

/// Writes the exception that is being handled to standard error, as text or as JSON, and returns the exit
/// status for it.
ExitStatus reportCurrentException(const Console& console) noexcept;

} // namespace kinovane::tool
