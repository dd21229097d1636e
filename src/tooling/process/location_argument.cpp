// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/location_argument.hpp"

#include <kinovane/process.hpp>

#include "common/files/location.hpp"

namespace kinovane {

std::string locationArgument(std::string_view what, const std::filesystem::path& location) {
    if (location.empty())
        throw FilmToolError(
            FilmToolError::launchFailed{"the location of the " + std::string(what) + " is empty"});
    try {
        return absoluteLocation(location).string();
    } catch (const std::filesystem::filesystem_error& error) {
        throw FilmToolError(
            FilmToolError::launchFailed{"the location of the " + std::string(what) +
                                        " cannot be made absolute: getcwd: " + error.code().message()});
    }
}

} // namespace kinovane
