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

/// All gates of a film, in the order in which it meets them.
const std::vector<std::string>& gates();

/// What the tools are told by their environment, as far as a test does not say otherwise.
struct ToolEnvironment {
    Variable clock;
    Variable behaviour{"FILM_MISBEHAVE", std::nullopt};
    Variable provider{"QUEX_FILM_TOOLS_PI_PROVIDER", std::nullopt};
    Variable model{"QUEX_FILM_TOOLS_PI_MODEL", std::nullopt};
};

/// A film that has just been planned in an empty folder.
class Production {
    // In front of everything, for planning needs it.
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

    /// The film as it lies on the disk. Every recorded file is there as recorded, no other file is, and the
    /// tool's board says the same as the documents.
    FilmWorkspaceSnapshot checked() const;

    void approve(const std::string& gate) const;

    /// Approves the gate and goes on; gives the tool's reply.
    std::string pass(const std::string& gate) const;

    /// Goes on until the next gate that is not among those that were passed, the last of which is `gate`.
    void passUpTo(const std::string& gate) const;

    /// Begins to go on, and is ended in the middle of the first step.
    void cutOff() const;

    /// What the film tool gives for a command that it refuses, or that ends without a word.
    FilmToolError refusal(std::vector<std::string> arguments, const std::string& message,
                          std::int32_t exitCode = 1) const;
};

/// Compares the board with the documents.
void expectSame(const FilmStatusResponse& board, const FilmWorkspaceSnapshot& documents);

/// Compares the recorded files with those below the film's folder.
void expectFilesAsRecorded(const FilmWorkspaceSnapshot& film);

} // namespace kinovane::test
