// SPDX-License-Identifier: Apache-2.0

// Publishes a finished film to Vistrel:
//   publish RUN_JSON VISTREL MANIFEST
// RUN_JSON is the film's run manifest, VISTREL the name or path of Vistrel's program. MANIFEST is written.
#include <array>
#include <cstdlib>
#include <iostream>

#include <kinovane/publish.hpp>
#include <kinovane/user_message.hpp>

using namespace kinovane;

constexpr std::array stepNames{"checking the documents", "verifying the files", "writing the manifest",
                               "asking Vistrel", "importing the film"};

int main(int count, char** arguments) {
    if (count != 4) {
        std::cerr << "usage: publish RUN_JSON VISTREL MANIFEST\n";
        return 2;
    }
    try {
        const FilmWorkspaceSnapshot film = FilmProjectLoader::load(arguments[1]);

        PublishOptions options;
        options.onStep = [](PublishStep step) {
            std::cerr << stepNames.at(static_cast<std::size_t>(step)) << '\n';
        };
        // Every exported file has to lie inside the workspace and to have its recorded SHA-256 digest.
        options.onProgress = [](const VerificationProgress& progress) {
            std::cerr << "verified " << progress.filesDone << " of " << progress.filesTotal << " files\n";
        };
        Task<PublishReceipt> task =
            publish(film, film.root.string(), arguments[3], VistrelClient(arguments[2]), options);

        // Blocks until the task is done. Throws unless Vistrel imported the film.
        const PublishReceipt receipt = task.get();
        for (const PreflightFinding& warning : receipt.warnings)
            std::cerr << "warning: " << warning.text << '\n';
        std::cout << "wrote " << receipt.manifest.string() << ", " << receipt.manifestDigest << '\n';
        if (receipt.imported) // Not after a dry run.
            std::cout << "imported as " << receipt.imported->projectId << '\n';
        return EXIT_SUCCESS;
    } catch (const std::exception& error) { // Of the workspace, its files, or Vistrel.
        std::cerr << userMessage(error) << '\n';
        return EXIT_FAILURE;
    }
}
