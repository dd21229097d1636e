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

/// Why a program cannot be used, and what the user can do about it.
struct Problem {
    std::string description; ///< The library's text for the error.
    std::string advice;      ///< One sentence.

    bool operator==(const Problem&) const = default;
};

/// The state of one external program.
struct ProgramFinding {
    std::string role; ///< Such as "film": the default name, and the name of the option.
    std::string name; ///< As requested: a name or a path.
    std::optional<std::filesystem::path> path; ///< Absent when the program was not found.
    std::optional<Problem> problem;            ///< With a path: the program was found but failed.
};

/// Where the copy of pi that is used comes from.
enum class PiOrigin { searchPath, namedPath, installedCopy };

/// The state of all external programs.
struct Diagnosis {
    ProgramFinding film, vistrel, quexrun, pi;
    std::optional<PiOrigin> piOrigin;                ///< Absent when no pi was found.
    std::vector<std::filesystem::path> installedPis; ///< Newest version first.
    std::optional<QuexRunAgentStatus> agent;         ///< Absent when quexrun gave no valid reply.

    std::vector<const ProgramFinding*> programs() const { return {&film, &vistrel, &quexrun, &pi}; }

    /// How many programs are missing or fail.
    std::size_t problemCount() const;
};

/// The problem of a program whose lookup or run ended with this error.
Problem problemOf(const ProgramFinding& program, const FilmToolError& error);

} // namespace kinovane::tool
