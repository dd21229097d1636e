// SPDX-License-Identifier: Apache-2.0

#include "new_film.hpp"

#include "common/digest.hpp"
#include "common/file.hpp"
#include "common/json_text.hpp"
#include "common/refusal.hpp"
#include "departments.hpp"
#include "phases.hpp"
#include "workspace.hpp"

namespace film {
namespace {

json::object brief(const Pitch& pitch) {
    return {
        {"target", json::object{{"durationSeconds", static_cast<double>(pitch.seconds)}, {"language", "en"}}},
        {"creative", json::object{{"tone", "Quiet"}, {"mustHaves", textList({"One round light"})}}},
        {"openQuestions", textList({"Who should see this film first?"})}};
}

json::array plannedShots(const json::object& plan) {
    json::array states;
    for (const json::value& shot : listOf(plan, "shots"))
        states.emplace_back(json::object{{"id", textOf(asRecord(shot), "id")}, {"status", "planned"}});
    return states;
}

json::object production() {
    const json::object models{{"imageMaster", "stand-in-picture"}, {"imageShot", "stand-in-picture"},
                              {"video", "stand-in-movie"},         {"visionInspector", "stand-in-eye"},
                              {"speechAsr", "stand-in-ear"},       {"speechTts", "stand-in-voice"},
                              {"sfx", "stand-in-rustle"},          {"music", "stand-in-chords"}};
    return {{"mode", "stand-in"},         {"takesPerShot", 1},
            {"generateScore", true},      {"inspectGeneratedMedia", true},
            {"maxParallelAgents", 1},     {"piTimeoutSeconds", 600},
            {"mediaTimeoutSeconds", 900}, {"models", models}};
}

json::object noProof() {
    return {{"creation", false},    {"clips", false},    {"assembly", false},   {"dialogue", false},
            {"sound", false},       {"captions", false}, {"inspection", false}, {"review", false},
            {"humanReview", false}, {"delivery", false}};
}

json::object runManifest(const json::object& project) {
    const std::string id = textOf(project, "projectId");
    const std::string createdAt = textOf(project, "createdAt");
    return {{"contractVersion", "quexrun/film-run.v1"},
            {"tool", "film"},
            {"runId", "run-" + simulator::digestOf(id + '\n' + createdAt).substr(0, 12)},
            {"projectId", id},
            {"title", textOf(project, "title")},
            {"createdAt", createdAt},
            {"project", std::string(projectName)},
            {"productionPlan", std::string(planName)},
            {"treatment", std::string(treatmentName)}};
}

} // namespace

json::object newProject(const Pitch& pitch, const json::object& plan) {
    json::object project{{"contractVersion", "quexrun/film-project.v1"},
                         {"projectId", projectIdOf(pitch)},
                         {"title", pitch.title},
                         {"idea", pitch.idea},
                         {"createdAt", pitch.createdAt},
                         {"updatedAt", pitch.createdAt},
                         {"status", "in-production"},
                         {"phase", "plan"},
                         {"brief", brief(pitch)},
                         {"approvals", newApprovals()},
                         {"departments", newDepartments()},
                         {"shots", plannedShots(plan)},
                         {"reviewRequests", json::array()},
                         {"jobs", json::array()},
                         {"production", production()},
                         {"artifacts", json::array()},
                         {"proof", noProof()},
                         {"issues", json::array()}};
    finishPhase(project, "plan", pitch.createdAt);
    return project;
}

std::filesystem::path createFilm(const Pitch& pitch, const std::filesystem::path& folder) {
    if (pitch.title.empty() || pitch.idea.empty())
        throw simulator::Refusal("A film needs a title and an idea.");
    const std::filesystem::path root = absolutePath(folder);
    const std::filesystem::path manifest = root / "run.json";
    if (std::filesystem::exists(manifest)) {
        throw simulator::Refusal("The folder " + simulator::jsonQuoted(root.native()) +
                                 " already holds a film.");
    }
    std::filesystem::create_directories(root);
    const json::object plan = productionPlanOf(pitch);
    const json::object project = newProject(pitch, plan);
    simulator::replaceFile(root / planName, simulator::pretty(plan));
    simulator::replaceFile(root / treatmentName, simulator::pretty(treatmentOf(pitch)));
    simulator::replaceFile(root / projectName, simulator::pretty(project));
    // The run manifest comes last: before it is there, the folder is not a film.
    simulator::replaceFile(manifest, simulator::pretty(runManifest(project)));
    return manifest;
}

} // namespace film
