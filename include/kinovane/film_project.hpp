// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/json.hpp>

/// film-project.json: the state of one film project, written by the film tool after every step.
///
/// Every record is a plain aggregate. A member has the name of its JSON key; optional members are absent when
/// the key is missing or null, and all other keys are required. Time stamps are opaque text, as the film tool
/// wrote them. Records are independent values: copy, move and share them between threads as you would a
/// std::string.
namespace kinovane {

/// The creative brief. Read only. In the document each value may stand in the nested objects "target" and
/// "creative" or under a flat key; the nested one wins, and an absent list is empty.
struct KINOVANE_EXPORT FilmBrief {
    std::optional<std::string> audience;
    std::optional<std::string> genre;
    std::optional<std::string> tone;
    std::optional<std::string> rating;
    std::optional<std::string> language;
    std::optional<std::string> platform;
    std::optional<std::string> usage;
    std::optional<double> targetDurationSeconds;
    std::vector<std::string> mustHaves;
    std::vector<std::string> exclusions;
    std::vector<std::string> references;
    std::vector<std::string> openQuestions;

    bool operator==(const FilmBrief&) const = default;
};

/// One human approval gate. The gate's name is its key in FilmProject::approvals.
struct KINOVANE_EXPORT FilmApproval {
    std::string status;
    std::optional<std::string> summary;
    std::optional<std::string> requestedAt;
    std::optional<std::string> approvedAt;
    std::optional<std::string> approvedBy;
    std::optional<std::string> note;

    bool operator==(const FilmApproval&) const = default;
};

/// One task of a production department.
struct KINOVANE_EXPORT FilmDepartmentTask {
    std::string id;
    std::string role;
    std::string phase;
    std::vector<std::string> dependsOn; ///< Ids of other tasks; they are not checked to exist.
    bool synthesis = false;
    std::string status;
    std::int64_t attempts = 0;

    bool operator==(const FilmDepartmentTask&) const = default;
};

/// Where the production of one shot stands.
struct KINOVANE_EXPORT FilmShotState {
    std::string id;
    std::optional<std::string> status;
    std::optional<std::int64_t> take;
    std::optional<std::int64_t> selectedCandidate;

    bool operator==(const FilmShotState&) const = default;
};

/// A review note recorded against a shot.
struct KINOVANE_EXPORT FilmReviewRequest {
    std::string shotId;
    std::string note;
    std::string status;
    std::string recordedAt;
    std::optional<std::string> appliedAt;
    std::optional<std::int64_t> archivedTake;

    /// The shot's id and the time of recording, joined by ":".
    std::string id() const;

    bool operator==(const FilmReviewRequest&) const = default;
};

/// A background job of the film tool.
struct KINOVANE_EXPORT FilmJob {
    std::string id;
    std::optional<std::string> kind;
    std::optional<std::string> status;
    std::optional<std::string> shotId;
    std::optional<std::string> error;

    bool operator==(const FilmJob&) const = default;
};

/// The model chosen for each generation role.
struct KINOVANE_EXPORT FilmModelConfiguration {
    std::string imageMaster;
    std::string imageShot;
    std::string video;
    std::string visionInspector;
    std::string speechAsr;
    std::string speechTts;
    std::string sfx;
    std::string music;

    bool operator==(const FilmModelConfiguration&) const = default;
};

/// The settings of the production.
struct KINOVANE_EXPORT FilmProductionConfiguration {
    std::string mode;
    std::int64_t takesPerShot = 0;
    bool generateScore = false;
    bool inspectGeneratedMedia = false;
    std::int64_t maxParallelAgents = 0;
    std::int64_t piTimeoutSeconds = 0;
    std::int64_t mediaTimeoutSeconds = 0;
    FilmModelConfiguration models;

    bool operator==(const FilmProductionConfiguration&) const = default;
};

/// One produced file, as the film tool recorded it.
struct KINOVANE_EXPORT FilmArtifact {
    std::int64_t bytes = 0;  ///< Size of the file in bytes, as recorded.
    std::string contentType; ///< Media type, such as "video/mp4".
    std::string createdAt;
    std::string kind; ///< Such as "shot-clip" or "delivery-master"; any text is accepted.
    std::string path; ///< Absolute when it begins with "/", otherwise relative to the workspace's directory.
    std::string
        sha256; ///< Recorded digest: "sha256:" and 64 lowercase hexadecimal digits in a sound project.
    std::string source; ///< What produced the file.

    /// Kind, path and digest, joined by ":".
    std::string id() const;

    bool operator==(const FilmArtifact&) const = default;
};

/// Completion of the ten production steps.
struct KINOVANE_EXPORT FilmProof {
    bool creation = false;
    bool clips = false;
    bool assembly = false;
    bool dialogue = false;
    bool sound = false;
    bool captions = false;
    bool inspection = false;
    bool review = false;
    bool humanReview = false;
    bool delivery = false;

    /// How many of the ten steps are complete.
    int completedCount() const noexcept;

    bool operator==(const FilmProof&) const = default;
};

/// An open problem of the project.
struct KINOVANE_EXPORT FilmIssue {
    std::string code;
    std::string message;
    bool blocking = false;
    std::optional<std::string> recordedAt;

    /// The code.
    const std::string& id() const noexcept;

    bool operator==(const FilmIssue&) const = default;
};

/// The whole of film-project.json. Read only.
struct KINOVANE_EXPORT FilmProject {
    std::string contractVersion;
    std::string projectId;
    std::string title;
    std::string idea;
    std::string createdAt;
    std::string updatedAt;
    std::string status;
    std::string phase;
    FilmBrief brief;
    std::map<std::string, FilmApproval> approvals; ///< By gate name.
    std::vector<FilmDepartmentTask> departments;
    std::vector<FilmShotState> shots;
    std::vector<FilmReviewRequest> reviewRequests;
    std::vector<FilmJob> jobs;
    FilmProductionConfiguration production;
    std::vector<FilmArtifact> artifacts; ///< In the order in which the film tool recorded them.
    FilmProof proof;
    std::vector<FilmIssue> issues;

    bool operator==(const FilmProject&) const = default;
};

template <>
inline constexpr JSONForm jsonForm<FilmBrief> = JSONForm::reading;
template <>
inline constexpr JSONForm jsonForm<FilmApproval> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmDepartmentTask> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmShotState> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmReviewRequest> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmJob> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmModelConfiguration> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmProductionConfiguration> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmArtifact> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmProof> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmIssue> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmProject> = JSONForm::reading;

} // namespace kinovane
