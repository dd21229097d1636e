// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "step.hpp"

namespace simulator::film {

/// A phase of the production. A gate has the name of the phase that it follows.
struct Phase {
    std::string_view name;
    /// Makes what the film still lacks in this phase; null for the plan, which is made when a film is
    /// created.
    void (*work)(Step&);
};

/// The phase after that one; null after the last. An unknown phase is refused: the film was not planned by
/// this program.
const Phase* phaseAfter(std::string_view name);

bool isApproved(const json::object& project, std::string_view gate);
/// The first gate that is not approved; empty when all are.
std::string nextGate(const json::object& project);

/// Records that a phase is done and requests the approval of its gate.
void finishPhase(json::object& project, std::string_view name, const std::string& now);

/// Sets the film back to the plan: each later phase makes what is missing, and the gates from the rough cut
/// on have to be approved again.
void reopen(json::object& project);

// The work of the phases. Each function makes only the files that the film lacks, marks the shots, and sets
// the proof flags.

void makeFrames(Step& step);
void makeClips(Step& step);
/// Dialogue, effects, score and captions.
void makeSound(Step& step);
void makeRoughCut(Step& step);
/// The final master and what its approval needs.
void makeMaster(Step& step);
void makeDelivery(Step& step);

/// The text with "&", "<" and ">" as HTML and WebVTT need them.
std::string markupOf(const std::string& text);

} // namespace simulator::film
