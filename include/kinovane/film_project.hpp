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

/// The creative brief, `brief` of film-project.json: what the film is meant to be. It can be read but not
/// written. A value is found under a flat key or in one of the nested objects "target" and "creative"; the
/// nested value takes precedence. Every key is optional, and a list that is missing is empty.
struct KINOVANE_EXPORT FilmBrief {
    std::optional<std::string> audience; ///< The intended audience: target.audience, else audience.
    std::optional<std::string> genre;    ///< The genre: creative.genre, else genre.
    std::optional<std::string> tone;     ///< The mood: creative.tone, else tone.
    std::optional<std::string> rating;   ///< The content rating: target.rating, else rating.
    std::optional<std::string> language; ///< The language: target.language, else language.
    std::optional<std::string> platform; ///< Where it is shown: target.platform, else platform.
    std::optional<std::string> usage;    ///< What it is for: target.usage, else usage.
    /// The intended length in seconds: target.durationSeconds, else targetDurationSeconds.
    std::optional<double> targetDurationSeconds;
    std::vector<std::string> mustHaves;     ///< What has to be in it: creative.mustHaves, else mustHaves.
    std::vector<std::string> exclusions;    ///< What must not be in it: creative.exclusions, else exclusions.
    std::vector<std::string> references;    ///< Works to resemble: creative.references, else references.
    std::vector<std::string> openQuestions; ///< What the user has not decided yet: openQuestions.

    bool operator==(const FilmBrief&) const = default;
};

/// One human approval gate, `approvals[gate]` of film-project.json and of the film tool's status.
struct KINOVANE_EXPORT FilmApproval {
    std::string status; ///< Whether the gate was approved, in the film tool's words; "approved" if so.
    std::optional<std::string> summary;     ///< What the gate is about.
    std::optional<std::string> requestedAt; ///< Time stamp of the request.
    std::optional<std::string> approvedAt;  ///< Time stamp of the approval.
    std::optional<std::string> approvedBy;  ///< Who approved it.
    std::optional<std::string> note;        ///< What the approver wrote.

    bool operator==(const FilmApproval&) const = default;
};

/// One task of a production department, `departments[]` of film-project.json.
struct KINOVANE_EXPORT FilmDepartmentTask {
    std::string id;                     ///< Identifies the task.
    std::string role;                   ///< Which department or agent does it.
    std::string phase;                  ///< The production phase it belongs to.
    std::vector<std::string> dependsOn; ///< Ids of other tasks, which need not exist.
    bool synthesis = false;             ///< Whether it combines the results of other tasks.
    std::string status;                 ///< Status word.
    std::int64_t attempts = 0;          ///< How often it was tried. A count.

    bool operator==(const FilmDepartmentTask&) const = default;
};

/// The production state of one shot, `shots[]` of film-project.json.
struct KINOVANE_EXPORT FilmShotState {
    std::string id;                                ///< Of the shot.
    std::optional<std::string> status;             ///< Status word.
    std::optional<std::int64_t> take;              ///< The number of the current take.
    std::optional<std::int64_t> selectedCandidate; ///< The index of the chosen candidate.

    bool operator==(const FilmShotState&) const = default;
};

/// A review note on a shot, `reviewRequests[]` of film-project.json and of the film tool's status.
struct KINOVANE_EXPORT FilmReviewRequest {
    std::string shotId;                       ///< Need not be the id of an existing shot.
    std::string note;                         ///< What should be different.
    std::string status;                       ///< Status word.
    std::string recordedAt;                   ///< Time stamp.
    std::optional<std::string> appliedAt;     ///< Time stamp.
    std::optional<std::int64_t> archivedTake; ///< The number of a take.

    /// The identity of the request: `shotId` and `recordedAt`, joined by ":".
    std::string id() const;

    bool operator==(const FilmReviewRequest&) const = default;
};

/// A background job of the film tool, `jobs[]` of film-project.json.
struct KINOVANE_EXPORT FilmJob {
    std::string id;                    ///< Identifies the job.
    std::optional<std::string> kind;   ///< What the job does.
    std::optional<std::string> status; ///< Status word.
    std::optional<std::string> shotId; ///< The id of the shot that it works on.
    std::optional<std::string> error;  ///< Why it failed.

    bool operator==(const FilmJob&) const = default;
};

