// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

#include <kinovane/error.hpp>
#include <kinovane/export.hpp>
#include <kinovane/json.hpp>
#include <kinovane/process.hpp>
#include <kinovane/task.hpp>
#include <kinovane/workspace.hpp>

/// Publishing a finished production to the storyboard application Vistrel: a verified handoff manifest is
/// built from a workspace, written to disk, and given to Vistrel's importer.
namespace kinovane {

// ---------------------------------------------------------------------------------------------------------------------
// The handoff manifest ("quexrun/film-vistrel-handoff.v1"). All times are whole milliseconds.

/// Where a handoff came from.
struct KINOVANE_EXPORT VistrelHandoffSource {
    std::string projectId;
    std::string projectRoot;            ///< The project's directory, as the caller of `build` named it.
    std::string runManifest;            ///< Always "run.json" when built by this library.
    std::string projectContractVersion; ///< Of film-project.json.
    std::string updatedAt;              ///< The project's last change.

    bool operator==(const VistrelHandoffSource&) const = default;
};

/// The film's header.
struct KINOVANE_EXPORT VistrelHandoffProject {
    std::string title;
    std::string idea;
    std::optional<std::string> logline;  ///< From the treatment.
    std::optional<std::string> synopsis; ///< From the treatment.
    std::optional<std::string> theme;    ///< From the treatment.
    std::int64_t durationMilliseconds = 0;
    std::int64_t fps = 0;
    std::string aspectRatio;            ///< Such as "16:9".
    std::optional<std::int64_t> width;  ///< Pixels.
    std::optional<std::int64_t> height; ///< Pixels.

    bool operator==(const VistrelHandoffProject&) const = default;
};

/// One shot on the film's timeline.
struct KINOVANE_EXPORT VistrelHandoffShot {
    std::string id;
    std::int64_t order = 0; ///< Position in the film, from 0.
    std::string purpose;
    std::string prompt;
    std::string framePrompt;
    std::int64_t timelineStartMilliseconds = 0; ///< The sum of the durations of all earlier shots.
    std::int64_t durationMilliseconds = 0;
    std::vector<std::string> characterIds;
    std::string locationId;
    std::string transition;
    std::int64_t take = 0;
    std::int64_t seed = 0;                      ///< The selected seed when there is one.
    std::optional<std::string> keyframeAssetId; ///< Of the asset "frames/" + id + ".png".
    std::optional<std::string> clipAssetId;     ///< Of the asset "clips/" + id + ".mp4".
    std::vector<FilmDialogueLine> dialogue;
    std::vector<FilmSoundEffect> soundEffects;

    bool operator==(const VistrelHandoffShot&) const = default;
};

/// One exported media file.
struct KINOVANE_EXPORT VistrelHandoffAsset {
    std::string id; ///< "film_asset_" and 20 hexadecimal digits, made from path and digest alone.
    std::string kind;
    std::string relativePath; ///< Relative to the project's directory.
    std::string sha256;       ///< "sha256:" and 64 lowercase hexadecimal digits.
    std::int64_t bytes = 0;   ///< As the project records it.
    std::string contentType;
    std::string source;

    bool operator==(const VistrelHandoffAsset&) const = default;
};

/// The whole handoff manifest.
struct KINOVANE_EXPORT VistrelHandoff {
    std::string
        contractVersion; ///< Kept as read; "quexrun/film-vistrel-handoff.v1" when built by this library.
    std::string exportedAt;
    VistrelHandoffSource source;
    VistrelHandoffProject project;
    std::vector<FilmCastMember> cast;
    std::vector<FilmLocation> locations;
    std::vector<VistrelHandoffShot> shots;   ///< In film order.
    std::vector<VistrelHandoffAsset> assets; ///< In the order of the project's artifacts.
    FilmProof proof;

