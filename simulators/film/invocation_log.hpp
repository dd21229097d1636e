// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <span>
#include <string_view>

#include "command_line.hpp"

namespace film {

/// The file in a workspace in which every call is noted, one line of JSON each.
inline constexpr std::string_view invocationLogName = "film-tool-log.jsonl";

/// Starts the log of a new film.
void createInvocationLog(const std::filesystem::path& root);

/// Notes what this program was given: the arguments, the pi command, and the variables that choose pi's
/// provider and model. A variable that is not set has no key; one that is empty has an empty text. A film
/// without such a log gets no line: it was not planned here, and looking at it must not change it.
void noteInvocation(const std::filesystem::path& root, std::span<const std::string_view> arguments,
                    const Command& command);

} // namespace film
