// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <kinovane/error.hpp>
#include <kinovane/export.hpp>
#include <kinovane/json.hpp>

/// A film workspace on disk: its documents as typed records, and the loader that turns the location of a run
/// manifest into one immutable snapshot.
///
/// Every record is a plain aggregate. A member has the name of its JSON key; optional members are absent when
/// the key is missing or null, and all other keys are required. Time stamps are opaque text, as the film tool
/// wrote them. Records are independent values: copy, move and share them between threads as you would a
/// std::string.
namespace kinovane {

// ---------------------------------------------------------------------------------------------------------------------
// film-project.json: the state of one film project, written by the film tool after every step

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

// ---------------------------------------------------------------------------------------------------------------------
// production-plan.json: the film, shot by shot

/// What is to be delivered.
struct KINOVANE_EXPORT FilmTarget {
    std::optional<std::string> aspectRatio;
    std::optional<std::string> audience;
    std::optional<double> durationSeconds;
    std::optional<std::int64_t> fps;
    std::optional<std::int64_t> height; ///< Pixels.
    std::optional<std::string> language;
    std::optional<std::string> platform;
    std::optional<std::string> rating;
    std::optional<std::string> usage;
    std::optional<std::int64_t> width; ///< Pixels.

    bool operator==(const FilmTarget&) const = default;
};

/// A character of the film.
struct KINOVANE_EXPORT FilmCastMember {
    std::string id;
    std::string name;
    std::string visual;
    std::string wardrobe;
    std::string voice;
    std::optional<std::int64_t> seed;

    bool operator==(const FilmCastMember&) const = default;
};

/// A set of the film.
struct KINOVANE_EXPORT FilmLocation {
    std::string id;
    std::string name;
    std::string visual;
    std::string ambience;
    std::optional<std::int64_t> seed;

    bool operator==(const FilmLocation&) const = default;
};

/// A spoken line of a shot.
struct KINOVANE_EXPORT FilmDialogueLine {
    std::string speaker;
    std::string text;
    double startSeconds = 0; ///< From the start of the shot.
    std::string delivery;

    bool operator==(const FilmDialogueLine&) const = default;
};

/// A sound effect of a shot.
struct KINOVANE_EXPORT FilmSoundEffect {
    std::string prompt;
    double startSeconds = 0; ///< From the start of the shot.
    double durationSeconds = 0;
    double levelDb = 0; ///< Decibels.
    std::int64_t seed = 0;

    bool operator==(const FilmSoundEffect&) const = default;
};

/// A shot of the plan. Its place in the film is its position in FilmProductionPlan::shots.
struct KINOVANE_EXPORT FilmProductionShot {
    std::string id;
    std::string purpose;
    std::string framePrompt; ///< For the still key frame.
    std::string prompt;      ///< For the moving clip.
    double durationSeconds = 0;
    std::int64_t seed = 0;
    std::vector<std::string> characters; ///< Ids of cast members.
    std::string location;                ///< Id of a location.
    std::vector<FilmDialogueLine> dialogue;
    std::vector<FilmSoundEffect> soundEffects;
    std::string transition; ///< Into the next shot.
    std::string status;
    std::int64_t take = 0;
    std::optional<std::int64_t> selectedCandidate;
    std::optional<std::int64_t> selectedSeed;

    bool operator==(const FilmProductionShot&) const = default;
};

/// The whole of production-plan.json.
struct KINOVANE_EXPORT FilmProductionPlan {
    std::string contractVersion; ///< Kept as read; no value is required.
    std::string projectId;
    std::string title;
    std::string createdAt;
    FilmTarget target;
    std::string scorePrompt;
    std::vector<FilmCastMember> cast;
    std::vector<FilmLocation> locations;
    std::vector<FilmProductionShot> shots; ///< In film order.
    double plannedDurationSeconds = 0;

    bool operator==(const FilmProductionPlan&) const = default;
};

// ---------------------------------------------------------------------------------------------------------------------
// treatment.json: the film in prose

/// The whole of treatment.json.
struct KINOVANE_EXPORT FilmTreatment {
    std::string title;
    std::string logline;
    std::string synopsis;
    std::string theme;
    std::vector<std::string> beats;
    std::string visualLanguage;
    std::string soundLanguage;

