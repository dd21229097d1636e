// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// A command for a film, without the path of the film.
struct FilmCommand {
    std::string_view label; ///< "Next", and for further commands "Then" or "Or".
    std::string_view name;
    std::vector<std::string> arguments = {}; ///< Those before the path of the film.
    std::vector<std::string> options = {};   ///< With their values.

    bool operator==(const FilmCommand&) const = default;
};

/// What to do next with a film.
struct NextStep {
    std::string reason;                ///< One or two sentences, with texts of the documents unchanged.
    std::vector<FilmCommand> commands; ///< At least one.

    bool operator==(const NextStep&) const = default;
};

/// Decides by the documents alone. The first that applies:
///
/// 1. A blocking issue: recover; but while a shot waits for another take, advance, which makes the take.
/// 2. A job failed, and no other job of its kind and shot was completed: recover.
/// 3. A gate waits for an approval: approve.
/// 4. The proof is not complete: advance. The reason tells the brief's open questions, or the review notes
///    that wait.
/// 5. A review note waits: advance if a take was put aside for it, otherwise reroll its shot.
/// 6. Verify and publish.
NextStep nextStep(const FilmWorkspaceSnapshot& film);

/// The failed jobs for whose kind and shot no other job was completed.
std::vector<FilmJob> failedJobs(const FilmProject& project);

} // namespace kinovane::tool
