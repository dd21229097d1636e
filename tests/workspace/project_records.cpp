// SPDX-License-Identifier: Apache-2.0

#include <kinovane/workspace.hpp>

#include "workspace/record_rows.hpp"

namespace kinovane::test {

namespace detail {

// Every member gets a value of its own, so that two that were exchanged would be noticed.

template <>
FilmApproval fullRecord() {
    return {"status", "summary", "requestedAt", "approvedAt", "approvedBy", "note"};
}

template <>
FilmDepartmentTask fullRecord() {
    return {"id", "role", "phase", {"a", "b"}, true, "status", 7};
}

template <>
FilmShotState fullRecord() {
    return {"id", "status", 3, 4};
}

template <>
FilmReviewRequest fullRecord() {
    return {"shotId", "note", "status", "recordedAt", "appliedAt", 6};
}

template <>
FilmJob fullRecord() {
    return {"id", "kind", "status", "shotId", "error"};
}

template <>
FilmModelConfiguration fullRecord() {
    return {"imageMaster", "imageShot", "video", "visionInspector", "speechAsr", "speechTts", "sfx", "music"};
}

template <>
FilmProductionConfiguration fullRecord() {
    return {"mode", 2, true, false, 5, 6, 7, fullRecord<FilmModelConfiguration>()};
}

template <>
FilmArtifact fullRecord() {
    return {9007199254740993, "contentType", "createdAt", "kind", "path", "sha256", "source"};
}

template <>
FilmProof fullRecord() {
    return {true, false, true, true, false, false, true, false, true, true};
}

template <>
FilmIssue fullRecord() {
    return {"code", "message", true, "recordedAt"};
}

template <>
FilmBrief fullRecord() {
    return {"audience", "genre", "tone", "rating",     "language", "platform",
            "usage",    8.5,     {"m"},  {"e1", "e2"}, {"r"},      {"o"}};
}

template <>
FilmProject fullRecord() {
    FilmProject project{"contractVersion",
                        "projectId",
                        "title",
                        "idea",
                        "createdAt",
                        "updatedAt",
                        "status",
                        "phase",
                        {},
                        {},
                        {},
                        {},
                        {},
                        {},
                        fullRecord<FilmProductionConfiguration>(),
                        {},
                        fullRecord<FilmProof>(),
                        {}};
    project.brief = fullRecord<FilmBrief>();
    project.approvals["gate"] = fullRecord<FilmApproval>();
    project.departments.push_back(fullRecord<FilmDepartmentTask>());
    project.shots.push_back(fullRecord<FilmShotState>());
    project.reviewRequests.push_back(fullRecord<FilmReviewRequest>());
    project.jobs.push_back(fullRecord<FilmJob>());
    project.artifacts.push_back(fullRecord<FilmArtifact>());
    project.issues.push_back(fullRecord<FilmIssue>());
    return project;
}

} // namespace detail

std::vector<RecordRow> projectRecords() {
    const auto approval = recordRow<FilmApproval>(
        "FilmApproval", {text("status"), optional(text("summary")), optional(text("requestedAt")),
                         optional(text("approvedAt")), optional(text("approvedBy")), optional(text("note"))});
    const auto task = recordRow<FilmDepartmentTask>(
        "FilmDepartmentTask", {text("id"), text("role"), text("phase"), list("dependsOn", R"(["a","b"])"),
                               boolean("synthesis", "true"), text("status"), integer("attempts", "7")});
    const auto shot = recordRow<FilmShotState>(
        "FilmShotState", {text("id"), optional(text("status")), optional(integer("take", "3")),
                          optional(integer("selectedCandidate", "4"))});
    const auto review = recordRow<FilmReviewRequest>(
        "FilmReviewRequest", {text("shotId"), text("note"), text("status"), text("recordedAt"),
                              optional(text("appliedAt")), optional(integer("archivedTake", "6"))});
    const auto job =
        recordRow<FilmJob>("FilmJob", {text("id"), optional(text("kind")), optional(text("status")),
                                       optional(text("shotId")), optional(text("error"))});
    const auto models = recordRow<FilmModelConfiguration>(
        "FilmModelConfiguration",
        {text("imageMaster"), text("imageShot"), text("video"), text("visionInspector"), text("speechAsr"),
         text("speechTts"), text("sfx"), text("music")});
    const auto production = recordRow<FilmProductionConfiguration>(
        "FilmProductionConfiguration",
        {text("mode"), integer("takesPerShot", "2"), boolean("generateScore", "true"),
         boolean("inspectGeneratedMedia", "false"), integer("maxParallelAgents", "5"),
         integer("piTimeoutSeconds", "6"), integer("mediaTimeoutSeconds", "7"),
         object("models", models.fullDocument())});
    const auto artifact = recordRow<FilmArtifact>(
        "FilmArtifact", {integer("bytes", "9007199254740993"), text("contentType"), text("createdAt"),
                         text("kind"), text("path"), text("sha256"), text("source")});
    const auto proof = recordRow<FilmProof>(
        "FilmProof", {boolean("creation", "true"), boolean("clips", "false"), boolean("assembly", "true"),
                      boolean("dialogue", "true"), boolean("sound", "false"), boolean("captions", "false"),
                      boolean("inspection", "true"), boolean("review", "false"),
                      boolean("humanReview", "true"), boolean("delivery", "true")});
    const auto issue =
        recordRow<FilmIssue>("FilmIssue", {text("code"), text("message"), boolean("blocking", "true"),
                                           optional(text("recordedAt"))});
    const auto brief = recordRow<FilmBrief>(
        "FilmBrief", {optional(text("audience")), optional(text("genre")), optional(text("tone")),
                      optional(text("rating")), optional(text("language")), optional(text("platform")),
                      optional(text("usage")), optional(real("targetDurationSeconds", "8.5")),
                      optional(list("mustHaves", R"(["m"])")), optional(list("exclusions", R"(["e1","e2"])")),
                      optional(list("references", R"(["r"])")), optional(list("openQuestions", R"(["o"])"))});
    const auto one = [](const RecordRow& row) { return "[" + row.fullDocument() + "]"; };
    const auto project = recordRow<FilmProject>(
        "FilmProject",
        {text("contractVersion"), text("projectId"), text("title"), text("idea"), text("createdAt"),
         text("updatedAt"), text("status"), text("phase"), object("brief", brief.fullDocument()),
         map("approvals", R"({"gate":)" + approval.fullDocument() + "}"), list("departments", one(task)),
         list("shots", one(shot)), list("reviewRequests", one(review)), list("jobs", one(job)),
         object("production", production.fullDocument()), list("artifacts", one(artifact)),
         object("proof", proof.fullDocument()), list("issues", one(issue))});
    return {approval, task, shot, review, job, models, production, artifact, proof, issue, brief, project};
}

} // namespace kinovane::test
