// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include "common/command_line.hpp"

namespace simulator::film {

/// Creates the empty log of a new film, film-tool-log.jsonl.
void createInvocationLog(const std::filesystem::path& root);

/// Appends one line of JSON: the arguments, the pi command, and the variables that choose pi's provider and
/// model. A variable that is not set has no key. A film without a log gets no line: it was not planned here,
/// and reading it must not change it.
void logInvocation(const std::filesystem::path& root, Arguments arguments, const Command& command);

} // namespace simulator::film
