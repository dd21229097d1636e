// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <variant>

#include <kinovane/error.hpp>
#include <kinovane/export.hpp>
#include <kinovane/film_project.hpp>
#include <kinovane/stop.hpp>

/// Verification of the media files of a film: its options, progress, outcomes and errors.
/// VistrelHandoffBuilder::build, `audit` and `examine` verify.
namespace kinovane {

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

} // namespace kinovane
