// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>
#include <vector>

#include <kinovane/error.hpp>
#include <kinovane/export.hpp>
#include <kinovane/json.hpp>
#include <kinovane/process.hpp>
#include <kinovane/run_options.hpp>
#include <kinovane/stop.hpp>
#include <kinovane/task.hpp>
#include <kinovane/workspace.hpp>

/// Publishing a finished production to the storyboard application Vistrel: build a verified handoff manifest
/// from a workspace (VistrelHandoffBuilder::build), write it to disk (VistrelHandoffBuilder::write), and run
/// Vistrel's importer on it (VistrelClient).
namespace kinovane {

// -----------------------------------------------------------------------------------------------------------
// Manifest: the document "quexrun/film-vistrel-handoff.v1". All times are whole milliseconds.

/// The project that a handoff was made from, `source` of the handoff manifest.
struct KINOVANE_EXPORT VistrelHandoffSource {
    std::string projectId;              ///< The identifier of the project.
    std::string projectRoot;            ///< The project's directory, as given to `build`.
    std::string runManifest;            ///< Always "run.json" when built by this library.
    std::string projectContractVersion; ///< The contract version of film-project.json.
    std::string updatedAt;              ///< The project's last change.

    bool operator==(const VistrelHandoffSource&) const = default;
};

/// General facts about the film, `project` of the handoff manifest.
struct KINOVANE_EXPORT VistrelHandoffProject {
    std::string title;                     ///< The title of the film.
    std::string idea;                      ///< The user's idea for the film.
    std::optional<std::string> logline;    ///< From the treatment.
    std::optional<std::string> synopsis;   ///< From the treatment.
    std::optional<std::string> theme;      ///< From the treatment.
    std::int64_t durationMilliseconds = 0; ///< The planned running time, in milliseconds.
    std::int64_t fps = 0;                  ///< Frames per second.
    std::string aspectRatio;               ///< Such as "16:9".
    std::optional<std::int64_t> width;     ///< Pixels.
    std::optional<std::int64_t> height;    ///< Pixels.

    bool operator==(const VistrelHandoffProject&) const = default;
};

/// One shot on the film's timeline, `shots[]` of the handoff manifest.
struct KINOVANE_EXPORT VistrelHandoffShot {
    std::string id;                             ///< The id of the planned shot.
    std::int64_t order = 0;                     ///< Position in the film, from 0.
    std::string purpose;                        ///< What the shot contributes to the story.
    std::string prompt;                         ///< The prompt for the moving clip.
    std::string framePrompt;                    ///< The prompt for the still key frame.
    std::int64_t timelineStartMilliseconds = 0; ///< The sum of all earlier durations.
    std::int64_t durationMilliseconds = 0;      ///< The length of the shot, in milliseconds.
    std::vector<std::string> characterIds;      ///< Ids of FilmCastMember records.
    std::string locationId;                     ///< The id of a FilmLocation.
    std::string transition;                     ///< The transition into the next shot.
    std::int64_t take = 0;                      ///< The number of the current take.
    std::int64_t seed = 0;                      ///< The selected seed, or the planned one.
    std::optional<std::string> keyframeAssetId; ///< The asset "frames/" + id + ".png".
    std::optional<std::string> clipAssetId;     ///< The asset "clips/" + id + ".mp4".
    std::vector<FilmDialogueLine> dialogue;     ///< The spoken lines.
    std::vector<FilmSoundEffect> soundEffects;  ///< The sound effects.

    bool operator==(const VistrelHandoffShot&) const = default;
};

/// One exported media file, `assets[]` of the handoff manifest.
struct KINOVANE_EXPORT VistrelHandoffAsset {
    std::string id;           ///< "film_asset_" and 20 hexadecimal digits; depends on path and digest only.
    std::string kind;         ///< One of VistrelHandoffBuilder::exportedKinds.
    std::string relativePath; ///< Relative to the project's directory.
    std::string sha256;       ///< "sha256:" and 64 lowercase hexadecimal digits.
    std::int64_t bytes = 0;   ///< The size in bytes, as the project records it.
    std::string contentType;  ///< The media type, such as "video/mp4".
    std::string source;       ///< What produced the file, as the project records it.

