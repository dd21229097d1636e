// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

#include <kinovane/tooling.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {

/// Runs a simulator; returns the result also when the exit status is not 0.
inline ProcessResult call(const std::string& program, std::vector<std::string> arguments,
                          std::map<std::string, std::string> environment = {}) {
    try {
        return FilmToolClient(program).run(std::move(arguments), std::move(environment)).get();
    } catch (const FilmToolError& error) {
        if (const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value()))
            return failed->result;
        throw;
    }
}

} // namespace kinovane::test
