// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "support/temporary_directory.hpp"
#include "support/variable.hpp"

namespace kinovane::test {

/// All gates of a film, in their order.
const std::vector<std::string>& gates();

/// The environment variables of the tools; a test may change them.
struct ToolEnvironment {
    Variable clock;
    Variable behaviour{"FILM_MISBEHAVE", std::nullopt};
    Variable provider{"QUEX_FILM_TOOLS_PI_PROVIDER", std::nullopt};
    Variable model{"QUEX_FILM_TOOLS_PI_MODEL", std::nullopt};
};

/// A film that has just been planned in an empty folder.
class Production {
    // First, because planning needs it.
    ToolEnvironment environment_{{"FILM_CLOCK", planned}};

  public:
    Production();

    static constexpr const char* title = "The Late Ferry – “Noor”";
    static constexpr const char* idea = "A lamp is borrowed & brought back; nobody asks.";
    static constexpr const char* planned = "2026-03-01T14:05:09Z";

    TemporaryDirectory directory;
    FilmToolClient film;
    std::filesystem::path folder = directory / "films of Noor/the late ferry";
    std::filesystem::path run;

    /// The film as it is on disk. Expects that every recorded file exists as recorded, that there is no other
    /// file, and that the tool's status agrees with the documents.
    FilmWorkspaceSnapshot checked() const;

    void approve(const std::string& gate) const;

    /// Approves the gate and runs the tool; returns its reply.
    std::string pass(const std::string& gate) const;

    /// Passes all gates up to `gate`.
    void passUpTo(const std::string& gate) const;

    /// Runs the tool and kills it in the middle of its first step.
    void cutOff() const;

    /// The error of a command that the film tool refuses.
    FilmToolError refusal(std::vector<std::string> arguments, const std::string& message,
                          std::int32_t exitCode = 1) const;
};

/// Compares the status with the documents.
void expectSame(const FilmStatusResponse& status, const FilmWorkspaceSnapshot& documents);

/// Compares the recorded files with those below the film's folder.
void expectFilesAsRecorded(const FilmWorkspaceSnapshot& film);

} // namespace kinovane::test