/// The model chosen for each generation role, `production.models` of film-project.json.
struct KINOVANE_EXPORT FilmModelConfiguration {
    std::string imageMaster;     ///< Images of cast and locations.
    std::string imageShot;       ///< Key frames of shots.
    std::string video;           ///< Clips.
    std::string visionInspector; ///< Inspection of images and clips.
    std::string speechAsr;       ///< Speech recognition.
    std::string speechTts;       ///< Speech synthesis.
    std::string sfx;             ///< Sound effects.
    std::string music;           ///< The score.

    bool operator==(const FilmModelConfiguration&) const = default;
};

/// The production settings, `production` of film-project.json.
struct KINOVANE_EXPORT FilmProductionConfiguration {
    std::string mode;                     ///< The production mode, a word of the film tool.
    std::int64_t takesPerShot = 0;        ///< How many takes are made of each shot. A count.
    bool generateScore = false;           ///< Whether music is made.
    bool inspectGeneratedMedia = false;   ///< Whether generated files are inspected.
    std::int64_t maxParallelAgents = 0;   ///< How many agents may work at once. A count.
    std::int64_t piTimeoutSeconds = 0;    ///< The time limit of the coding agent, in seconds.
    std::int64_t mediaTimeoutSeconds = 0; ///< The time limit of making a file, in seconds.
    FilmModelConfiguration models;        ///< The models in use.

    bool operator==(const FilmProductionConfiguration&) const = default;
};

/// One file that the film tool produced, `artifacts[]` of film-project.json. Nothing in it is checked against
/// the file.
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
    std::string_view key;  ///< The member's name in FilmProof, such as "humanReview". A string literal.
    bool complete = false; ///< The member's value.

    bool operator==(const FilmProofStep&) const = default;
};

/// Whether each of the ten production steps is complete, `proof` of film-project.json, of the film tool's
/// status and of the handoff manifest.
struct KINOVANE_EXPORT FilmProof {
    bool creation = false;    ///< Cast, locations and key frames were made.
    bool clips = false;       ///< Every shot has its clip.
    bool assembly = false;    ///< The clips were put together.
    bool dialogue = false;    ///< The spoken lines are there.
    bool sound = false;       ///< Sound effects and music are there.
    bool captions = false;    ///< The captions are there.
    bool inspection = false;  ///< The media files were inspected.
    bool review = false;      ///< The film was reviewed.
    bool humanReview = false; ///< A person reviewed the film.
    bool delivery = false;    ///< The film was delivered.

    /// The number of complete steps, 0 to 10.
    int completedCount() const noexcept;

    /// The steps with their keys, in the order in which a production goes through them.
    std::array<FilmProofStep, 10> steps() const noexcept;

    bool operator==(const FilmProof&) const = default;
};

/// An open problem of the project, `issues[]` of film-project.json and of the film tool's status.
struct KINOVANE_EXPORT FilmIssue {
    std::string code;                      ///< Which kind of problem it is, for programs.
    std::string message;                   ///< The problem in words, for the user.
    bool blocking = false;                 ///< Whether production cannot continue before it is solved.
    std::optional<std::string> recordedAt; ///< Time stamp.

    /// The identity of the issue: its `code`. The reference is valid as long as this object.
    const std::string& id() const noexcept;

    bool operator==(const FilmIssue&) const = default;
};

/// The whole of film-project.json. It can be read but not written.
struct KINOVANE_EXPORT FilmProject {
    std::string contractVersion; ///< FilmProjectLoader accepts "quexrun/film-project.v1" only.
    std::string projectId;       ///< The identifier of the project.
    std::string title;           ///< The title of the film.
    std::string idea;            ///< The user's idea for the film, in free text.
    std::string createdAt;       ///< Time stamp.
    std::string updatedAt;       ///< Time stamp of the last change.
    std::string status;          ///< Status word of the whole project.
    std::string phase;           ///< Phase word: how far production has come.
    FilmBrief brief;             ///< What the film is meant to be.
    std::map<std::string, FilmApproval> approvals; ///< By the name of the gate.
    std::vector<FilmDepartmentTask> departments;   ///< The tasks of the departments.
    std::vector<FilmShotState> shots;              ///< The production state of each shot.
    std::vector<FilmReviewRequest> reviewRequests; ///< The review notes on shots.
    std::vector<FilmJob> jobs;                     ///< The background jobs of the film tool.
    FilmProductionConfiguration production;        ///< The production settings.
    std::vector<FilmArtifact> artifacts;           ///< Every file produced, in the order of recording.
    FilmProof proof;                               ///< Which of the ten production steps are complete.
    std::vector<FilmIssue> issues;                 ///< The open problems.

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
