// SPDX-License-Identifier: Apache-2.0

// Shows what prevents a publish, then publishes a film in a dry run and for good:
//   guide_publishing RUN_JSON VISTREL MANIFEST
#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <kinovane/publish.hpp>
#include <kinovane/user_message.hpp>

using namespace kinovane;

namespace {

void showLeftOut(const FilmWorkspaceSnapshot& film) {
    //! [kinds]
    const auto exported = VistrelHandoffBuilder::exportedKinds();
    std::set<std::string_view> leftOut;
    for (const FilmArtifact& artifact : film.project.artifacts)
        if (std::ranges::find(exported, artifact.kind) == exported.end())
            leftOut.insert(artifact.kind);
    for (const std::string_view kind : leftOut)
        std::cout << "not exported: " << kind << '\n';
    //! [kinds]
}

bool mayPublish(const FilmWorkspaceSnapshot& film) {
    //! [preflight]
    const std::vector<PreflightFinding> findings = VistrelHandoffBuilder::preflight(film);
    for (const PreflightFinding& finding : findings) {
        const bool blocking = finding.severity == PreflightSeverity::blocking;
        std::cout << (blocking ? "cannot be published: " : "warning: ") << finding.text << '\n';
    }
    return !hasBlockingFinding(findings);
    //! [preflight]
}

PublishOptions options() {
    //! [options]
    PublishOptions options;
    options.workers = 4;       // Four files are read at once.
    options.examineAll = true; // Examine every file, also after a damaged one.
    // These two are called on the threads of the operation, one call at a time.
    options.onStep = [](PublishStep step) {
        constexpr std::array names{"documents", "files", "manifest", "dry run", "import"};
        std::cout << "step: " << names.at(static_cast<std::size_t>(step)) << '\n';
    };
    options.onOutcome = [](const ArtifactOutcome& outcome) {
        if (!outcome.sound())
            std::cout << outcome.description() << '\n';
    };
    //! [options]
    return options;
}

int publishTwice(const FilmWorkspaceSnapshot& film, const VistrelClient& vistrel,
                 const std::string& manifest) {
    //! [publish]
    PublishOptions dryRun = options();
    dryRun.dryRun = true; // Vistrel checks the manifest and changes nothing.
    publish(film, film.root.string(), manifest, vistrel, dryRun).get();

    // An application that has a main loop uses `then` in place of `get`.
    auto task = publish(film, film.root.string(), manifest, vistrel, options());
    try {
        const PublishReceipt receipt = task.get();
        std::cout << "imported as " << receipt.imported->projectId << '\n';
        return EXIT_SUCCESS;
    } catch (const PublishError& error) {
        std::cout << error.errorDescription() << '\n';
        if (const auto* refused = std::get_if<PublishError::refused>(&error.value()))
            std::cout << (refused->step == PublishStep::validate ? "Vistrel is unchanged.\n"
                                                                 : "Look at Vistrel's library.\n");
        return EXIT_FAILURE;
    }
    //! [publish]
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4) {
        std::cerr << "usage: guide_publishing RUN_JSON VISTREL MANIFEST\n";
        return 2;
    }
    try {
        const FilmWorkspaceSnapshot film = FilmProjectLoader::load(arguments[1]);
        showLeftOut(film);
        if (!mayPublish(film))
            return EXIT_FAILURE;
        return publishTwice(film, VistrelClient(arguments[2]), arguments[3]);
    } catch (const std::exception& error) {
        std::cerr << userMessage(error) << '\n';
        return EXIT_FAILURE;
    }
}
