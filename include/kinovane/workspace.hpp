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

/// Loading a film workspace. A workspace is a directory that contains a run manifest (usually "run.json"),
/// the documents "film-project.json" and, optionally, "production-plan.json" and "treatment.json", and the
/// produced files. The film tool writes them; FilmProjectLoader reads the documents into a
/// FilmWorkspaceSnapshot.
namespace kinovane {

/// The names of a workspace's documents; all lie in one directory. An application may watch them to learn
/// when to load again. Only the run manifest may have another name.
namespace FilmWorkspaceDocument {
inline constexpr std::string_view runManifest = "run.json";                ///< Has to exist.
inline constexpr std::string_view project = "film-project.json";           ///< The FilmProject.
inline constexpr std::string_view productionPlan = "production-plan.json"; ///< The FilmProductionPlan.
inline constexpr std::string_view treatment = "treatment.json";            ///< The FilmTreatment.
} // namespace FilmWorkspaceDocument

/// The documents of a workspace at the time of loading. Owns its data and keeps no file open. It is not
/// updated when the film tool changes the documents; load again for their current state. May be read from
/// several threads at once.
struct KINOVANE_EXPORT FilmWorkspaceSnapshot {
    std::filesystem::path root;                       ///< The directory of the run manifest; absolute.
    std::filesystem::path runManifest;                ///< Absolute, without "." and ".." components.
    FilmProject project;                              ///< The content of film-project.json.
    std::optional<FilmProductionPlan> productionPlan; ///< Absent when there is no production-plan.json.
    std::optional<FilmTreatment> treatment;           ///< Absent when there is no treatment.json.

    /// The location of the artifact's file: its path when that is absolute, otherwise its path appended to
    /// `root`. Does not access the disk.
    ///
    /// The result is not checked, and may be outside `root`: do not publish the file that it names. The
    /// caller must also refuse an empty `root` (the result is then relative) and a NUL byte in the result, at
    /// which the operating system would truncate it.
    std::filesystem::path artifactURL(const FilmArtifact& artifact) const;

    /// The last artifact of this kind in `project.artifacts`, if any. Time stamps are not compared.
    std::optional<FilmArtifact> latestArtifact(std::string_view kind) const;

    /// The location of the best cut whose file exists: that of the latest "delivery-master", else of the
    /// latest "final-master", else of the latest "rough-cut". Accesses the disk at each call. A cut counts as
    /// missing when the file system does not tell whether it exists, as in a directory without search
    /// permission.
    std::optional<std::filesystem::path> playableCutURL() const;

    bool operator==(const FilmWorkspaceSnapshot&) const = default;
};

/// The cases of FilmProjectError.
struct KINOVANE_EXPORT FilmProjectErrorCases {
    /// The run manifest does not exist.
    struct missingRunManifest {
        std::filesystem::path location; ///< The standardized location of the run manifest.
        bool operator==(const missingRunManifest&) const = default;
    };
    /// The directory of the run manifest contains no film-project.json.
    struct missingProject {
        std::filesystem::path location; ///< The expected location of film-project.json.
        bool operator==(const missingProject&) const = default;
    };
    /// The contractVersion of film-project.json is not "quexrun/film-project.v1".
    struct unsupportedContract {
        std::string identifier; ///< The contractVersion in the document.
        bool operator==(const unsupportedContract&) const = default;
    };
    /// One of the three documents cannot be read, is not valid JSON, or does not contain the record.
    struct invalidProject {
        std::string description; ///< The file name and the reason: "treatment.json: title is missing".
        bool operator==(const invalidProject&) const = default;
    };
    /// One of the cases above.
    using Case = std::variant<missingRunManifest, missingProject, unsupportedContract, invalidProject>;
    /// The message of CaseError::errorDescription.
    static std::string describe(const Case& value);
};

/// The reason why a workspace could not be loaded.
class KINOVANE_EXPORT FilmProjectError final : public CaseError<FilmProjectErrorCases> {
  public:
    using CaseError::CaseError;
    FilmProjectError(const FilmProjectError&) noexcept = default;
    FilmProjectError& operator=(const FilmProjectError&) noexcept = default;
    ~FilmProjectError() override;
};

namespace FilmProjectLoader {

/// Loads the workspace of a run manifest: "film-project.json" and, where they exist, "production-plan.json"
/// and "treatment.json" in its directory. The run manifest itself must exist and is not opened. A relative
/// location is resolved against the working directory. A document that another program changes meanwhile is
/// read again, up to eight times.
///
/// Throws FilmProjectError for the first failure in this order: the run manifest, the project, its contract,
/// the plan, the treatment. Blocks while it reads the files. May be called from several threads at once.
KINOVANE_EXPORT FilmWorkspaceSnapshot load(const std::filesystem::path& runManifest);

} // namespace FilmProjectLoader

} // namespace kinovane
