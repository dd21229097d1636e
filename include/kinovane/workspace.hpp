// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <kinovane/error.hpp>
#include <kinovane/export.hpp>
#include <kinovane/film_project.hpp>
#include <kinovane/production_plan.hpp>
#include <kinovane/treatment.hpp>

/// A film workspace on disk: the loader that turns the location of a run manifest into one immutable snapshot
/// of the workspace's documents.
namespace kinovane {

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

} // namespace kinovane
