// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <boost/json/object.hpp>

#include <kinovane/handoff.hpp>
#include <kinovane/preflight.hpp>
#include <kinovane/workspace.hpp>

#include "film/unrecorded_files.hpp"
#include "session/exit_status.hpp"

namespace kinovane::tool {

/// The comparison of a film with a list of checksums.
struct ChecksumReport {
    std::string file;                      ///< The list.
    std::size_t listed = 0;                ///< Its lines.
    std::vector<std::string> differing;    ///< Recorded files for which the project records another digest.
    std::vector<ArtifactOutcome> outcomes; ///< Of the listed files that are not recorded.
};

/// What `verify` learnt about one film.
struct VerificationReport {
    const FilmWorkspaceSnapshot* film = nullptr;
    std::filesystem::path location;         ///< As the user gave it.
    std::size_t chosen = 0;                 ///< How many recorded files were to be examined.
    std::vector<PreflightFinding> findings; ///< What in the documents prevents a handoff.
    std::vector<ArtifactOutcome> outcomes;  ///< In the order of the examination.
    double seconds = 0;                     ///< The time of the examination.
    std::optional<ChecksumReport> checksums;
    std::optional<std::vector<UnrecordedFile>> unrecorded;
    bool isInterrupted = false;

    ExitStatus status() const;

    /// The lines below the list of the damaged files, wrapped to `columns` columns.
    std::string summary(std::size_t columns) const;

    /// Keys: film, title, status, findings, recorded, examined, sound, bytes, seconds, damaged, and, where
    /// they apply, files (with `verbose`), checksums and unrecorded.
    boost::json::object json(bool verbose) const;
};

} // namespace kinovane::tool
