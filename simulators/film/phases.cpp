// SPDX-License-Identifier: Apache-2.0

#include "phases.hpp"

#include <algorithm>
#include <array>

#include "common/json_text.hpp"
#include "common/refusal.hpp"
#include "departments.hpp"
#include "phase_work.hpp"

namespace film {
namespace {

constexpr std::array<Phase, 7> all{
    {{"plan", "The story in three shots", nullptr},
     {"frames", "One key frame for each shot", makeFrames},
     {"clips", "", makeClips},
     {"sound", "", makeSound},
     {"rough-cut", "The film with all shots and sounds in place", makeRoughCut},
     {"delivery", "The finished film and its reviews", makeMaster},
     {"done", "", makeDelivery}}};

/// Gates whose decision is about the film as a whole, so that a new take of one shot makes it void.
constexpr std::array<std::string_view, 2> wholeFilmGates{"rough-cut", "delivery"};

} // namespace

std::span<const Phase> phases() { return all; }

const Phase* phaseAfter(std::string_view name) {
    const auto found = std::ranges::find(all, name, &Phase::name);
    if (found == all.end()) {
        throw simulator::Refusal("The phase " + simulator::jsonQuoted(name) +
                                 " is unknown, so this film cannot be taken further here.");
    }
    return found + 1 == all.end() ? nullptr : found + 1;
}

json::object newApprovals() {
    json::object approvals;
    for (const Phase& phase : all) {
        if (phase.hasGate()) {
            approvals[phase.name] =
                json::object{{"status", "pending"}, {"summary", std::string(phase.gateSummary)}};
        }
    }
    return approvals;
}

bool isApproved(const json::object& project, std::string_view gate) {
    return textOf(recordOf(recordOf(project, "approvals"), gate), "status") == "approved";
}

std::string nextGate(const json::object& project) {
    for (const auto& [gate, approval] : recordOf(project, "approvals"))
        if (textOf(asRecord(approval), "status") != "approved")
            return gate;
    return {};
}

void finishPhase(json::object& project, std::string_view name, const std::string& now) {
    const auto phase = std::ranges::find(all, name, &Phase::name);
    project["phase"] = std::string(name);
    completeTasks(project, name);
    if (phase + 1 == all.end()) {
        project["status"] = "completed";
    } else if (phase->hasGate() && !isApproved(project, name)) {
        json::object& approval = recordOf(recordOf(project, "approvals"), name);
        approval["status"] = "requested";
        approval["requestedAt"] = now;
        project["status"] = "waiting-for-approval";
    } else {
        project["status"] = "in-production";
    }
}

void reopen(json::object& project) {
    json::object& approvals = recordOf(project, "approvals");
    for (const Phase& phase : all) {
        if (phase.work != nullptr)
            reopenTasks(project, phase.name);
        if (std::ranges::find(wholeFilmGates, phase.name) != wholeFilmGates.end()) {
            approvals[phase.name] =
                json::object{{"status", "pending"}, {"summary", std::string(phase.gateSummary)}};
        }
    }
    project["phase"] = all.front().name;
    project["status"] = "in-production";
}

} // namespace film
