// SPDX-License-Identifier: Apache-2.0

#include "film/gates.hpp"

#include <algorithm>
#include <cstddef>
#include <tuple>

namespace kinovane::tool {

namespace {

constexpr const char* approved = "approved";
constexpr const char* requested = "requested";
constexpr const char* pending = "pending";
constexpr const char* waitingStatus = "waiting-for-approval";

std::size_t positionOfPhase(const FilmProject& project, const std::string& phase) {
    const auto found = std::ranges::find(project.departments, phase, &FilmDepartmentTask::phase);
    return static_cast<std::size_t>(found - project.departments.begin());
}

} // namespace

std::vector<Gate> gatesInOrder(const FilmProject& project) {
    std::vector<Gate> gates;
    for (const auto& [name, approval] : project.approvals)
        gates.push_back({name, approval});
    std::ranges::sort(gates, {}, [&](const Gate& gate) {
        const std::optional<std::string>& at = gate.approval.requestedAt;
        return std::tuple(!at, at.value_or(std::string()), positionOfPhase(project, gate.name), gate.name);
    });
    return gates;
}

bool isWaiting(const FilmApproval& approval) {
    return approval.status == requested || (approval.status == pending && approval.requestedAt);
}

std::optional<std::string> waitingGate(const FilmProject& project) {
    for (const Gate& gate : gatesInOrder(project))
        if (isWaiting(gate.approval))
            return gate.name;
    const auto ofPhase = project.approvals.find(project.phase);
    if (project.status == waitingStatus && ofPhase != project.approvals.end() &&
        ofPhase->second.status != approved)
        return ofPhase->first;
    return std::nullopt;
}

} // namespace kinovane::tool
