// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <map>
#include <string>

#include "tooling/process/c_string_array.hpp"

namespace kinovane {

/// The environment of a child process: that of this process, in which `additions` replace the variables of
/// the same names. Each name occurs once.
CStringArray mergedEnvironment(const std::map<std::string, std::string>& additions);

} // namespace kinovane
