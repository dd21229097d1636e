// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "step.hpp"

namespace simulator::film {

// The commands that change a film. Each refuses a film whose last step was interrupted, except recover, and
// returns the text to print.

/// Performs one phase after another up to the next gate that is not approved. A film that waits for such a
/// gate already is refused. `cutOff` ends this process in the middle of the first phase.
std::string advance(Workspace& workspace, bool cutOff);

/// Records the approval of a gate. An unknown gate and an approved one are refused; a gate may be approved
/// before the film reaches it.
std::string approve(Workspace& workspace, const std::string& gate, const std::string& note,
                    const std::string& approvedBy);

/// Undoes the interrupted step: files that the project does not name are deleted, moved files return to the
/// path that the project names, and the plan follows the project.
std::string recover(Workspace& workspace);

/// Archives the current take of a shot, removes everything made from it, and requests a new one.
std::string reroll(Workspace& workspace, const std::string& shotId, const std::string& note);

/// Records a technical and a creative review, and a review request for each shot with dialogue.
std::string review(Workspace& workspace);

/// The reviews alone, as a part of a step.
void makeReviews(Step& step);

/// Adds a note about a shot. One with an archived take is an order for a new one; the shot then also has an
/// issue until the new take is there.
void addRequest(json::object& project, const std::string& shotId, const std::string& note,
                const std::string& recordedAt, std::optional<std::int64_t> archivedTake);

/// Whether that note waits for an answer already.
bool isRequested(const json::object& project, const std::string& shotId, const std::string& note);

/// A new take of the shot answers all notes about it.
void applyRequests(json::object& project, const std::string& shotId, const std::string& appliedAt);

} // namespace simulator::film
