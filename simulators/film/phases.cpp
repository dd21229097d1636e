// SPDX-License-Identifier: Apache-2.0

#include "phases.hpp"

#include <algorithm>
#include <array>

#include "common/refusal.hpp"

namespace simulator::film {
namespace {

constexpr std::array<Phase, 7> phases{{{"plan", nullptr},
                                       {"frames", makeFrames},
                                       {"clips", makeClips},
                                       {"sound", makeSound},
                                       {"rough-cut", makeRoughCut},
                                       {"delivery", makeMaster},
                                       {"done", makeDelivery}}};

/// Sets the status of a phase's department tasks.
void markTasks(json::object& project, std::string_view phase, const char* status, std::int64_t attempts) {
    for (json::value& value : listOf(project, "departments")) {
        json::object& task = asRecord(value);
        if (textOf(task, "phase") == phase) {
            task["status"] = status;
            task["attempts"] = integerOf(task, "attempts") + attempts;
        }
    }
}

} // namespace

const Phase* phaseAfter(std::string_view name) {
    const auto found = std::ranges::find(phases, name, &Phase::name);
    if (found == phases.end()) {
        throw Refusal("The phase " + jsonQuoted(name) +
                      " is unknown, so this film cannot be taken further here.");
    }
    return found + 1 == phases.end() ? nullptr : found + 1;
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
    project["phase"] = name;
    markTasks(project, name, "completed", 1);
    json::object& approvals = recordOf(project, "approvals");
    if (name == phases.back().name) {
        project["status"] = "completed";
    } else if (approvals.contains(name) && !isApproved(project, name)) {
        json::object& approval = recordOf(approvals, name);
        approval["status"] = "requested";
        approval["requestedAt"] = now;
        project["status"] = "waiting-for-approval";
    } else {
        project["status"] = "in-production";
    }
}

void reopen(json::object& project) {
    for (const Phase& phase : phases)
        if (phase.work != nullptr)
            markTasks(project, phase.name, "pending", 0);
    // These gates are about the film as a whole, so a new take of one shot invalidates their approval.
    for (const char* gate : {"rough-cut", "delivery"}) {
        json::object& approval = recordOf(recordOf(project, "approvals"), gate);
        approval = json::object{{"status", "pending"}, {"summary", textOf(approval, "summary")}};
    }
    project["phase"] = phases.front().name;
    project["status"] = "in-production";
}

} // namespace simulator::film
