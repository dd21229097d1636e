// SPDX-License-Identifier: Apache-2.0

#include "common/digest.hpp"
#include "common/file.hpp"
#include "common/refusal.hpp"
#include "phases.hpp"
#include "story.hpp"
#include "workspace.hpp"

namespace simulator::film {
namespace {

json::object runManifestOf(const Pitch& pitch) {
    const std::string id = projectIdOf(pitch);
    return {{"contractVersion", "quexrun/film-run.v1"},
            {"tool", "film"},
            {"runId", "run-" + digestOf(id + '\n' + pitch.createdAt).substr(0, 12)},
            {"projectId", id},
            {"title", pitch.title},
            {"createdAt", pitch.createdAt},
            {"project", projectName},
            {"productionPlan", planName},
            {"treatment", treatmentName}};
}

json::object projectOf(const Pitch& pitch, const json::object& plan) {
    json::object project = documentTemplate(projectName);
    project["projectId"] = projectIdOf(pitch);
    project["title"] = pitch.title;
    project["idea"] = pitch.idea;
    project["createdAt"] = pitch.createdAt;
    project["updatedAt"] = pitch.createdAt;
    recordOf(recordOf(project, "brief"), "target")["durationSeconds"] = static_cast<double>(pitch.seconds);
    for (const json::value& shot : listOf(plan, "shots")) {
        listOf(project, "shots")
            .emplace_back(json::object{{"id", textOf(asRecord(shot), "id")}, {"status", "planned"}});
    }
    finishPhase(project, "plan", pitch.createdAt);
    return project;
}

} // namespace

std::filesystem::path createFilm(const Pitch& pitch, const std::filesystem::path& folder) {
    if (pitch.title.empty() || pitch.idea.empty())
        throw Refusal("A film needs a title and an idea.");
    const std::filesystem::path root = absolutePath(folder);
    const std::filesystem::path runManifest = root / "run.json";
    if (std::filesystem::exists(runManifest))
        throw Refusal("The folder " + jsonQuoted(root.native()) + " already holds a film.");
    std::filesystem::create_directories(root);
    const json::object plan = productionPlanOf(pitch);
    replaceFile(root / planName, pretty(plan));
    replaceFile(root / treatmentName, pretty(treatmentOf(pitch)));
    replaceFile(root / projectName, pretty(projectOf(pitch, plan)));
    // The run manifest comes last: without it, the folder is not a film.
    replaceFile(runManifest, pretty(runManifestOf(pitch)));
    return runManifest;
}

} // namespace simulator::film
