// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/film_project.hpp>

#include "common/json/table.hpp"

/// The JSON keys of film-project.json. Some of its records also appear in the film tool's replies.
namespace kinovane::json {

template <>
struct Table<FilmApproval> {
    static constexpr std::tuple fields{
        field("status", &FilmApproval::status),           field("summary", &FilmApproval::summary),
        field("requestedAt", &FilmApproval::requestedAt), field("approvedAt", &FilmApproval::approvedAt),
        field("approvedBy", &FilmApproval::approvedBy),   field("note", &FilmApproval::note),
    };
};

template <>
struct Table<FilmDepartmentTask> {
    static constexpr std::tuple fields{
        field("id", &FilmDepartmentTask::id),
        field("role", &FilmDepartmentTask::role),
        field("phase", &FilmDepartmentTask::phase),
        field("dependsOn", &FilmDepartmentTask::dependsOn),
        field("synthesis", &FilmDepartmentTask::synthesis),
        field("status", &FilmDepartmentTask::status),
        field("attempts", &FilmDepartmentTask::attempts),
    };
};

template <>
struct Table<FilmShotState> {
    static constexpr std::tuple fields{
        field("id", &FilmShotState::id),
        field("status", &FilmShotState::status),
        field("take", &FilmShotState::take),
        field("selectedCandidate", &FilmShotState::selectedCandidate),
    };
};

template <>
struct Table<FilmReviewRequest> {
    static constexpr std::tuple fields{
        field("shotId", &FilmReviewRequest::shotId),
        field("note", &FilmReviewRequest::note),
        field("status", &FilmReviewRequest::status),
        field("recordedAt", &FilmReviewRequest::recordedAt),
        field("appliedAt", &FilmReviewRequest::appliedAt),
        field("archivedTake", &FilmReviewRequest::archivedTake),
    };
};

template <>
struct Table<FilmJob> {
    static constexpr std::tuple fields{
        field("id", &FilmJob::id),         field("kind", &FilmJob::kind),   field("status", &FilmJob::status),
        field("shotId", &FilmJob::shotId), field("error", &FilmJob::error),
    };
};

template <>
struct Table<FilmModelConfiguration> {
    static constexpr std::tuple fields{
        field("imageMaster", &FilmModelConfiguration::imageMaster),
        field("imageShot", &FilmModelConfiguration::imageShot),
        field("video", &FilmModelConfiguration::video),
        field("visionInspector", &FilmModelConfiguration::visionInspector),
        field("speechAsr", &FilmModelConfiguration::speechAsr),
        field("speechTts", &FilmModelConfiguration::speechTts),
        field("sfx", &FilmModelConfiguration::sfx),
        field("music", &FilmModelConfiguration::music),
    };
};

template <>
struct Table<FilmProductionConfiguration> {
    static constexpr std::tuple fields{
        field("mode", &FilmProductionConfiguration::mode),
        field("takesPerShot", &FilmProductionConfiguration::takesPerShot),
        field("generateScore", &FilmProductionConfiguration::generateScore),
        field("inspectGeneratedMedia", &FilmProductionConfiguration::inspectGeneratedMedia),
        field("maxParallelAgents", &FilmProductionConfiguration::maxParallelAgents),
        field("piTimeoutSeconds", &FilmProductionConfiguration::piTimeoutSeconds),
        field("mediaTimeoutSeconds", &FilmProductionConfiguration::mediaTimeoutSeconds),
        field("models", &FilmProductionConfiguration::models),
    };
};

template <>
struct Table<FilmArtifact> {
    static constexpr std::tuple fields{
        field("bytes", &FilmArtifact::bytes),         field("contentType", &FilmArtifact::contentType),
        field("createdAt", &FilmArtifact::createdAt), field("kind", &FilmArtifact::kind),
        field("path", &FilmArtifact::path),           field("sha256", &FilmArtifact::sha256),
        field("source", &FilmArtifact::source),
    };
};

template <>
struct Table<FilmProof> {
    static constexpr std::tuple fields{
        field("creation", &FilmProof::creation),
        field("clips", &FilmProof::clips),
        field("assembly", &FilmProof::assembly),
        field("dialogue", &FilmProof::dialogue),
        field("sound", &FilmProof::sound),
        field("captions", &FilmProof::captions),
        field("inspection", &FilmProof::inspection),
        field("review", &FilmProof::review),
        field("humanReview", &FilmProof::humanReview),
        field("delivery", &FilmProof::delivery),
    };
};

template <>
struct Table<FilmIssue> {
    static constexpr std::tuple fields{
        field("code", &FilmIssue::code),
        field("message", &FilmIssue::message),
        field("blocking", &FilmIssue::blocking),
        field("recordedAt", &FilmIssue::recordedAt),
    };
};

template <>
struct Table<FilmProject> {
    static constexpr std::tuple fields{
        field("contractVersion", &FilmProject::contractVersion),
        field("projectId", &FilmProject::projectId),
        field("title", &FilmProject::title),
        field("idea", &FilmProject::idea),
        field("createdAt", &FilmProject::createdAt),
        field("updatedAt", &FilmProject::updatedAt),
        field("status", &FilmProject::status),
        field("phase", &FilmProject::phase),
        field("brief", &FilmProject::brief),
        field("approvals", &FilmProject::approvals),
        field("departments", &FilmProject::departments),
        field("shots", &FilmProject::shots),
        field("reviewRequests", &FilmProject::reviewRequests),
        field("jobs", &FilmProject::jobs),
        field("production", &FilmProject::production),
        field("artifacts", &FilmProject::artifacts),
        field("proof", &FilmProject::proof),
        field("issues", &FilmProject::issues),
    };
};

} // namespace kinovane::json
