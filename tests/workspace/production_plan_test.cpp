// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

TEST(FilmProductionPlan, IsEqualOnlyWithTheSameOrderOfShots) {
    FilmProductionPlan plan;
    plan.shots = {shotOf("a", 1), shotOf("b", 2)};
    FilmProductionPlan other;
    other.shots = {shotOf("b", 2), shotOf("a", 1)};
    EXPECT_FALSE(plan == other);
    EXPECT_TRUE(plan == FilmProductionPlan(plan));
}

TEST(FilmProductionPlan, ReportsThePathOfAWrongValue) {
    FilmProductionPlan plan;
    plan.shots = {shotOf("a", 1), shotOf("b", 2)};
    plan.shots[1].dialogue.push_back({"Noor", "Borrow mine?", 0.5, "softly"});
    std::string document = encodeJSON(plan);
    const std::string member = R"("startSeconds":0.5)";
    document.replace(document.find(member), member.size(), R"("startSeconds":null)");
    try {
        static_cast<void>(decodeJSON<FilmProductionPlan>(document));
        FAIL() << "the document was accepted";
    } catch (const JSONDecodingError& error) {
        EXPECT_EQ(error.path(), "shots[1].dialogue[0].startSeconds");
        EXPECT_STREQ(error.what(), "shots[1].dialogue[0].startSeconds: expected a number, found null");
    }
}

TEST(FilmProductionPlan, WritesAnEmptyTargetAsAnEmptyObject) {
    EXPECT_EQ(encodeJSON(FilmTarget{}), "{}");
    EXPECT_NE(encodeJSON(FilmProductionPlan{}).find(R"("target":{},)"), std::string::npos);
    EXPECT_TRUE(decodeJSON<FilmProductionPlan>(encodeJSON(FilmProductionPlan{})) == FilmProductionPlan{});
}

} // namespace
} // namespace kinovane::test
