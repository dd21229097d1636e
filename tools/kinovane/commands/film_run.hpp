// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "commands/film_commands.hpp"
#include "session/session.hpp"

namespace kinovane::tool {

/// An operation of the film tool, as a command runs it.
struct FilmOperation {
    std::string description; ///< What the tool does, such as "Continuing the production".
    FilmToolArguments tool;
    bool showsReply = true; ///< Whether the tool's standard output is for the user.
    std::function<void(const FilmToolClient& client, RunOptions options)> run = {}; ///< Waits for its end.
};

/// How an operation ended.
enum class Outcome { done, stopped, failed };

struct Ending {
    Outcome outcome = Outcome::done;
    ExitStatus status = ExitStatus::success;
};

/// Runs the operation: announces it, shows the tool's output and for how long it has been working, and stops
/// it with `session.stop`. The tool reads nothing from the terminal, because it runs in a process group of
/// its own. A failure of the tool and a stop are reported.
Ending runFilmTool(const FilmOperation& operation, const Session& session);

/// Runs the operation on the film, which was loaded from `location` before, and prints what changed and the
/// next step.
ExitStatus changeFilm(const FilmOperation& operation, const FilmWorkspaceSnapshot& before,
                      const std::filesystem::path& location, const Session& session);

/// "done", "stopped" or "failed".
const char* nameOf(Outcome outcome);

} // namespace kinovane::tool
