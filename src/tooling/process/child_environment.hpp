// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/run_options.hpp>

#include "tooling/process/c_string_array.hpp"

namespace kinovane {

/// The environment of a child process: that of this process, in which the variables of `options.environment`
/// replace those of the same names, with an extended PATH if `options` ask for it. Each of these names occurs
/// once.
CStringArray childEnvironment(const RunOptions& options);

} // namespace kinovane
