// SPDX-License-Identifier: Apache-2.0

#include "review_requests.hpp"

#include <algorithm>

namespace simulator::film {
namespace {

constexpr const char* queued = "queued";

std::string issueCode(const std::string& shotId) { return "new-take-" + shotId; }

void clearIssue(json::object& project, const std::string& code) {
    json::array& issues = listOf(project, "issues");
    for (auto place = issues.begin(); place != issues.end();)
        place = textOf(asRecord(*place), "code") == code ? issues.erase(place) : place + 1;
}

} // namespace

void addRequest(json::object& project, const std::string& shotId, const std::string& note,
                const std::string& recordedAt, std::optional<std::int64_t> archivedTake) {
    json::object request{{"shotId", shotId}, {"note", note}, {"status", queued}, {"recordedAt", recordedAt}};
    if (archivedTake) {
        request["archivedTake"] = *archivedTake;
        clearIssue(project, issueCode(shotId));
        listOf(project, "issues")
            .emplace_back(json::object{{"code", issueCode(shotId)},
                                       {"message", "The shot " + shotId + " waits for a new take."},
                                       {"blocking", true},
                                       {"recordedAt", recordedAt}});
    }
    listOf(project, "reviewRequests").emplace_back(std::move(request));
}

bool isRequested(const json::object& project, const std::string& shotId, const std::string& note) {
    return std::ranges::any_of(listOf(project, "reviewRequests"), [&](const json::value& value) {
        const json::object& request = asRecord(value);
        return textOf(request, "shotId") == shotId && textOf(request, "note") == note &&
               textOf(request, "status") == queued;
    });
}

void applyRequests(json::object& project, const std::string& shotId, const std::string& appliedAt) {
    for (json::value& value : listOf(project, "reviewRequests")) {
        json::object& request = asRecord(value);
        if (textOf(request, "shotId") == shotId && textOf(request, "status") == queued) {
            request["status"] = "applied";
            request["appliedAt"] = appliedAt;
        }
    }
    clearIssue(project, issueCode(shotId));
}

} // namespace simulator::film
