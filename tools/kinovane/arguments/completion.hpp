// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace CLI {
class App;
}

namespace kinovane::tool {

/// The completion script for "bash", "zsh" or "fish", made from the description of the arguments.
std::string completionScript(const CLI::App& app, const std::string& shell);

} // namespace kinovane::tool
