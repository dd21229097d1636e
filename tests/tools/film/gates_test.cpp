// SPDX-License-Identifier: Apache-2.0

#include "film/gates.hpp"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

FilmApproval approvalOf(const char* status, std::optional<std::string> requestedAt = {}) {
    return {status, {}, std::move(requestedAt), {}, {}, {}};
}

TEST(Gates, AreInTheOrderInWhichTheProjectAsks) {
    FilmProject project;
    project.departments = {{"a", "", "late", {}, false, "", 0}, {"b", "", "early", {}, false, "", 0}};
    project.approvals = {{"a-third", approvalOf("approved", "2026-03-03")},
                         {"b-second", approvalOf("approved", "2026-03-02")},
                         {"early", approvalOf("pending")},
                         {"late", approvalOf("pending")},
                         {"other", approvalOf("pending")},
                         {"z-first", approvalOf("approved", "2026-03-01")}};
    std::vector<std::string> names;
    for (const Gate& gate : gatesInOrder(project))
        names.push_back(gate.name);
    EXPECT_EQ(names, (std::vector<std::string>{"z-first", "b-second", "a-third", "late", "early", "other"}));
}

TEST(Gates, WaitWhenTheirApprovalWasRequested) {
    const struct {
        const char* sentence;
        std::map<std::string, FilmApproval> approvals;
        const char* status;
        std::optional<std::string> expected;
    } rows[]{
        {"no gate", {}, "waiting-for-approval", {}},
        {"requested", {{"plan", approvalOf("requested")}}, "x", "plan"},
        {"pending since a time", {{"plan", approvalOf("pending", "2026-03-01")}}, "x", "plan"},
        {"pending", {{"plan", approvalOf("pending")}}, "x", {}},
        {"pending, while the project waits in its phase",
         {{"plan", approvalOf("pending")}},
         "waiting-for-approval",
         "plan"},
        {"approved, while the project says that it waits",
         {{"plan", approvalOf("approved")}},
         "waiting-for-approval",
         {}},
        {"rejected", {{"plan", approvalOf("rejected", "2026-03-01")}}, "x", {}},
        {"the earlier of two requests",
         {{"a", approvalOf("requested", "2026-03-02")}, {"b", approvalOf("requested", "2026-03-01")}},
         "x",
         "b"},
    };
    for (const auto& [sentence, approvals, status, expected] : rows) {
        FilmProject project;
        project.phase = "plan";
        project.status = status;
        project.approvals = approvals;
        EXPECT_EQ(waitingGate(project), expected) << sentence;
    }
}

} // namespace

} // namespace kinovane::tool
