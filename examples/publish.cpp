// SPDX-License-Identifier: Apache-2.0

// Publishes a finished film to Vistrel:
//   publish RUN_JSON VISTREL MANIFEST
// RUN_JSON is the film's run manifest, VISTREL the name or path of Vistrel's program. MANIFEST is written.
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include <kinovane/handoff.hpp>

using namespace kinovane;

static void publish(const std::filesystem::path& runManifest, const std::string& vistrel,
                    const std::filesystem::path& manifest) {
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(runManifest);

    // Every exported file has to lie inside the workspace and to have its recorded SHA-256 digest.
    HandoffBuildOptions options;
    options.onProgress = [](const VerificationProgress& progress) {
        std::cerr << "verified " << progress.filesDone << " of " << progress.filesTotal << " files\n";
    };
    const VistrelHandoff handoff = VistrelHandoffBuilder::build(film, film.root.string(), {}, options);
    const std::string digest = VistrelHandoffBuilder::write(handoff, manifest);
    std::cout << "wrote " << manifest.string() << ", " << digest << '\n';

    const VistrelClient client(vistrel);
    VistrelImportReceipt receipt = client.validate(manifest).get(); // A dry run, which changes nothing.
    if (receipt.ok)
        receipt = client.import(manifest).get();
    if (!receipt.ok)
        throw std::runtime_error("Vistrel refuses the film.");
    std::cout << "imported as " << receipt.projectId << '\n';
}

int main(int count, char** arguments) {
    if (count != 4) {
        std::cerr << "usage: publish RUN_JSON VISTREL MANIFEST\n";
        return 2;
    }
    try {
        publish(arguments[1], arguments[2], arguments[3]);
        return EXIT_SUCCESS;
    } catch (const FilmProjectError& error) { // The workspace cannot be loaded.
        std::cerr << error.errorDescription() << '\n';
    } catch (const VistrelHandoffError& error) { // A media file is missing or damaged, or there is no plan.
        std::cerr << error.errorDescription() << '\n';
    } catch (const FilmToolError& error) { // Vistrel's program is missing, or it failed.
        std::cerr << error.errorDescription() << '\n';
    } catch (const std::exception& error) { // A file cannot be read or written, for example.
        std::cerr << error.what() << '\n';
    }
    return EXIT_FAILURE;
}
