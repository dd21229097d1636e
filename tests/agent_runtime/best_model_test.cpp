// SPDX-License-Identifier: Apache-2.0

#include <cstdint>

#include <gtest/gtest.h>

#include <kinovane/agent_runtime.hpp>

namespace kinovane::test {

namespace {

QuexRunAgentModel model(std::string id, bool installed, bool startable, std::int64_t memory) {
    return {std::move(id), "name", installed, memory, "engine", startable};
}

TEST(BestInstalledModel, HasTheLargestMemoryOfTheUsableModels) {
    struct Row {
        const char* sentence;
        std::vector<QuexRunAgentModel> models;
        std::string expected; ///< The id of the model; empty if there is none.
    };
    const std::vector<Row> rows{
        {"no models", {}, ""},
        {"one usable model", {model("a", true, true, 16)}, "a"},
        {"one that is not installed", {model("a", false, true, 16)}, ""},
        {"one that cannot be started", {model("a", true, false, 16)}, ""},
        {"one that is neither installed nor startable", {model("a", false, false, 16)}, ""},
        {"larger ones that are not usable",
         {model("a", true, true, 16), model("b", true, false, 64), model("c", false, true, 128)},
         "a"},
        {"larger ones that are not usable, in front",
         {model("b", true, false, 64), model("c", false, true, 128), model("a", true, true, 16)},
         "a"},
        {"the earlier of two with equal memory",
         {model("a", true, true, 32), model("b", true, true, 32)},
         "a"},
        {"the larger one", {model("a", true, true, 8), model("b", true, true, 24)}, "b"},
        {"the larger one in front", {model("a", true, true, 24), model("b", true, true, 8)}, "a"},
        {"the earliest of the largest",
         {model("a", true, true, 8), model("b", true, true, 24), model("c", true, true, 16),
          model("d", true, true, 24)},
         "b"},
        {"a negative memory", {model("a", true, true, -4)}, "a"},
        {"the larger of two negative ones", {model("a", true, true, -4), model("b", true, true, -3)}, "b"},
        {"0 is larger than a negative one", {model("a", true, true, -1), model("b", true, true, 0)}, "b"},
        {"the limits of 64 bits",
         {model("a", true, true, INT64_MIN), model("b", true, true, INT64_MAX)},
         "b"},
        {"the smallest number alone", {model("a", false, true, 0), model("b", true, true, INT64_MIN)}, "b"},
        {"more memory than any machine has",
         {model("a", true, true, 16), model("b", true, true, 1000000)},
         "b"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const QuexRunAgentStatus status{row.models, {}};
        const auto best = status.bestInstalledModel();
        EXPECT_EQ(best ? best->id : "", row.expected);
    }
}

TEST(BestInstalledModel, HasAllFieldsOfTheModel) {
    const QuexRunAgentModel best{"b", "Bee", true, 24, "engine b", true};
    const QuexRunAgentStatus status{{model("a", true, true, 8), best}, {}};
    EXPECT_EQ(status.bestInstalledModel(), best);
}

} // namespace

} // namespace kinovane::test
