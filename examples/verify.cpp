// SPDX-License-Identifier: Apache-2.0

// Compares every exported file of a film with its recorded digest, without blocking the main loop, and lists
// all damaged files:
//   verify RUN_JSON
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <vector>

#include <kinovane/background.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/user_message.hpp>

#include "event_loop.hpp"

using namespace kinovane;

namespace {

std::vector<ArtifactOutcome> audit(const std::filesystem::path& runManifest) {
    HandoffBuildOptions options;
    options.workers = 4; // Four files are read at once.
    return VistrelHandoffBuilder::audit(FilmProjectLoader::load(runManifest), options);
}

int report(const std::vector<ArtifactOutcome>& outcomes) {
    int missing = 0;
    int changed = 0;
    int other = 0;
    for (const ArtifactOutcome& outcome : outcomes) {
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
    EventLoop loop;

    // The function blocks, on a thread of its own. The handler runs on this thread, called by the loop.
    auto task = runInBackground([run = std::filesystem::path(arguments[1])] { return audit(run); });
    task.then(loop.executor(), [&loop](Task<std::vector<ArtifactOutcome>> finished) {
        try {
            loop.quit(report(finished.get()));
        } catch (const std::exception& error) {
            std::cerr << userMessage(error) << '\n';
            loop.quit(EXIT_FAILURE);
        }
    });
    return loop.run();
}