    bool operator==(const VistrelHandoffAsset&) const = default;
};

/// The whole handoff manifest.
struct KINOVANE_EXPORT VistrelHandoff {
    /// "quexrun/film-vistrel-handoff.v1" when built by this library. Any other text is read as well.
    std::string contractVersion;
    std::string
        exportedAt; ///< UTC, such as "2026-03-01T14:05:09Z", unless the caller of `build` gave a text.
    VistrelHandoffSource source;             ///< The project that it was made from.
    VistrelHandoffProject project;           ///< General facts about the film.
    std::vector<FilmCastMember> cast;        ///< The characters of the plan.
    std::vector<FilmLocation> locations;     ///< The sets of the plan.
    std::vector<VistrelHandoffShot> shots;   ///< In film order.
    std::vector<VistrelHandoffAsset> assets; ///< In the order of the project's artifacts.
    FilmProof proof;                         ///< Which production steps were complete.

    bool operator==(const VistrelHandoff&) const = default;
};

// -----------------------------------------------------------------------------------------------------------
// Errors

/// The cases of VistrelHandoffError. `path` is always the artifact's path exactly as the project records it.
struct KINOVANE_EXPORT VistrelHandoffErrorCases {
    /// The path is empty or absolute, has a component "..", names the project's directory itself, holds a NUL
    /// byte, leads out of the project's directory through a symbolic link, or leads through a link of procfs
    /// to an open file or a process's directory, such as /proc/self/fd/0 or /proc/self/cwd.
    struct unsafeArtifactPath {
        std::string path; ///< As the project records it.
        bool operator==(const unsafeArtifactPath&) const = default;
    };
    /// No file exists at the path, or the path is longer than the system accepts (PATH_MAX).
    struct missingArtifact {
        std::string path; ///< As the project records it.
        bool operator==(const missingArtifact&) const = default;
    };
    /// The file does not have the recorded digest.
    struct hashMismatch {
        std::string path;     ///< As the project records it.
        std::string expected; ///< The recorded digest.
        std::string actual;   ///< The file's digest.
        bool operator==(const hashMismatch&) const = default;
    };
    /// The workspace has no production plan.
    struct productionPlanMissing {
        bool operator==(const productionPlanMissing&) const = default;
    };
    /// One of the cases above.
    using Case = std::variant<unsafeArtifactPath, missingArtifact, hashMismatch, productionPlanMissing>;
    /// The message of CaseError::errorDescription.
    static std::string describe(const Case& value);
};

/// Why no handoff can be made of a workspace.
class KINOVANE_EXPORT VistrelHandoffError final : public CaseError<VistrelHandoffErrorCases> {
  public:
    using CaseError::CaseError;
    VistrelHandoffError(const VistrelHandoffError&) noexcept = default;
    VistrelHandoffError& operator=(const VistrelHandoffError&) noexcept = default;
    ~VistrelHandoffError() override;
};

// -----------------------------------------------------------------------------------------------------------
// Verification: options, progress and outcomes

/// The progress of a verification.
struct KINOVANE_EXPORT VerificationProgress {
    std::size_t filesDone = 0;    ///< How many files were examined.
    std::size_t filesTotal = 0;   ///< How many files are examined in all.
    std::uint64_t bytesDone = 0;  ///< How many bytes were read.
    std::uint64_t bytesTotal = 0; ///< The sum of the recorded sizes; no file is opened to compute it.
    std::string path;             ///< The recorded path of the artifact that was read last.
};

struct ArtifactOutcome;

/// How `build`, `audit` and `examine` verify files.
struct KINOVANE_EXPORT HandoffBuildOptions {
    /// How many files are read at once; 0 counts as 1, and more than 64 as 64. With 1, `build` examines the
    /// artifacts strictly in order and opens nothing after the first failure. With more, it reports the same
    /// error as with 1. When the process may not open enough files for all of them, fewer go on.
    unsigned workers = 1;