    bool operator==(const VistrelHandoff&) const = default;
};

// ---------------------------------------------------------------------------------------------------------------------
// Building and writing

/// The cases of VistrelHandoffError. Every `path` is the artifact's path exactly as the project records it.
struct KINOVANE_EXPORT VistrelHandoffErrorCases {
    /// The path is absolute, climbs with "..", leads out of the project's directory through a link, or leads
    /// through a link of procfs that stands for an open file or a process's directory, such as
    /// /proc/self/fd/0 or /proc/self/cwd.
    struct unsafeArtifactPath {
        std::string path;
        bool operator==(const unsafeArtifactPath&) const = default;
    };
    /// No file exists there, or the path is longer than the system takes.
    struct missingArtifact {
        std::string path;
        bool operator==(const missingArtifact&) const = default;
    };
    /// The file does not have the recorded digest.
    struct hashMismatch {
        std::string path;
        std::string expected; ///< As recorded.
        std::string actual;   ///< Of the file.
        bool operator==(const hashMismatch&) const = default;
    };
    /// The workspace has no production plan.
    struct productionPlanMissing {
        bool operator==(const productionPlanMissing&) const = default;
    };
    using Case = std::variant<unsafeArtifactPath, missingArtifact, hashMismatch, productionPlanMissing>;
    static std::string describe(const Case& value);
};

/// Why a workspace cannot be handed to Vistrel.
class KINOVANE_EXPORT VistrelHandoffError final : public CaseError<VistrelHandoffErrorCases> {
  public:
    using CaseError::CaseError;
    VistrelHandoffError(const VistrelHandoffError&) noexcept = default;
    VistrelHandoffError& operator=(const VistrelHandoffError&) noexcept = default;
    ~VistrelHandoffError() override;
};

/// How far the verification of a workspace's files has come.
struct KINOVANE_EXPORT VerificationProgress {
    std::size_t filesDone = 0;
    std::size_t filesTotal = 0;
    std::uint64_t bytesDone = 0;
    std::uint64_t bytesTotal = 0; ///< The sum of the recorded sizes; no file is touched to learn it.
    std::string path;             ///< The artifact that was read last, as the project records it.
};

/// How `build` verifies files.
struct KINOVANE_EXPORT HandoffBuildOptions {
    /// How many files are read at once; 0 counts as 1, and more than 64 as 64. With one, artifacts are
    /// examined strictly in order and nothing after the first failure is touched. With more, the error is
    /// still the one that this order would have given.
    unsigned workers = 1;

    /// Told of progress, now and then, from whichever thread reads, but never from two at once. Both counts
    /// only grow, and the last call of a successful build has everything done. An exception out of it ends
    /// the build and comes out of it.
    std::function<void(const VerificationProgress&)> onProgress;

    /// When a stop is requested the build ends with a std::system_error of std::errc::operation_canceled.
    std::stop_token stop;
};

/// What was found out about one artifact.
struct KINOVANE_EXPORT ArtifactOutcome {
    FilmArtifact artifact;
    std::optional<VistrelHandoffError> refusal; ///< Why the artifact cannot be handed over.
    std::error_code failure;                    ///< Why its file could not be read.

    /// Whether the file is where it should be and has the recorded digest.
    bool sound() const noexcept;

    /// The text to show to a user.
    std::string description() const;

