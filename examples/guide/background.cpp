// SPDX-License-Identifier: Apache-2.0

// Builds a handoff without blocking the main loop:
//   guide_background RUN_JSON
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <tuple>
#include <utility>

#include <kinovane/background.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/user_message.hpp>

#include "../event_loop.hpp"

using namespace kinovane;

namespace {

void buildInBackground(const std::filesystem::path& run, StopToken stop, EventLoop& loop) {
    //! [build]
    HandoffBuildOptions options;
    options.workers = 4; // Four files are read at once.
    options.stop = std::move(stop);
    // Called on a reading thread, never on two at once, so the numbers are passed to the loop.
    options.onProgress = [post = loop.executor()](const VerificationProgress& progress) {
        post([done = progress.filesDone, total = progress.filesTotal] {
            if (done == total)
                std::cout << "verified " << total << " files\n";
        });
    };
    auto task = runInBackground([run, options] {
        const FilmWorkspaceSnapshot film = FilmProjectLoader::load(run);
        return VistrelHandoffBuilder::build(film, film.root.string(), {}, options);
    });
    task.then(loop.executor(), [&loop](Task<VistrelHandoff> finished) {
        try {
            const VistrelHandoff handoff = finished.get(); // Does not block: the operation is done.
            std::cout << "built a handoff of " << handoff.shots.size() << " shots and "
                      << handoff.assets.size() << " files\n";
            loop.quit(EXIT_SUCCESS);
        } catch (const std::exception& error) {
            std::cout << userMessage(error) << '\n';
            loop.quit(EXIT_FAILURE);
        }
    });
    //! [build]
}

void loadTwo(const std::filesystem::path& run) {
    //! [all]
    auto first = runInBackground([run] { return FilmProjectLoader::load(run); });
    auto second = runInBackground([run] { return VistrelHandoffBuilder::sha256(run); });
    const auto [film, digest] = whenAll(std::move(first), std::move(second)).get();
    std::cout << film.project.title << ", " << digest.substr(0, 15) << "…\n";
    //! [all]
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: guide_background RUN_JSON\n";
        return 2;
    }
    StopSource stop;
    EventLoop loop;
    buildInBackground(arguments[1], stop.token(), loop);
    const int status = loop.run();
    if (status != EXIT_SUCCESS)
        return status;

    loadTwo(arguments[1]);
    stop.requestStop();
    EventLoop other;
    buildInBackground(arguments[1], stop.token(), other); // Ends before the first file is read.
    return other.run() == EXIT_FAILURE ? EXIT_SUCCESS : EXIT_FAILURE;
}
