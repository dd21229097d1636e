// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string>
#include <string_view>

#include "documents.hpp"
#include "step.hpp"

namespace film {

/// A phase of the production. Its name is also the name of the gate behind it, if it has one.
struct Phase {
    std::string_view name;
    /// What the approver decides; empty for a phase without a gate.
    std::string_view gateSummary;
    /// Makes what the film still lacks in this phase; none for the plan, which is made by planning.
    void (*work)(Step&);

    bool hasGate() const noexcept { return !gateSummary.empty(); }
};

/// All phases in their order. A project's `phase` is the last one that is done.
std::span<const Phase> phases();

/// The phase after that one; none after the last. A phase that is not among them is refused: the film was not
/// planned by this program.
const Phase* phaseAfter(std::string_view name);

json::object newApprovals();
bool isApproved(const json::object& project, std::string_view gate);
/// The first gate that is not approved; empty when all are.
std::string nextGate(const json::object& project);

/// Notes that a phase is done and asks for its gate.
void finishPhase(json::object& project, std::string_view name, const std::string& now);

/// Puts the film back behind the plan: every later phase completes what is missing, and what was approved
/// from the rough cut on has to be approved again.
void reopen(json::object& project);

} // namespace film
