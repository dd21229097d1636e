// SPDX-License-Identifier: Apache-2.0

// Continues a production, and shows what has changed in the workspace:
//   guide_changes FILM RUN_JSON
#include <cstdlib>
#include <iostream>

#include <kinovane/film_changes.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

using namespace kinovane;

namespace {

void show(const FilmWorkspaceSnapshot& before, const FilmWorkspaceSnapshot& after) {
    //! [changes]
    const FilmChanges different = changes(before, after);
    if (different.phase)
        std::cout << "phase: " << different.phase->before << " -> " << different.phase->after << '\n';
    for (const FilmRecordChange<FilmArtifact>& file : different.artifacts)
        if (!file.before)
            std::cout << "new file: " << file.id << '\n';
        else if (!file.after)
            std::cout << "file removed: " << file.id << '\n';
        else
            std::cout << "file replaced: " << file.id << '\n';
    for (const FilmRecordChange<bool>& step : different.proofSteps)
        std::cout << step.id << (step.after == true ? " is proven\n" : " is not proven any more\n");
    //! [changes]
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: guide_changes FILM RUN_JSON\n";
        return 2;
    }
    try {
        const FilmToolClient film(arguments[1]);
        const FilmWorkspaceSnapshot before = FilmProjectLoader::load(arguments[2]);
        film.advance(arguments[2]).get();
        show(before, FilmProjectLoader::load(arguments[2]));
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << userMessage(error) << '\n';
        return EXIT_FAILURE;
    }
}
