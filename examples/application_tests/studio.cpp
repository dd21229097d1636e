// SPDX-License-Identifier: Apache-2.0

#include "studio.hpp"

#include <utility>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/background.hpp>
#include <kinovane/publish.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>
#include <kinovane/workspace.hpp>

using namespace kinovane;

namespace {

/// What the function returns, or the message of its failure.
template <class Function>
std::string textOf(Function function) {
    try {
        return function();
    } catch (const std::exception& error) {
        return userMessage(error);
    }
}

/// "Not published: …", with everything that the documents lack.
std::string problemsOf(const std::vector<PreflightFinding>& findings) {
    std::string text;
    for (const PreflightFinding& finding : findings)
        text += (text.empty() ? "Not published: " : " ") + finding.text;
    return text;
}

int percentOf(const VerificationProgress& progress) {
    return progress.filesTotal == 0 ? 100 : static_cast<int>(100 * progress.filesDone / progress.filesTotal);
}

} // namespace

Studio::Studio(Programs programs) : programs_(std::move(programs)) {}

std::string Studio::open(const std::filesystem::path& runManifest) const {
    return textOf([&] {
        const FilmWorkspaceSnapshot film = FilmProjectLoader::load(runManifest);
        return film.project.title + ", " + std::to_string(film.project.shots.size()) + " shots";
    });
}

Task<std::string> Studio::advance(const std::filesystem::path& runManifest) {
    stop_ = StopSource();
    RunOptions options;
    options.stop = stop_.token();
    options.gracePeriod = programs_.gracePeriod;
    return runInBackground([film = FilmToolClient(programs_.film), runManifest, options] {
        return textOf([&] {
            film.advance(runManifest, {}, {}, {}, options).get();
            const FilmStatusResponse status = film.status(runManifest).get();
            return status.nextGate ? "Waiting for your approval: " + *status.nextGate
                                   : "The film is finished";
        });
    });
}

Task<std::string> Studio::publish(const std::filesystem::path& runManifest,
                                  const std::filesystem::path& manifest,
                                  std::function<void(int)> showPercent) {
    stop_ = StopSource();
    PublishOptions options;
    options.stop = stop_.token();
    if (showPercent)
        options.onProgress = [showPercent = std::move(showPercent)](const VerificationProgress& progress) {
            showPercent(percentOf(progress));
        };
    return runInBackground([importer = VistrelClient(programs_.vistrel), runManifest, manifest, options] {
        return textOf([&] {
            const FilmWorkspaceSnapshot film = FilmProjectLoader::load(runManifest);
            try {
                kinovane::publish(film, film.root.string(), manifest, importer, options).get();
                return std::string("Published");
            } catch (const PublishError& error) {
                if (const auto* blocked = std::get_if<PublishError::blocked>(&error.value()))
                    return problemsOf(blocked->findings);
                throw;
            }
        });
    });
}

void Studio::stop() noexcept { stop_.requestStop(); }

std::string Studio::model() const {
    return textOf([&] {
        const auto model = QuexRunAgentClient(programs_.quexrun).status().get().bestInstalledModel();
        return model ? model->displayName : "No model is installed";
    });
}
