// SPDX-License-Identifier: Apache-2.0

#include <map>

#include "phases.hpp"
#include "workspace.hpp"

namespace simulator::film {
namespace {

json::object taskCounts(const json::object& project) {
    std::map<std::string, std::int64_t> counts;
    for (const json::value& task : listOf(project, "departments"))
        ++counts[textOf(asRecord(task), "status")];
    json::object all;
    for (const auto& [status, count] : counts)
        all[status] = count;
    return all;
}

json::array openQuestions(const json::object& project) {
    const json::object& brief = recordOf(project, "brief");
    return brief.contains("openQuestions") ? listOf(brief, "openQuestions") : json::array();
}

json::array issues(const Workspace& workspace) {
    json::array all = listOf(workspace.project(), "issues");
    if (std::filesystem::exists(workspace.journal())) {
        all.emplace_back(
            json::object{{"code", "interrupted-step"},
                         {"message", "The last step was cut off. Recover the film before going on."},
                         {"blocking", true}});
    }
    return all;
}

std::int64_t countOf(const json::object& project, std::string_view key) {
    return static_cast<std::int64_t>(listOf(project, key).size());
}

} // namespace

json::object statusOf(const Workspace& workspace) {
    const json::object& project = workspace.project();
    const json::object& production = recordOf(project, "production");
    json::object reply{{"contractVersion", "quexrun/film-status.v1"}, {"runId", workspace.runId()},
                       {"projectId", textOf(project, "projectId")},   {"title", textOf(project, "title")},
                       {"status", textOf(project, "status")},         {"phase", textOf(project, "phase")}};
    if (const std::string gate = nextGate(project); !gate.empty())
        reply["nextGate"] = gate;
    reply["openQuestions"] = openQuestions(project);
    reply["approvals"] = recordOf(project, "approvals");
    reply["taskCounts"] = taskCounts(project);
    reply["shots"] = countOf(project, "shots");
    reply["reviewRequests"] = listOf(project, "reviewRequests");
    reply["jobs"] = countOf(project, "jobs");
    reply["artifacts"] = countOf(project, "artifacts");
    reply["issues"] = issues(workspace);
    reply["proof"] = recordOf(project, "proof");
    reply["productionMode"] = textOf(production, "mode");
    reply["takesPerShot"] = integerOf(production, "takesPerShot");
    reply["projectDirectory"] = workspace.root().native();
    reply["runManifest"] = workspace.runManifest().native();
    if (const std::string package = latestPath(project, "review-package"); !package.empty())
        reply["reviewPackage"] = workspace.path(package).native();
    return reply;
}

} // namespace simulator::film
