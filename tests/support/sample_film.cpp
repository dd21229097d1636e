// SPDX-License-Identifier: Apache-2.0

#include "support/sample_film.hpp"

#include <span>

#include <kinovane/handoff.hpp>

namespace kinovane::test {

std::filesystem::path sampleFilm() { return KINOVANE_SAMPLE_FILM; }

std::string programPath(std::string_view name) {
    return std::string(KINOVANE_PROGRAMS) + "/" + std::string(name);
}

std::string smallestProject() {
    return R"({"contractVersion":"quexrun/film-project.v1","projectId":"p","title":"t","idea":"i","createdAt":"c",)"
           R"("updatedAt":"u","status":"s","phase":"f","brief":{},"approvals":{},"departments":[],"shots":[],)"
           R"("reviewRequests":[],"jobs":[],"production":{"mode":"m","takesPerShot":1,"generateScore":true,)"
           R"("inspectGeneratedMedia":false,"maxParallelAgents":2,"piTimeoutSeconds":3,"mediaTimeoutSeconds":4,)"
           R"("models":{"imageMaster":"a","imageShot":"b","video":"c","visionInspector":"d","speechAsr":"e",)"
           R"("speechTts":"f","sfx":"g","music":"h"}},"artifacts":[],"proof":{"creation":true,"clips":true,)"
           R"("assembly":true,"dialogue":true,"sound":true,"captions":false,"inspection":true,"review":true,)"
           R"("humanReview":true,"delivery":true},"issues":[]})";
}

FilmProductionShot shotOf(std::string id, double durationSeconds) {
    FilmProductionShot shot;
    shot.id = std::move(id);
    shot.durationSeconds = durationSeconds;
    shot.seed = 7;
    return shot;
}

WorkspaceMaker::WorkspaceMaker() {
    snapshot.root = directory.path();
    snapshot.runManifest = directory.write("run.json", "");
    snapshot.project = decodeJSON<FilmProject>(smallestProject());
    FilmProductionPlan plan;
    plan.plannedDurationSeconds = 1.5;
    plan.shots.push_back(shotOf("s1", 1.5));
    snapshot.productionPlan = plan;
}

FilmArtifact& WorkspaceMaker::add(std::string_view kind, std::string_view path, std::string_view content) {
    directory.write(path, content);
    FilmArtifact& artifact = list(kind, path);
    artifact.bytes = static_cast<std::int64_t>(content.size());
    artifact.sha256 = VistrelHandoffBuilder::sha256(std::as_bytes(std::span(content)));
    return artifact;
}

FilmArtifact& WorkspaceMaker::list(std::string_view kind, std::string_view path) {
    return snapshot.project.artifacts.emplace_back(
        FilmArtifact{0, "application/octet-stream", "2026-01-01T00:00:00Z", std::string(kind),
                     std::string(path), std::string(emptyDigest), "test"});
}

} // namespace kinovane::test
