// SPDX-License-Identifier: Apache-2.0

#include "tooling/film_tool/pi_version.hpp"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace kinovane::test {

namespace {

TEST(PiVersion, IsSplitIntoNumbers) {
    struct Row {
        const char* sentence;
        std::string text;
        std::vector<std::int64_t> expected;
    };
    const std::vector<Row> rows{
        {"three numbers", "1.4.2", {1, 4, 2}},
        {"a v in front", "v1.4.2", {1, 4, 2}},
        {"a single number", "7", {7}},
        {"numbers of several digits", "1.10.0", {1, 10, 0}},
        {"leading zeros", "01.002", {1, 2}},
        {"a second v makes the first component 0", "vv1", {0}},
        {"a second v does not change the others", "vv1.2", {0, 2}},
        {"a capital V is not removed", "V1.2", {0, 2}},
        {"a v further on", "1.v2", {1, 0}},
        {"empty components are dropped", "1..2", {1, 2}},
        {"a dot at the end adds nothing", "1.2.", {1, 2}},
        {"a dot in front adds nothing", ".1", {1}},
        {"a dot after a v adds nothing", "v.1", {1}},
        {"dots only", "...", {}},
        {"an empty text", "", {}},
        {"a v alone", "v", {}},
        {"a word", "latest", {0}},
        {"a component that is not a number keeps its position", "1.3-beta.2", {1, 0, 2}},
        {"a release candidate", "2.rc1", {2, 0}},
        {"white space makes a component 0", "1. 2.3 ", {1, 0, 0}},
        {"a minus sign", "1.-2", {1, -2}},
        {"a plus sign", "+1.2", {1, 2}},
        {"a sign alone", "-.+", {0, 0}},
        {"two signs", "--1.++1.+-1.-+1", {0, 0, 0, 0}},
        {"other ways to write numbers", "0x10.1e3.1_000.1,5", {0, 0, 0, 0}},
        {"digits of other scripts", "١.２", {0, 0}},
        {"the largest number", "9223372036854775807", {INT64_MAX}},
        {"the smallest number", "-9223372036854775808", {INT64_MIN}},
        {"a number beyond 64 bits", "9223372036854775808.1", {0, 1}},
        {"a number below 64 bits", "-9223372036854775809.1", {0, 1}},
        {"very many digits", std::string(400, '9') + ".1", {0, 1}},
        {"a NUL byte", std::string("1\0.2", 4), {0, 2}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(versionComponents(row.text), row.expected);
    }
}

TEST(PiVersion, IsComparedNumberByNumber) {
    struct Row {
        const char* sentence;
        std::string newer;
        std::string older;
    };
    const std::vector<Row> rows{
        {"numbers are compared as numbers", "1.10.0", "1.9.3"},
        {"a v in front is ignored", "v2.0", "1.10.0"},
        {"a v in front of the older one", "2.0", "v1.10.0"},
        {"the first difference decides", "2.0.0", "1.99.99"},
        {"the last number differs", "1.4.3", "1.4.2"},
        {"the longer one is newer", "1.2.0", "1.2"},
        {"a word counts as 0", "1", "latest"},
        {"the smallest real version", "0.1", "latest"},
        {"a word counts as a component", "0.0", "latest"},
        {"any component is newer than none", "latest", "v"},
        {"a beta counts as 0", "1.1", "1.3-beta"},
        {"a number beyond 64 bits is 0", "1", "9223372036854775808"},
        {"below 0", "latest", "-1"},
        {"the ends of 64 bits", "9223372036854775807", "-9223372036854775808"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_TRUE(isNewer(row.newer, row.older));
        EXPECT_FALSE(isNewer(row.older, row.newer));
    }
}

TEST(PiVersion, IsNotNewerThanAnEqualVersion) {
    struct Row {
        std::string one;
        std::string other;
    };
    for (const Row& row :
         {Row{"1.2", "1.2"}, Row{"1.2", "v1.2"}, Row{"1.2", "1..2."}, Row{"1.02", "1.2"}, Row{"latest", "0"},
          Row{"latest", "nightly"}, Row{"", "v"}, Row{"3-beta", "rc1"}}) {
        SCOPED_TRACE(row.one + " and " + row.other);
        EXPECT_FALSE(isNewer(row.one, row.other));
        EXPECT_FALSE(isNewer(row.other, row.one));
    }
}

} // namespace

} // namespace kinovane::test