    /// Called at intervals from any of the reading threads, but never from two at once. Both counts never
    /// decrease; in the last call of a successful build they equal the totals. An exception that it throws
    /// ends the operation, which then throws the same exception.
    std::function<void(const VerificationProgress&)> onProgress = {};

    /// A requested stop ends the operation with a std::system_error of std::errc::operation_canceled. A
    /// std::stop_token is accepted as well.
    StopToken stop = {};

    /// Called with the result of each artifact as soon as it was examined, like `onProgress`.
    std::function<void(const ArtifactOutcome&)> onOutcome = {};

    /// Lets `build` examine every artifact, also after a failure, so that one build tells all that is wrong
    /// without reading a file twice. It then throws the error that it would have thrown without this.
    bool examineAll = false;

    /// Lets `audit` and `examine` compare the size of a file with FilmArtifact::bytes, and not read a file
    /// whose size differs: ArtifactOutcome::sizeDiffers tells it. No effect on `build`, for which only the
    /// digest counts.
    bool compareSizes = false;
};

/// The result of examining one artifact.
struct KINOVANE_EXPORT ArtifactOutcome {
    FilmArtifact artifact;                      ///< What was examined, as the project records it.
    std::optional<VistrelHandoffError> refusal; ///< Why it cannot be part of a handoff.
    std::error_code failure;                    ///< Why its file could not be read.

    /// Whether the file lies inside the project's directory and has the recorded digest, and `sizeDiffers` is
    /// false.
    bool sound() const noexcept;

    /// A sentence to show to a user.
    std::string description() const;

    /// The size of the file in bytes when it was opened; absent when no regular file could be opened. Without
    /// HandoffBuildOptions::compareSizes, a sound artifact may have another size than FilmArtifact::bytes.
    std::optional<std::uint64_t> actualBytes = {};

    /// With HandoffBuildOptions::compareSizes: the file has another size than FilmArtifact::bytes, and was
    /// not read. A recorded size below zero differs from any.
    bool sizeDiffers = false;

