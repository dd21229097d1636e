// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/tooling.hpp>

namespace kinovane::tool {

/// Why something does not serve, and what a person can do about it.
struct Complaint {
    std::string description; ///< The library's words.
    std::string advice;      ///< One sentence.

    bool operator==(const Complaint&) const = default;
};

/// What became of one of the outside programs.
struct ProgramFinding {
    std::string role; ///< "film"; also the name that is looked for by default, and that of the option.
    std::string name; ///< As it was asked for: a name, or a path.
    std::optional<std::filesystem::path> place; ///< Where it was found.
    std::optional<Complaint> complaint;         ///< With a place, the program is there but does not answer.
};

/// Why a certain copy of pi is the one that is used.
enum class PiOrigin { searchPath, namedPlace, installedCopy };

/// All that is known of the outside programs.
struct Diagnosis {
    ProgramFinding film, vistrel, quexrun, pi;
    std::optional<PiOrigin> piOrigin;                ///< Absent when no pi was found.
    std::vector<std::filesystem::path> installedPis; ///< Newest version first.
    std::optional<QuexRunAgentStatus> agent;         ///< Absent when quexrun gave no answer.

    std::vector<const ProgramFinding*> programs() const { return {&film, &vistrel, &quexrun, &pi}; }

    /// How many programs are missing or do not answer.
    std::size_t complaints() const;
};

/// What to say of a program that failed in this way.
Complaint complaintAbout(const ProgramFinding& program, const FilmToolError& error);

} // namespace kinovane::tool
