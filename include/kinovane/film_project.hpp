// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/json.hpp>

/// The records of film-project.json, the state file of a film project. The film tool writes it after every
/// step; the library only reads it.
///
/// Every record is a plain aggregate whose members have the names of their JSON keys. A std::optional member
/// is absent when its key is missing or null. All other keys are required, except those of FilmBrief, and
/// decodeJSON throws JSONDecodingError when one is missing or has a value of another type. Unknown keys are
/// ignored. encodeJSON leaves out the keys of absent members. Time stamps, status words and phase words are
/// text exactly as the film tool wrote it, and are not interpreted.
///
/// Records own their data. Different objects may be used from different threads, and one object may be read
/// from several threads at once.
namespace kinovane {

/// The creative brief: what the film is meant to be. It can be read but not written. In the document, a value
/// is found under a flat key or in one of the nested objects "target" and "creative"; the nested value takes
/// precedence. Every key is optional, and a list that is missing is empty.
struct KINOVANE_EXPORT FilmBrief {
    std::optional<std::string> audience; ///< target.audience, else audience
    std::optional<std::string> genre;    ///< creative.genre, else genre
    std::optional<std::string> tone;     ///< creative.tone, else tone
    std::optional<std::string> rating;   ///< target.rating, else rating
    std::optional<std::string> language; ///< target.language, else language
    std::optional<std::string> platform; ///< target.platform, else platform
    std::optional<std::string> usage;    ///< target.usage, else usage
    /// In seconds: target.durationSeconds, else targetDurationSeconds.
    std::optional<double> targetDurationSeconds;
    std::vector<std::string> mustHaves;     ///< creative.mustHaves, else mustHaves
    std::vector<std::string> exclusions;    ///< creative.exclusions, else exclusions
    std::vector<std::string> references;    ///< creative.references, else references
    std::vector<std::string> openQuestions; ///< openQuestions

    bool operator==(const FilmBrief&) const = default;
};

/// One human approval gate. The name of the gate is its key in FilmProject::approvals.
struct KINOVANE_EXPORT FilmApproval {
    std::string status;
    std::optional<std::string> summary;
    std::optional<std::string> requestedAt; ///< Time stamp.
    std::optional<std::string> approvedAt;  ///< Time stamp.
    std::optional<std::string> approvedBy;
    std::optional<std::string> note;

    bool operator==(const FilmApproval&) const = default;
};

/// One task of a production department.
struct KINOVANE_EXPORT FilmDepartmentTask {
    std::string id;
    std::string role;
    std::string phase;
    std::vector<std::string> dependsOn; ///< Ids of other tasks, which need not exist.
    bool synthesis = false;
    std::string status;
    std::int64_t attempts = 0;

    bool operator==(const FilmDepartmentTask&) const = default;
};

/// The production state of one shot.
struct KINOVANE_EXPORT FilmShotState {
    std::string id; ///< Of the shot.
    std::optional<std::string> status;
    std::optional<std::int64_t> take;              ///< The number of the current take.
    std::optional<std::int64_t> selectedCandidate; ///< The index of the chosen candidate.

    bool operator==(const FilmShotState&) const = default;
};

/// A review note on a shot.
struct KINOVANE_EXPORT FilmReviewRequest {
    std::string shotId; ///< Need not be the id of an existing shot.
    std::string note;
    std::string status;
    std::string recordedAt;                   ///< Time stamp.
    std::optional<std::string> appliedAt;     ///< Time stamp.
    std::optional<std::int64_t> archivedTake; ///< The number of a take.

    /// The identity of the request: `shotId` and `recordedAt`, joined by ":".
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
    std::string speechAsr; ///< Speech recognition.
    std::string speechTts; ///< Speech synthesis.
    std::string sfx;       ///< Sound effects.
    std::string music;

    bool operator==(const FilmModelConfiguration&) const = default;
};

/// The production settings.
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

/// One file that the film tool produced, as it was recorded. Nothing in it is checked against the file.
struct KINOVANE_EXPORT FilmArtifact {
    std::int64_t bytes = 0;  ///< The size of the file in bytes.
    std::string contentType; ///< The media type, such as "video/mp4".
    std::string createdAt;   ///< Time stamp.
    std::string kind;        ///< Such as "shot-clip" or "delivery-master"; may be any text.
    std::string path;   ///< Absolute when it begins with "/", otherwise relative to the workspace directory.
    std::string sha256; ///< The digest: "sha256:" and 64 lowercase hexadecimal digits; may be any text.
    std::string source; ///< What produced the file.

    /// The identity of the artifact: `kind`, `path` and `sha256`, joined by ":".
    std::string id() const;

    bool operator==(const FilmArtifact&) const = default;
};

/// One of the ten production steps.
struct KINOVANE_EXPORT FilmProofStep {
    std::string_view key; ///< The member's name in FilmProof, such as "humanReview". A string literal.
    bool complete = false;

    bool operator==(const FilmProofStep&) const = default;
};

/// Whether each of the ten production steps is complete.
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

    /// The number of complete steps, 0 to 10.
    int completedCount() const noexcept;

    /// The steps with their keys, in the order in which a production goes through them.
    std::array<FilmProofStep, 10> steps() const noexcept;

    bool operator==(const FilmProof&) const = default;
};

/// An open problem of the project.
struct KINOVANE_EXPORT FilmIssue {
    std::string code;
    std::string message;
    bool blocking = false;
    std::optional<std::string> recordedAt; ///< Time stamp.

    /// The identity of the issue: its `code`. The reference is valid as long as this object.
    const std::string& id() const noexcept;

    bool operator==(const FilmIssue&) const = default;
};

/// The whole of film-project.json. It can be read but not written.
struct KINOVANE_EXPORT FilmProject {
    std::string contractVersion; ///< FilmProjectLoader accepts "quexrun/film-project.v1" only.
    std::string projectId;
    std::string title;
    std::string idea;      ///< The user's idea for the film, in free text.
    std::string createdAt; ///< Time stamp.
    std::string updatedAt; ///< Time stamp of the last change.
    std::string status;
    std::string phase;
    FilmBrief brief;
    std::map<std::string, FilmApproval> approvals; ///< By the name of the gate.
    std::vector<FilmDepartmentTask> departments;
    std::vector<FilmShotState> shots;
    std::vector<FilmReviewRequest> reviewRequests;
    std::vector<FilmJob> jobs;
    FilmProductionConfiguration production;
    std::vector<FilmArtifact> artifacts; ///< Every file produced, in the order of recording.
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
