// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <map>
#include <string>

#include <kinovane/run_options.hpp>

namespace kinovane {

/// Returns the options of a run that does not depend on the working directory any more, with the operation's
/// own variables among the environment; those of `options` win. Throws std::invalid_argument for a negative
/// time, and FilmToolError (launchFailed) if the working directory cannot be read.
RunOptions preparedOptions(RunOptions options, std::map<std::string, std::string> environment);

} // namespace kinovane
