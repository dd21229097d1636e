// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

namespace kinovane::test {
namespace {

struct Row {
    const char* sentence;
    const char* document;
    FilmBrief brief;
};

/// An empty brief that `set` has changed.
FilmBrief briefWith(void (*set)(FilmBrief&)) {
    FilmBrief brief;
    set(brief);
    return brief;
}

TEST(FilmBrief, PrefersNestedValuesToFlatOnes) {
    const FilmBrief nested{"na", "ng", "nt", "nr", "nl", "np", "nu", 90, {"nm"}, {"ne"}, {"nx"}, {"fo"}};
    const FilmBrief flat{"fa", "fg", "ft", "fr", "fl", "fp", "fu", 60, {"fm"}, {"fe"}, {"fx"}, {"fo"}};
    const Row rows[] = {
        {"nothing at all", "{}", {}},
        {"only empty objects", R"({"target":{},"creative":{}})", {}},
        {"every key is null",
         R"({"target":null,"creative":null,"audience":null,"genre":null,"tone":null,"rating":null,"language":null,)"
         R"("platform":null,"usage":null,"targetDurationSeconds":null,"mustHaves":null,"exclusions":null,)"
         R"("references":null,"openQuestions":null})",
         {}},
        {"only flat values",
         R"({"audience":"fa","genre":"fg","tone":"ft","rating":"fr","language":"fl","platform":"fp","usage":"fu",)"
         R"("targetDurationSeconds":60,"mustHaves":["fm"],"exclusions":["fe"],"references":["fx"],)"
         R"("openQuestions":["fo"]})",
         flat},
        {"nested and flat values",
         R"({"audience":"fa","genre":"fg","tone":"ft","rating":"fr","language":"fl","platform":"fp","usage":"fu",)"
         R"("targetDurationSeconds":60,"mustHaves":["fm"],"exclusions":["fe"],"references":["fx"],)"
         R"("openQuestions":["fo"],)"
         R"("target":{"audience":"na","durationSeconds":90,"language":"nl","platform":"np","rating":"nr","usage":"nu"},)"
         R"("creative":{"genre":"ng","tone":"nt","mustHaves":["nm"],"exclusions":["ne"],"references":["nx"]}})",
         nested},
        {"empty objects beside flat values",
         R"({"target":{},"creative":{},"audience":"fa","genre":"fg","tone":"ft","rating":"fr","language":"fl",)"
         R"("platform":"fp","usage":"fu","targetDurationSeconds":60,"mustHaves":["fm"],"exclusions":["fe"],)"
         R"("references":["fx"],"openQuestions":["fo"]})",
         flat},
        {"a nested value that is null", R"({"creative":{"genre":null},"genre":"flat"})",
         briefWith([](FilmBrief& brief) { brief.genre = "flat"; })},
        {"a nested value that is empty", R"({"creative":{"genre":""},"genre":"flat"})",
         briefWith([](FilmBrief& brief) { brief.genre = ""; })},
        {"the nested object lacks the value", R"({"creative":{"tone":"dry"},"genre":"flat"})",
         briefWith([](FilmBrief& brief) {
             brief.genre = "flat";
             brief.tone = "dry";
         })},
        {"a nested list that is empty", R"({"creative":{"mustHaves":[]},"mustHaves":["flat"]})", {}},
        {"a nested list that is null", R"({"creative":{"mustHaves":null},"mustHaves":["flat"]})",
         briefWith([](FilmBrief& brief) { brief.mustHaves = {"flat"}; })},
        {"a nested duration of 0", R"({"target":{"durationSeconds":0},"targetDurationSeconds":60})",
         briefWith([](FilmBrief& brief) { brief.targetDurationSeconds = 0; })},
        {"keys that belong elsewhere",
         R"({"durationSeconds":9,"target":{"genre":1,"openQuestions":5,"targetDurationSeconds":"x"},)"
         R"("creative":{"audience":2,"openQuestions":["x"]}})",
         {}},
        {"the last of two nested objects replaces the first",
         R"({"target":{"audience":"a","usage":"u"},"target":{"usage":"v"}})",
         briefWith([](FilmBrief& brief) { brief.usage = "v"; })},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_TRUE(decodeJSON<FilmBrief>(row.document) == row.brief);
    }
}

struct RefusalRow {
    const char* sentence;
    const char* document;
    const char* path;
    const char* message;
};

TEST(FilmBrief, ReportsThePathOfAWrongValue) {
    const RefusalRow rows[] = {
        {"the target is a text", R"({"target":"festival"})", "target",
         "target: expected an object, found a string"},
        {"the creative object is a list", R"({"creative":[]})", "creative",
         "creative: expected an object, found a list"},
        {"a nested text", R"({"target":{"audience":5}})", "target.audience",
         "target.audience: expected a string, found a number"},
        {"a nested duration", R"({"target":{"durationSeconds":"90"}})", "target.durationSeconds",
         "target.durationSeconds: expected a number, found a string"},
        {"a nested list", R"({"creative":{"references":"book"}})", "creative.references",
         "creative.references: expected a list, found a string"},
        {"an element of a nested list", R"({"creative":{"exclusions":["rain",null]}})",
         "creative.exclusions[1]", "creative.exclusions[1]: expected a string, found null"},
        {"a flat value is wrong although a nested one wins", R"({"creative":{"genre":"a"},"genre":5})",
         "genre", "genre: expected a string, found a number"},
        {"target is reported before creative",
         R"({"audience":1,"creative":{"genre":1},"target":{"usage":1}})", "target.usage",
         "target.usage: expected a string, found a number"},
        {"creative is reported before the flat keys", R"({"audience":1,"creative":{"tone":1}})",
         "creative.tone", "creative.tone: expected a string, found a number"},
        {"flat keys are reported in declared order", R"({"openQuestions":1,"usage":1,"genre":1})", "genre",
         "genre: expected a string, found a number"},
        {"an element of the wrong type", R"({"openQuestions":[[]]})", "openQuestions[0]",
         "openQuestions[0]: expected a string, found a list"},
    };
    for (const RefusalRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            static_cast<void>(decodeJSON<FilmBrief>(row.document));
            ADD_FAILURE() << "the document was accepted";
        } catch (const JSONDecodingError& error) {
            EXPECT_EQ(error.path(), row.path);
            EXPECT_STREQ(error.what(), row.message);
        }
    }
}

} // namespace
} // namespace kinovane::test