    bool operator==(const FilmTreatment&) const = default;
};

// ---------------------------------------------------------------------------------------------------------------------
// The snapshot and its loader

/// A film workspace as it was when it was loaded. Owns its documents, holds no open file, and never changes;
/// load again to see what the film tool has done since. May be shared between threads.
struct KINOVANE_EXPORT FilmWorkspaceSnapshot {
    std::filesystem::path root;        ///< The directory that holds the run manifest; absolute.
    std::filesystem::path runManifest; ///< Absolute, without "." and "..".
    FilmProject project;
    std::optional<FilmProductionPlan> productionPlan; ///< Absent when there is no production-plan.json.
    std::optional<FilmTreatment> treatment;           ///< Absent when there is no treatment.json.

    /// Where the artifact's file lies: its path as it stands when absolute, otherwise below `root`. Does not
    /// touch the disk and does not check that the place lies inside `root`; never open what it names as part
    /// of a publish. Keeps every byte: a NUL byte in `root` or the path, where the operating system would cut
    /// it, and an empty `root`, below which nothing lies, are for the caller to refuse.
    std::filesystem::path artifactURL(const FilmArtifact& artifact) const;

    /// The artifact of this kind that the project lists last, if any.
    std::optional<FilmArtifact> latestArtifact(std::string_view kind) const;

    /// The best finished cut whose file exists now: the latest "delivery-master", else the latest
    /// "final-master", else the latest "rough-cut". A cut whose existence the file system does not confirm,
    /// such as one in a directory that may not be searched, is passed over. Looks at the disk at each call.
    std::optional<std::filesystem::path> playableCutURL() const;

    bool operator==(const FilmWorkspaceSnapshot&) const = default;
};

/// The cases of FilmProjectError.
struct KINOVANE_EXPORT FilmProjectErrorCases {
    /// Nothing exists at the run manifest's (standardised) location.
    struct missingRunManifest {
        std::filesystem::path location;
        bool operator==(const missingRunManifest&) const = default;
    };
    /// The run manifest's directory holds no film-project.json.
    struct missingProject {
        std::filesystem::path location; ///< Where film-project.json was expected.
        bool operator==(const missingProject&) const = default;
    };
    /// film-project.json follows another contract than this library reads.
    struct unsupportedContract {
        std::string identifier; ///< As found in the document.
        bool operator==(const unsupportedContract&) const = default;
    };
    /// A document of the workspace cannot be read, or does not hold what it should.
    struct invalidProject {
        std::string description; ///< Begins with the document's file name.
        bool operator==(const invalidProject&) const = default;
    };
    using Case = std::variant<missingRunManifest, missingProject, unsupportedContract, invalidProject>;
    static std::string describe(const Case& value);
};

/// Why a workspace could not be loaded.
class KINOVANE_EXPORT FilmProjectError final : public CaseError<FilmProjectErrorCases> {
  public:
    using CaseError::CaseError;
    FilmProjectError(const FilmProjectError&) noexcept = default;
    FilmProjectError& operator=(const FilmProjectError&) noexcept = default;
    ~FilmProjectError() override;
};

namespace FilmProjectLoader {

/// Loads the workspace of a run manifest ("run.json", whose existence alone counts): "film-project.json" and,
/// where they exist, "production-plan.json" and "treatment.json" beside it.
///
/// Throws FilmProjectError. Blocks on file input, so call it off the interface thread; several calls may run
/// at once.
KINOVANE_EXPORT FilmWorkspaceSnapshot load(const std::filesystem::path& runManifest);

} // namespace FilmProjectLoader

// ---------------------------------------------------------------------------------------------------------------------

template <>
inline constexpr JSONForm jsonForm<FilmProject> = JSONForm::reading;
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
inline constexpr JSONForm jsonForm<FilmProductionConfiguration> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmModelConfiguration> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmArtifact> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmProof> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmIssue> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmProductionPlan> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmTarget> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmCastMember> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmLocation> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmProductionShot> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmDialogueLine> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmSoundEffect> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmTreatment> = JSONForm::readingAndWriting;

} // namespace kinovane
