// SPDX-License-Identifier: Apache-2.0
//! [program]
#include <cstdlib>
#include <iostream>

#include <kinovane/user_message.hpp>
#include <kinovane/workspace.hpp>

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: first RUN_JSON\n";
        return 2;
    }
    try {
        const kinovane::FilmWorkspaceSnapshot film = kinovane::FilmProjectLoader::load(arguments[1]);
        std::cout << film.project.title << '\n'
                  << "phase: " << film.project.phase << '\n'
                  << "files: " << film.project.artifacts.size() << '\n';
        for (const kinovane::FilmProofStep& step : film.project.proof.steps())
            std::cout << (step.complete ? "[x] " : "[ ] ") << step.key << '\n';
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << kinovane::userMessage(error) << '\n';
        return EXIT_FAILURE;
    }
}
//! [program]
