// SPDX-License-Identifier: Apache-2.0

#include <iostream>

#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/version.hpp>
#include <kinovane/workspace.hpp>

static_assert(KINOVANE_VERSION ==
              KINOVANE_VERSION_MAJOR * 10000 + KINOVANE_VERSION_MINOR * 100 + KINOVANE_VERSION_PATCH);

int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    try {
        const auto film = kinovane::FilmProjectLoader::load(arguments[1]);
        const auto handoff = kinovane::VistrelHandoffBuilder::build(film, film.root.string());
        std::cout << "KinovaneCore " << KinovaneCoreVersionString << " (headers " << KINOVANE_VERSION_MAJOR
                  << '.' << KINOVANE_VERSION_MINOR << '.' << KINOVANE_VERSION_PATCH
                  << "): " << handoff.project.title << ", " << handoff.assets.size() << " assets\n";
        // An error crosses the library's boundary as the type that it is.
        kinovane::FilmToolClient::resolveExecutable("no such program");
    } catch (const kinovane::FilmToolError& error) {
        return error == kinovane::FilmToolError::executableNotFound{"no such program"} ? 0 : 3;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return 1;
}
