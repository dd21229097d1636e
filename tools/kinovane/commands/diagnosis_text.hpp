// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "commands/diagnosis.hpp"

namespace kinovane::tool {

/// The diagnosis as text for the terminal.
std::string humanText(const Diagnosis& diagnosis);

/// The diagnosis as one line with one JSON object.
std::string jsonText(const Diagnosis& diagnosis);

} // namespace kinovane::tool
