// SPDX-License-Identifier: Apache-2.0

#include "film/overview.hpp"

#include "terminal/display_width.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

constexpr std::size_t widestWord = 40;

std::string statusWord(const std::string& status) { return fitted(shown(status), widestWord); }

} // namespace

std::string titleLine(const std::string& title, std::size_t columns) {
    return styled(Style::heading, fitted(shown(title), columns)) + "\n";
}

std::string shotsText(const FilmWorkspaceSnapshot& film, const WorkspaceSummary& summary) {
    const std::size_t count = film.project.shots.size();
    std::string text = std::to_string(count);
    if (summary.shotsWithoutStatus == 0 && summary.shotsByStatus.size() == 1 && count > 1) {
        text += ", all " + statusWord(summary.shotsByStatus.begin()->first);
    } else {
        const char* separator = ": ";
        for (const auto& [status, shots] : summary.shotsByStatus) {
            text += separator + std::to_string(shots) + " " + statusWord(status);
            separator = ", ";
        }
        if (summary.shotsWithoutStatus > 0)
            text += separator + std::to_string(summary.shotsWithoutStatus) + " without a status";
    }
    if (film.productionPlan && film.productionPlan->shots.size() != count)
        text += " (the plan has " + std::to_string(film.productionPlan->shots.size()) + ")";
    return text;
}

json::object proofJSON(const FilmProof& proof, const WorkspaceSummary& summary) {
    json::array missing;
    for (const FilmProofStep& step : summary.missingSteps)
        missing.emplace_back(step.key);
    return {{"completed", proof.completedCount()}, {"total", 10}, {"missing", missing}};
}

json::object shotsJSON(const FilmWorkspaceSnapshot& film, const WorkspaceSummary& summary) {
    const auto& plan = film.productionPlan;
    json::object byStatus;
    for (const auto& [status, count] : summary.shotsByStatus)
        byStatus.emplace(status, count);
    return {{"count", film.project.shots.size()},
            {"byStatus", byStatus},
            {"withoutStatus", summary.shotsWithoutStatus},
            {"planned", plan ? json::value(plan->shots.size()) : nullptr},
            {"plannedSeconds", plan ? json::value(plan->plannedDurationSeconds) : nullptr}};
}

} // namespace kinovane::tool