    bool operator==(const ArtifactOutcome&) const = default;
};

/// Every operation here may also throw std::bad_alloc, and those that compute a digest std::runtime_error
/// when the libcrypto of this machine has no SHA-256.
namespace VistrelHandoffBuilder {

/// Makes the handoff of a workspace that has a production plan. Every artifact of an exported kind is
/// checked: its path leads to a file inside `from.root`, also through links, and the file has the
/// recorded digest.
///
/// `projectRoot` is only recorded; `exportedAt` is used as it stands, or the current time (UTC, whole
/// seconds) when absent. Throws VistrelHandoffError, std::filesystem::filesystem_error when a file cannot be
/// read (std::errc::invalid_argument when `from.root` is empty or holds a NUL byte), and JSONEncodingError
/// when a path is not UTF-8. Two exported artifacts with one path, or a duration or timeline that does not
/// fit 64 bits of milliseconds, end the process: a sound workspace cannot hold them.
///
/// Blocks on file input; memory does not grow with the size of the files. Several builds may run at once.
KINOVANE_EXPORT VistrelHandoff build(const FilmWorkspaceSnapshot& from, const std::string& projectRoot,
                                     std::optional<std::string> exportedAt = {},
                                     const HandoffBuildOptions& options = {});

/// Examines every artifact of an exported kind as `build` does, and goes on after a bad one: a film maker
/// sees all damaged files at once. The outcomes are in the order of the project's artifacts. Needs no
/// production plan.
///
/// Throws what the progress callback throws; std::system_error (std::errc::operation_canceled) when a stop
/// was requested; std::filesystem::filesystem_error, naming `snapshot.root`, when a file has to be opened and
/// not even that directory can be. The directory is not needed, and not opened, when there is nothing to
/// examine or every path is refused by its text. Where it does not exist, every other artifact is missing.
KINOVANE_EXPORT std::vector<ArtifactOutcome> audit(const FilmWorkspaceSnapshot& snapshot,
                                                   const HandoffBuildOptions& options = {});

/// Writes the manifest (pretty-printed) and returns the digest of the file as it lies on disk. Missing parent
/// directories are created. A reader of `to` sees the old file or the new one, never a part. The permissions
/// of an old file are kept, and the new one need not be readable for this process.
///
/// Throws JSONEncodingError, and std::filesystem::filesystem_error. The old file is then untouched, with one
/// exception: when the directory cannot be flushed to the disk, the last step, the error is reported although
/// the new file is in place; it may be lost if the system crashes. Blocks on file output.
KINOVANE_EXPORT std::string write(const VistrelHandoff& handoff, const std::filesystem::path& to);

/// The digest of a regular file: "sha256:" and 64 lowercase hexadecimal digits. Reads at most 1 MiB at a
/// time. Throws std::filesystem::filesystem_error when the file cannot be read, or is no regular file.
KINOVANE_EXPORT std::string sha256(const std::filesystem::path& file);

/// The digest of bytes in memory, in the same form.
KINOVANE_EXPORT std::string sha256(std::span<const std::byte> bytes);

} // namespace VistrelHandoffBuilder

// ---------------------------------------------------------------------------------------------------------------------
// Importing

/// The importer's answer. Its JSON keys are snake case: "project_id", "episode_id", …
struct KINOVANE_EXPORT VistrelImportReceipt {
    bool ok = false; ///< False is the importer's refusal; the client hands it on like any other answer.
    std::string projectId;
    std::optional<std::string> episodeId;
    std::optional<std::int64_t> importedScenes; ///< In a dry run, how many would be imported.
    std::optional<std::int64_t> importedShots;
    std::optional<std::int64_t> importedAssets;
    std::optional<std::string> projectURL;

    bool operator==(const VistrelImportReceipt&) const = default;
};

/// Runs Vistrel's importer on a written manifest. Holds nothing but the name of the program; may be copied
/// and used from several threads at once.
class KINOVANE_EXPORT VistrelClient {
  public:
    /// `executable` is a name or a path, looked up at each call as by FilmToolClient::resolveExecutable.
    explicit VistrelClient(std::string executable);

    const std::string& executable() const noexcept;

    /// A dry run: the importer checks the manifest and changes nothing. The task fails with FilmToolError.
    Task<VistrelImportReceipt> validate(const std::filesystem::path& manifest) const;

    /// The real import. The task fails with FilmToolError.
    Task<VistrelImportReceipt> import(const std::filesystem::path& manifest) const;

    bool operator==(const VistrelClient&) const = default;

  private:
    Task<VistrelImportReceipt> runImport(const std::filesystem::path& manifest, bool dryRun) const;

    std::string executable_;
};

// ---------------------------------------------------------------------------------------------------------------------

template <>
inline constexpr JSONForm jsonForm<VistrelHandoff> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<VistrelHandoffSource> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<VistrelHandoffProject> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<VistrelHandoffShot> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<VistrelHandoffAsset> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<VistrelImportReceipt> = JSONForm::readingAndWriting;

} // namespace kinovane
