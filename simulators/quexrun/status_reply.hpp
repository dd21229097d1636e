// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include <boost/json.hpp>

namespace quexrun {

/// The status that is reported when no other is asked for: models of several sizes and states, pi installed.
boost::json::object builtInStatus();

/// The status to print: the file that the environment variable QUEXRUN_STATUS_FILE names, byte for byte, or
/// the built-in status as one line of JSON.
std::string statusReply();

} // namespace quexrun
