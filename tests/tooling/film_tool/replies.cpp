// SPDX-License-Identifier: Apache-2.0

#include "tooling/film_tool/replies.hpp"

namespace kinovane::test {

FilmStatusResponse fullStatus() {
    FilmStatusResponse status;
    status.contractVersion = "contractVersion";
    status.runId = "runId";
    status.projectId = "projectId";
    status.title = "title";
    status.status = "status";
    status.phase = "phase";
    status.nextGate = "nextGate";
    status.openQuestions = {"who?", "why?"};
    status.approvals["delivery"] = {"approved", "s", "r", "a", "b", "n"};
    status.approvals["plan"] = {"open", {}, {}, {}, {}, {}};
    status.taskCounts = {{"done", 3}, {"queued", -9223372036854775807 - 1}};
    status.shots = 11;
    status.reviewRequests = {{"s1", "darker", "open", "now", {}, {}}, {"s2", "n", "done", "then", "t", 2}};
    status.jobs = 13;
    status.artifacts = 5000000000;
    status.issues = {{"late", "The sound is late.", true, {}}, {"c", "m", false, "then"}};
    status.proof = {true, false, true, false, true, false, true, false, true, false};
    status.productionMode = "productionMode";
    status.takesPerShot = 18;
    status.projectDirectory = "projectDirectory";
    status.runManifest = "runManifest";
    status.reviewPackage = "reviewPackage";
    return status;
}

RecordRow statusRow() {
    return recordRow(
        "FilmStatusResponse",
        {text("contractVersion"),
         text("runId"),
         text("projectId"),
         text("title"),
         text("status"),
         text("phase"),
         optional(text("nextGate")),
         list("openQuestions", R"(["who?","why?"])"),
         map("approvals", R"({"delivery":{"status":"approved","summary":"s","requestedAt":"r",)"
                          R"("approvedAt":"a","approvedBy":"b","note":"n"},"plan":{"status":"open"}})"),
         map("taskCounts", R"({"done":3,"queued":-9223372036854775808})"),
         integer("shots", "11"),
         list("reviewRequests", R"([{"shotId":"s1","note":"darker","status":"open","recordedAt":"now"},)"
                                R"({"shotId":"s2","note":"n","status":"done","recordedAt":"then",)"
                                R"("appliedAt":"t","archivedTake":2}])"),
         integer("jobs", "13"),
         integer("artifacts", "5000000000"),
         list("issues", R"([{"code":"late","message":"The sound is late.","blocking":true},)"
                        R"({"code":"c","message":"m","blocking":false,"recordedAt":"then"}])"),
         object("proof", R"({"creation":true,"clips":false,"assembly":true,"dialogue":false,"sound":true,)"
                         R"("captions":false,"inspection":true,"review":false,"humanReview":true,)"
                         R"("delivery":false})"),
         text("productionMode"),
         integer("takesPerShot", "18"),
         text("projectDirectory"),
         text("runManifest"),
         optional(text("reviewPackage"))},
        fullStatus());
}

FilmVistrelExportReceipt fullExportReceipt() {
    return {false, "contractVersion", "manifest", "manifestSha256", "projectId", 6, 7, 5000000000, "runId"};
}

RecordRow exportReceiptRow() {
    return recordRow("FilmVistrelExportReceipt",
                     {boolean("ok", "false"), text("contractVersion"), text("manifest"),
                      text("manifestSha256"), text("projectId"), integer("shots", "6"),
                      integer("assets", "7"), integer("bytes", "5000000000"), optional(text("runId"))},
                     fullExportReceipt());
}

PiAgentLaunchSpec fullLaunchSpec() {
    return {{"/opt/pi", "--run", "a b"}, "cwd", {{"", "empty"}, {"PI_MODEL", ""}, {"PI_PROVIDER", "local"}}};
}

RecordRow launchSpecRow() {
    return recordRow("PiAgentLaunchSpec",
                     {list("command", R"(["/opt/pi","--run","a b"])"), text("cwd"),
                      map("environment", R"({"":"empty","PI_MODEL":"","PI_PROVIDER":"local"})")},
                     fullLaunchSpec());
}

std::string planReply(const std::string& runManifest) {
    return R"({"ok":true,"runManifest":"/not/this.json","status":{"status":"planned","shots":[],"runManifest":")" +
           runManifest + R"(","phase":null},"next":["approve"]})";
}

std::vector<RecordRow> replyRecords() { return {statusRow(), exportReceiptRow(), launchSpecRow()}; }

} // namespace kinovane::test