    bool operator==(const ArtifactOutcome&) const = default;
};

// -----------------------------------------------------------------------------------------------------------
// Builder

/// Stateless functions, which may be called from several threads at once. Each may also throw std::bad_alloc,
/// and those that compute a digest throw std::runtime_error when libcrypto has no SHA-256.
namespace VistrelHandoffBuilder {

/// Returns the kinds of artifacts that go into a handoff. Compared exactly, capitals included.
KINOVANE_EXPORT std::span<const std::string_view> exportedKinds() noexcept;

/// Builds the handoff of a workspace that has a production plan. Every artifact of an exported kind is
/// verified: its path leads to a file inside `from.root`, possibly through links, and the file has the
/// recorded digest.
///
/// `projectRoot` is only recorded. `exportedAt` is recorded unchanged; when absent, the current time is used
/// (UTC, whole seconds).
///
/// Throws VistrelHandoffError; std::filesystem::filesystem_error when a file cannot be read
/// (std::errc::invalid_argument when `from.root` is empty or holds a NUL byte); and JSONEncodingError when a
/// path is not UTF-8. Two exported artifacts with the same path, or a time that does not fit 64 bits of
/// milliseconds, end the process: a valid workspace cannot hold them.
///
/// Blocks on file input. Memory use does not depend on the size of the files.
KINOVANE_EXPORT VistrelHandoff build(const FilmWorkspaceSnapshot& from, const std::string& projectRoot,
                                     std::optional<std::string> exportedAt = {},
                                     const HandoffBuildOptions& options = {});

/// Examines every artifact of an exported kind as `build` does, and continues after a bad one, so that all
/// damaged files can be shown at once. Returns one outcome per artifact, in the order of the project's
/// artifacts. Needs no production plan.
///
/// Throws the exception that the progress callback throws; std::system_error (std::errc::operation_canceled)
/// when a stop was requested; and std::filesystem::filesystem_error, naming `snapshot.root`, when a file has
/// to be opened and that directory cannot be. With no artifacts, or only paths that are unsafe by their text,
/// the directory is not opened. When it does not exist, all other artifacts are missing.
KINOVANE_EXPORT std::vector<ArtifactOutcome> audit(const FilmWorkspaceSnapshot& snapshot,
                                                   const HandoffBuildOptions& options = {});

/// Examines these artifacts below the directory `root` as `audit` does, whatever their kind. Returns one
/// outcome per artifact, in the order given; two artifacts may have the same path. Serves to examine every
/// recorded file (`examine(snapshot.root, snapshot.project.artifacts)`), the files of one shot, or a copy of
/// a workspace.
///
/// Throws as `audit` does, with `root` in place of `snapshot.root`.
KINOVANE_EXPORT std::vector<ArtifactOutcome> examine(const std::filesystem::path& root,
                                                     std::span<const FilmArtifact> artifacts,
                                                     const HandoffBuildOptions& options = {});

/// Writes the manifest as pretty-printed JSON and returns the digest of the file on disk. Missing parent
/// directories are created. The file is replaced atomically: a reader of `to` sees the old file or the new
/// one. The permissions of an old file are kept; this process need not be able to read the new one.
///
/// Throws JSONEncodingError and std::filesystem::filesystem_error. The old file is then unchanged, except
/// when flushing the directory to disk fails, which is the last step: the new file is then in place, but may
/// be lost in a system crash. Blocks on file output.
KINOVANE_EXPORT std::string write(const VistrelHandoff& handoff, const std::filesystem::path& to);

/// The digest of a regular file: "sha256:" and 64 lowercase hexadecimal digits. Reads at most 1 MiB at a
/// time. Throws std::filesystem::filesystem_error when the file cannot be read or is not a regular file.
KINOVANE_EXPORT std::string sha256(const std::filesystem::path& file);

/// The digest of bytes in memory, in the same form.
KINOVANE_EXPORT std::string sha256(std::span<const std::byte> bytes);

} // namespace VistrelHandoffBuilder

// -----------------------------------------------------------------------------------------------------------
// Importer

/// The importer's reply. Its JSON keys are snake case: "project_id", "episode_id", …
struct KINOVANE_EXPORT VistrelImportReceipt {
    bool ok = false;       ///< False when the importer refused; the client returns it like any other reply.
    std::string projectId; ///< Key "project_id": Vistrel's project.
    std::optional<std::string> episodeId;       ///< Key "episode_id": Vistrel's episode.
    std::optional<std::int64_t> importedScenes; ///< Key "imported_scenes": a count, also in a dry run.
    std::optional<std::int64_t> importedShots;  ///< Key "imported_shots": a count.
    std::optional<std::int64_t> importedAssets; ///< Key "imported_assets": a count.
    std::optional<std::string> projectURL;      ///< Key "project_url": where to open the project.

    bool operator==(const VistrelImportReceipt&) const = default;
};

/// Runs Vistrel's importer on a manifest file. Holds only the name of the program; may be copied, and used
/// from several threads at once.
class KINOVANE_EXPORT VistrelClient {
  public:
    /// `executable` is a name or a path, looked up at each call as by FilmToolClient::resolveExecutable.
    explicit VistrelClient(std::string executable);

    /// The name or path, as it was given.
    const std::string& executable() const noexcept;

    /// A dry run: the importer checks the manifest and changes nothing. Fails with FilmToolError.
    Task<VistrelImportReceipt> validate(const std::filesystem::path& manifest,
                                        RunOptions options = RunOptions()) const;

    /// Imports the manifest. Fails with FilmToolError.
    Task<VistrelImportReceipt> import(const std::filesystem::path& manifest,
                                      RunOptions options = RunOptions()) const;

    bool operator==(const VistrelClient&) const = default;

  private:
    Task<VistrelImportReceipt> runImport(const std::filesystem::path& manifest, bool dryRun,
                                         RunOptions options) const;

    std::string executable_;
};

// -----------------------------------------------------------------------------------------------------------
// JSON: which records can be read and written

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
