// SPDX-License-Identifier: Apache-2.0

#include "changes.hpp"
#include "common/refusal.hpp"
#include "phases.hpp"
#include "step.hpp"

namespace simulator::film {
namespace {

/// The gate that keeps the film where it is; empty when no gate is waiting.
std::string closedGate(const json::object& project) {
    const std::string phase = textOf(project, "phase");
    const bool hasGate = recordOf(project, "approvals").contains(phase);
    return hasGate && !isApproved(project, phase) ? phase : std::string();
}

} // namespace

std::string advance(Workspace& workspace, bool cutOff) {
    expectNoJournal(workspace);
    json::object& project = workspace.project();
    const Phase* next = phaseAfter(textOf(project, "phase"));
    if (const std::string gate = closedGate(project); !gate.empty())
        throw Refusal("The gate \"" + gate + "\" is not approved.");
    std::vector<std::string> done;
    while (next != nullptr && closedGate(project).empty()) {
        Step step(workspace, next->name);
        next->work(step);
        finishPhase(project, next->name, step.startedAt());
        if (cutOff)
            step.breakOff();
        step.commit();
        done.emplace_back(next->name);
        next = phaseAfter(next->name);
    }
    json::object reply{{"ok", true}, {"phases", textList(done)}, {"status", textOf(project, "status")}};
    if (const std::string gate = closedGate(project); !gate.empty())
        reply["nextGate"] = gate;
    return json::serialize(reply);
}

std::string approve(Workspace& workspace, const std::string& gate, const std::string& note,
                    const std::string& approvedBy) {
    expectNoJournal(workspace);
    json::object& project = workspace.project();
    json::object& approvals = recordOf(project, "approvals");
    if (!approvals.contains(gate))
        throw Refusal("This film has no gate " + jsonQuoted(gate) + ".");
    if (isApproved(project, gate))
        throw Refusal("The gate " + jsonQuoted(gate) + " is approved already.");
    json::object& approval = recordOf(approvals, gate);
    approval["status"] = "approved";
    approval["approvedAt"] = timeStamp();
    approval["approvedBy"] = approvedBy;
    approval["note"] = note;
    if (textOf(project, "phase") == gate)
        project["status"] = "in-production";
    if (gate == "plan") {
        // Approving the plan also answers its open questions.
        recordOf(project, "brief")["openQuestions"] = json::array();
    }
    Step step(workspace, "approve");
    step.commit();
    return json::serialize(json::object{{"ok", true}, {"gate", gate}, {"status", "approved"}});
}

} // namespace simulator::film
