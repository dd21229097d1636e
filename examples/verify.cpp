// SPDX-License-Identifier: Apache-2.0

// Compares every exported file of a film with its recorded digest, and lists all damaged files:
//   verify RUN_JSON
#include <cstdlib>
#include <exception>
#include <iostream>

#include <kinovane/handoff.hpp>

using namespace kinovane;

namespace {

int verify(const std::filesystem::path& runManifest) {
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(runManifest);
    HandoffBuildOptions options;
    options.workers = 4; // Four files are read at once.

    int missing = 0;
    int changed = 0;
    int other = 0;
    for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::audit(film, options)) {
        if (outcome.sound())
            continue;
        std::cout << outcome.description() << '\n';
        const auto* refusal = outcome.refusal ? &outcome.refusal->value() : nullptr;
        if (std::get_if<VistrelHandoffError::missingArtifact>(refusal))
            ++missing;
        else if (std::get_if<VistrelHandoffError::hashMismatch>(refusal))
            ++changed;
        else
            ++other; // The path leads out of the workspace, or the file cannot be read.
    }
    std::cout << missing << " missing, " << changed << " changed, " << other << " other failures\n";
    return missing + changed + other == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: verify RUN_JSON\n";
        return 2;
    }
    try {
        return verify(arguments[1]);
    } catch (const std::exception& error) { // `what` of this library's errors is their errorDescription.
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
