// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/handoff_document.hpp>
#include <kinovane/json.hpp>
#include <kinovane/process.hpp>
#include <kinovane/run_options.hpp>
#include <kinovane/task.hpp>
#include <kinovane/verification.hpp>
#include <kinovane/workspace.hpp>

/// Publishing a finished production to the storyboard application Vistrel: build a verified handoff manifest
/// from a workspace (VistrelHandoffBuilder::build), write it to disk (VistrelHandoffBuilder::write), and run
/// Vistrel's importer on it (VistrelClient).
namespace kinovane {

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

template <>
inline constexpr JSONForm jsonForm<VistrelImportReceipt> = JSONForm::readingAndWriting;

} // namespace kinovane
