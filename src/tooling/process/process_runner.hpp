// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <kinovane/tooling.hpp>

#include "common/json/decoder.hpp"

namespace kinovane {

/// Runs a program to its end on this thread and gives everything it wrote. `environment` is added to this
/// process's own. Throws FilmToolError: launchFailed, also when the outcome of a program that ran
/// was lost, or commandFailed for any exit status but 0. Throws nothing else but std::bad_alloc.
ProcessResult runSynchronously(const std::filesystem::path& executableURL, std::vector<std::string> arguments,
                               const std::map<std::string, std::string>& environment = {});

/// Reads a program's answer, which must be the whole of its standard output. `context` stands in front of the
/// message. Throws FilmToolError (invalidJSON).
template <class Reply>
Reply decode(const std::string& output, std::string_view context = {}) {
    try {
        return json::decode<Reply>(output);
    } catch (const JSONDecodingError& error) {
        throw FilmToolError(FilmToolError::invalidJSON{std::string(context) + error.what()});
    }
}

} // namespace kinovane
