// SPDX-License-Identifier: Apache-2.0

#include <kinovane/process.hpp>

#include "common/overloaded.hpp"

namespace kinovane {

std::string FilmToolErrorCases::describe(const Case& value) {
    return std::visit(
        Overloaded{
            [](const executableNotFound& error) { return "Required executable not found: " + error.name; },
            [](const launchFailed& error) { return "Could not launch film command: " + error.message; },
            [](const commandFailed& error) {
                return error.result.stderr.empty()
                           ? "Film command exited " + std::to_string(error.result.exitCode) + "."
                           : error.result.stderr;
            },
            [](const invalidJSON& error) { return "Film command returned invalid JSON: " + error.message; },
        },
        value);
}

FilmToolError::~FilmToolError() = default;

} // namespace kinovane
