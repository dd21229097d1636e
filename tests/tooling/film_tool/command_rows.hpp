// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <kinovane/tooling.hpp>

namespace kinovane::test {

/// A call of the film tool.
struct CommandRow {
    std::string sentence;
    std::string reply; ///< A reply with which the call succeeds.
    /// Calls the operation and waits for it. Returns the text of its error; empty if it succeeds.
    std::function<std::string(const FilmToolClient&)> failure;
    std::vector<std::string> arguments; ///< The expected arguments.
    /// The expected additions to this process's environment.
    std::map<std::string, std::string> environment = {};
    bool decodes = true; ///< Whether the tool's reply is read.
};

/// Every call that runs the tool, with every optional absent and present.
std::vector<CommandRow> commandRows();

} // namespace kinovane::test
