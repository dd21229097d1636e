// SPDX-License-Identifier: Apache-2.0

#include "agent_runtime/agent_records.hpp"

namespace kinovane::test {

namespace {

RecordRow modelRow() {
    return recordRow(
        "QuexRunAgentModel",
        {text("id"), text("displayName"), boolean("installed", "true"),
         integer("recommendedUnifiedMemoryGB", "-9223372036854775808"), text("servingEngine"),
         boolean("startableByQuexRun", "false")},
        QuexRunAgentModel{"id", "displayName", true, -9223372036854775807 - 1, "servingEngine", false});
}

RecordRow piRow() {
    return recordRow("QuexRunAgentPi",
                     {boolean("installed", "true"), optional(text("path")), optional(text("version"))},
                     QuexRunAgentPi{true, "path", "version"});
}

} // namespace

QuexRunAgentStatus fullStatus() {
    return {{{"id", "displayName", true, -9223372036854775807 - 1, "servingEngine", false},
             {"m", "M", false, 5000000000, "e", true}},
            {true, "path", "version"}};
}

RecordRow statusRow() {
    return recordRow("QuexRunAgentStatus",
                     {list("models", "[" + modelRow().fullDocument() +
                                         R"(,{"id":"m","displayName":"M","installed":false,)"
                                         R"("recommendedUnifiedMemoryGB":5000000000,"servingEngine":"e",)"
                                         R"("startableByQuexRun":true}])"),
                      object("pi", piRow().fullDocument())},
                     fullStatus());
}

std::vector<RecordRow> agentRecords() { return {statusRow(), modelRow(), piRow()}; }

} // namespace kinovane::test
