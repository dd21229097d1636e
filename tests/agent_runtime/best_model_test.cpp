// SPDX-License-Identifier: Apache-2.0

#include <cstdint>

#include <gtest/gtest.h>

#include <kinovane/agent_runtime.hpp>

namespace kinovane::test {

namespace {

QuexRunAgentModel model(std::string id, bool installed, bool startable, std::int64_t memory) {
    return {std::move(id), "name", installed, memory, "engine", startable};
}

TEST(BestInstalledModel, OfTheModels) {
    struct Row {
        const char* sentence;
        std::vector<QuexRunAgentModel> models;
        std::string expected; ///< Its id; empty when there is none.
    };
    const std::vector<Row> rows{
        {"no models", {}, ""},
        {"the only one", {model("a", true, true, 16)}, "a"},
        {"one that is not installed", {model("a", false, true, 16)}, ""},
        {"one that cannot be started", {model("a", true, false, 16)}, ""},
        {"one that is neither", {model("a", false, false, 16)}, ""},
        {"larger ones that will not do",
         {model("a", true, true, 16), model("b", true, false, 64), model("c", false, true, 128)},
         "a"},
        {"larger ones that will not do, in front",
         {model("b", true, false, 64), model("c", false, true, 128), model("a", true, true, 16)},
         "a"},
        {"of two alike the earlier one", {model("a", true, true, 32), model("b", true, true, 32)}, "a"},
        {"the larger one", {model("a", true, true, 8), model("b", true, true, 24)}, "b"},
        {"the larger one in front", {model("a", true, true, 24), model("b", true, true, 8)}, "a"},
        {"the earliest of the largest",
         {model("a", true, true, 8), model("b", true, true, 24), model("c", true, true, 16),
          model("d", true, true, 24)},
         "b"},
        {"below 0, if there is no other", {model("a", true, true, -4)}, "a"},
        {"the larger below 0", {model("a", true, true, -4), model("b", true, true, -3)}, "b"},
        {"0 is more than less", {model("a", true, true, -1), model("b", true, true, 0)}, "b"},
        {"the ends of 64 bits", {model("a", true, true, INT64_MIN), model("b", true, true, INT64_MAX)}, "b"},
        {"the lower end alone", {model("a", false, true, 0), model("b", true, true, INT64_MIN)}, "b"},
        {"more than any machine has", {model("a", true, true, 16), model("b", true, true, 1000000)}, "b"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const QuexRunAgentStatus status{row.models, {}};
        const auto best = status.bestInstalledModel();
        EXPECT_EQ(best ? best->id : "", row.expected);
    }
}

TEST(BestInstalledModel, IsGivenWhole) {
    const QuexRunAgentModel best{"b", "Bee", true, 24, "engine b", true};
    const QuexRunAgentStatus status{{model("a", true, true, 8), best}, {}};
    EXPECT_EQ(status.bestInstalledModel(), best);
}

} // namespace

} // namespace kinovane::test
