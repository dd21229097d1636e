// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace CLI {
class App;
}

namespace kinovane::tool {

/// The manual page kinovane(1) or, for a command, kinovane-COMMAND(1), in the language of man(7), made from
/// the description of the arguments. Throws UsageError for an unknown command.
std::string manualPage(const CLI::App& app, const std::string& command);

} // namespace kinovane::tool
