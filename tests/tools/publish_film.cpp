// SPDX-License-Identifier: Apache-2.0

#include "tools/publish_film.hpp"

#include <algorithm>
#include <utility>

#include <kinovane/preflight.hpp>

namespace kinovane::test {

PublishFilm::PublishFilm() {
    workspace.add("shot-clip", "clips/s1.mp4", "moving pictures");
    workspace.add("poster", "poster.png", "a poster");
    workspace.add("prompt-log", "prompts.jsonl", "stays at home");
    writeDocuments(workspace);
}

Outcome PublishFilm::publish(std::vector<std::string> options,
                             std::map<std::string, std::string> environment) const {
    std::vector<std::string> arguments{"publish", root().string()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    if (std::find(options.begin(), options.end(), "--vistrel") == options.end())
        arguments.insert(arguments.end(), {"--vistrel", programPath("vistrel")});
    environment.emplace("VISTREL_LIBRARY", library().string());
    return runCommandLineTool(std::move(arguments), std::move(environment));
}

std::string PublishFilm::loaded() const {
    std::string text = "Loaded    t\n";
    for (const PreflightFinding& finding : VistrelHandoffBuilder::preflight(workspace.snapshot))
        text += "warning: " + finding.text + "\n";
    return text;
}

std::string PublishFilm::verified() const { return loaded() + "Verified  2 files, 23 B\n"; }

std::string PublishFilm::written(const std::filesystem::path& manifest) const {
    return verified() + "Written   " + manifest.string() + "\n";
}

std::string PublishFilm::writtenInDryRun() const {
    return verified() + "Written   nothing but a temporary manifest: this is a dry run\n";
}

} // namespace kinovane::test
