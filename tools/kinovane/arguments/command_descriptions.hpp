// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "arguments/commands.hpp"

namespace kinovane::tool {

/// Adds every command with its arguments to the description of the tool.
void describeCommands(CLI::App& app, Requests& requests);

} // namespace kinovane::tool
