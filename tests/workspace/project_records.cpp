// SPDX-License-Identifier: Apache-2.0

#include <kinovane/workspace.hpp>

#include "workspace/workspace_records.hpp"

namespace kinovane::test {

namespace {

// Every member has a different value, so that exchanged members are detected.

FilmApproval fullApproval() {
    return {"status", "summary", "requestedAt", "approvedAt", "approvedBy", "note"};
}

FilmDepartmentTask fullDepartmentTask() { return {"id", "role", "phase", {"a", "b"}, true, "status", 7}; }

FilmShotState fullShotState() { return {"id", "status", 3, 4}; }

FilmReviewRequest fullReviewRequest() { return {"shotId", "note", "status", "recordedAt", "appliedAt", 6}; }

FilmJob fullJob() { return {"id", "kind", "status", "shotId", "error"}; }

FilmModelConfiguration fullModelConfiguration() {
    return {"imageMaster", "imageShot", "video", "visionInspector", "speechAsr", "speechTts", "sfx", "music"};
}

FilmProductionConfiguration fullProductionConfiguration() {
    return {"mode", 2, true, false, 5, 6, 7, fullModelConfiguration()};
}

FilmArtifact fullArtifact() {
    return {9007199254740993, "contentType", "createdAt", "kind", "path", "sha256", "source"};
}

FilmProof fullProof() { return {true, false, true, true, false, false, true, false, true, true}; }

FilmIssue fullIssue() { return {"code", "message", true, "recordedAt"}; }

FilmBrief fullBrief() {
    return {"audience", "genre", "tone", "rating",     "language", "platform",
            "usage",    8.5,     {"m"},  {"e1", "e2"}, {"r"},      {"o"}};
}

FilmProject fullProject() {
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
                        fullProductionConfiguration(),
                        {},
                        fullProof(),
                        {}};
    project.brief = fullBrief();
    project.approvals["gate"] = fullApproval();
    project.departments.push_back(fullDepartmentTask());
    project.shots.push_back(fullShotState());
    project.reviewRequests.push_back(fullReviewRequest());
    project.jobs.push_back(fullJob());
    project.artifacts.push_back(fullArtifact());
    project.issues.push_back(fullIssue());
    return project;
}

} // namespace

std::vector<RecordRow> projectRecords() {
    const auto approval =
        recordRow("FilmApproval",
                  {text("status"), optional(text("summary")), optional(text("requestedAt")),
                   optional(text("approvedAt")), optional(text("approvedBy")), optional(text("note"))},
                  fullApproval());
    const auto task = recordRow("FilmDepartmentTask",
                                {text("id"), text("role"), text("phase"), list("dependsOn", R"(["a","b"])"),
                                 boolean("synthesis", "true"), text("status"), integer("attempts", "7")},
                                fullDepartmentTask());
    const auto shot = recordRow("FilmShotState",
                                {text("id"), optional(text("status")), optional(integer("take", "3")),
                                 optional(integer("selectedCandidate", "4"))},
                                fullShotState());
    const auto review = recordRow("FilmReviewRequest",
                                  {text("shotId"), text("note"), text("status"), text("recordedAt"),
                                   optional(text("appliedAt")), optional(integer("archivedTake", "6"))},
                                  fullReviewRequest());
    const auto job = recordRow("FilmJob",
                               {text("id"), optional(text("kind")), optional(text("status")),
                                optional(text("shotId")), optional(text("error"))},
                               fullJob());
    const auto models =
        recordRow("FilmModelConfiguration",
                  {text("imageMaster"), text("imageShot"), text("video"), text("visionInspector"),
                   text("speechAsr"), text("speechTts"), text("sfx"), text("music")},
                  fullModelConfiguration());
    const auto production =
        recordRow("FilmProductionConfiguration",
                  {text("mode"), integer("takesPerShot", "2"), boolean("generateScore", "true"),
                   boolean("inspectGeneratedMedia", "false"), integer("maxParallelAgents", "5"),
                   integer("piTimeoutSeconds", "6"), integer("mediaTimeoutSeconds", "7"),
                   object("models", models.fullDocument())},
                  fullProductionConfiguration());
    const auto artifact =
        recordRow("FilmArtifact",
                  {integer("bytes", "9007199254740993"), text("contentType"), text("createdAt"), text("kind"),
                   text("path"), text("sha256"), text("source")},
                  fullArtifact());
    const auto proof =
        recordRow("FilmProof",
                  {boolean("creation", "true"), boolean("clips", "false"), boolean("assembly", "true"),
                   boolean("dialogue", "true"), boolean("sound", "false"), boolean("captions", "false"),
                   boolean("inspection", "true"), boolean("review", "false"), boolean("humanReview", "true"),
                   boolean("delivery", "true")},
                  fullProof());
    const auto issue =
        recordRow("FilmIssue",
                  {text("code"), text("message"), boolean("blocking", "true"), optional(text("recordedAt"))},
                  fullIssue());
    const auto brief =
        recordRow("FilmBrief",
                  {optional(text("audience")), optional(text("genre")), optional(text("tone")),
                   optional(text("rating")), optional(text("language")), optional(text("platform")),
                   optional(text("usage")), optional(real("targetDurationSeconds", "8.5")),
                   optional(list("mustHaves", R"(["m"])")), optional(list("exclusions", R"(["e1","e2"])")),
                   optional(list("references", R"(["r"])")), optional(list("openQuestions", R"(["o"])"))},
                  fullBrief());
    const auto project =
        recordRow("FilmProject",
                  {text("contractVersion"), text("projectId"), text("title"), text("idea"), text("createdAt"),
                   text("updatedAt"), text("status"), text("phase"), object("brief", brief.fullDocument()),
                   map("approvals", R"({"gate":)" + approval.fullDocument() + "}"),
                   list("departments", task.fullList()), list("shots", shot.fullList()),
                   list("reviewRequests", review.fullList()), list("jobs", job.fullList()),
                   object("production", production.fullDocument()), list("artifacts", artifact.fullList()),
                   object("proof", proof.fullDocument()), list("issues", issue.fullList())},
                  fullProject());
    return {approval, task, shot, review, job, models, production, artifact, proof, issue, brief, project};
}

} // namespace kinovane::test
