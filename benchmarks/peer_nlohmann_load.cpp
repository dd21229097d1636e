// SPDX-License-Identifier: Apache-2.0

#include <optional>
#include <string>
#include <vector>

#include "file_text.hpp"
#include "peer_json.hpp"
#include "peer_nlohmann_records.hpp"

namespace kinovane {

using nlohmann::json;

namespace {

template <class Value>
std::optional<Value> optional(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null())
        return std::nullopt;
    return found->get<Value>();
}

std::optional<std::string> optionalText(const json& object, const char* key) {
    return optional<std::string>(object, key);
}

std::vector<std::string> texts(const json& nested, const json& flat, const char* key) {
    auto found = optional<std::vector<std::string>>(nested, key);
    if (!found)
        found = optional<std::vector<std::string>>(flat, key);
    return found ? *std::move(found) : std::vector<std::string>{};
}

} // namespace

static void from_json(const json& object, FilmBrief& brief) {
    const json target = object.value("target", json::object());
    const json creative = object.value("creative", json::object());
    const auto either = [&](const json& nested, const char* key) {
        auto found = optionalText(nested, key);
        return found ? found : optionalText(object, key);
    };
    brief.audience = either(target, "audience");
    brief.genre = either(creative, "genre");
    brief.tone = either(creative, "tone");
    brief.rating = either(target, "rating");
    brief.language = either(target, "language");
    brief.platform = either(target, "platform");
    brief.usage = either(target, "usage");
    brief.targetDurationSeconds = optional<double>(target, "durationSeconds");
    if (!brief.targetDurationSeconds)
        brief.targetDurationSeconds = optional<double>(object, "targetDurationSeconds");
    brief.mustHaves = texts(creative, object, "mustHaves");
    brief.exclusions = texts(creative, object, "exclusions");
    brief.references = texts(creative, object, "references");
    brief.openQuestions = texts(object, object, "openQuestions");
}

static void from_json(const json& object, FilmApproval& approval) {
    object.at("status").get_to(approval.status);
    approval.summary = optionalText(object, "summary");
    approval.requestedAt = optionalText(object, "requestedAt");
    approval.approvedAt = optionalText(object, "approvedAt");
    approval.approvedBy = optionalText(object, "approvedBy");
    approval.note = optionalText(object, "note");
}

static void from_json(const json& object, FilmShotState& shot) {
    object.at("id").get_to(shot.id);
    shot.status = optionalText(object, "status");
    shot.take = optional<std::int64_t>(object, "take");
    shot.selectedCandidate = optional<std::int64_t>(object, "selectedCandidate");
}

static void from_json(const json& object, FilmReviewRequest& request) {
    object.at("shotId").get_to(request.shotId);
    object.at("note").get_to(request.note);
    object.at("status").get_to(request.status);
    object.at("recordedAt").get_to(request.recordedAt);
    request.appliedAt = optionalText(object, "appliedAt");
    request.archivedTake = optional<std::int64_t>(object, "archivedTake");
}

static void from_json(const json& object, FilmJob& job) {
    object.at("id").get_to(job.id);
    job.kind = optionalText(object, "kind");
    job.status = optionalText(object, "status");
    job.shotId = optionalText(object, "shotId");
    job.error = optionalText(object, "error");
}

static void from_json(const json& object, FilmIssue& issue) {
    object.at("code").get_to(issue.code);
    object.at("message").get_to(issue.message);
    object.at("blocking").get_to(issue.blocking);
    issue.recordedAt = optionalText(object, "recordedAt");
}

static void from_json(const json& object, FilmProject& project) {
    object.at("contractVersion").get_to(project.contractVersion);
    object.at("projectId").get_to(project.projectId);
    object.at("title").get_to(project.title);
    object.at("idea").get_to(project.idea);
    object.at("createdAt").get_to(project.createdAt);
    object.at("updatedAt").get_to(project.updatedAt);
    object.at("status").get_to(project.status);
    object.at("phase").get_to(project.phase);
    object.at("brief").get_to(project.brief);
    object.at("approvals").get_to(project.approvals);
    object.at("departments").get_to(project.departments);
    object.at("shots").get_to(project.shots);
    object.at("reviewRequests").get_to(project.reviewRequests);
    object.at("jobs").get_to(project.jobs);
    object.at("production").get_to(project.production);
    object.at("artifacts").get_to(project.artifacts);
    object.at("proof").get_to(project.proof);
    object.at("issues").get_to(project.issues);
}

FilmProject benchmarks::loadWithNlohmann(const std::filesystem::path& project) {
    const FileText text(project);
    return json::parse(text.view()).get<FilmProject>();
}

} // namespace kinovane
