// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/publish_film.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

TEST(PublishOptions, ExcludeATimeThatIsNone) {
    for (const char* time : {"", "now", "-1", "1.5", " 1", "+1", "253402300800", "99999999999999999999"})
        EXPECT_EQ(PublishFilm().publish({}, {{"SOURCE_DATE_EPOCH", time}}),
                  (Outcome{2, "",
                           "kinovane: SOURCE_DATE_EPOCH is \"" + std::string(time) +
                               "\", and not a whole number of seconds since 1970\n"}));
}

TEST(PublishOptions, MayExcludeEachOther) {
    struct Row {
        std::vector<std::string> options;
        std::string message;
    };
    const std::vector<Row> rows{
        {{"--dry-run", "--manifest-only"}, "--dry-run and --manifest-only exclude each other"},
        {{"--dry-run", "--output", "-"}, "--dry-run excludes --output -, which runs no importer"},
        {{"--exported-at", "\xff"}, "--exported-at is not UTF-8: \"\\xff\""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(PublishFilm().publish(row.options), (Outcome{2, "", "kinovane: " + row.message + "\n"}));
}

TEST(PublishMessages, ListDamagedFilesInJSON) {
    PublishFilm film;
    fs::remove(film.root() / "poster.png");
    film.workspace.directory.write("clips/s1.mp4", "m");
    const Outcome outcome = film.publish({"--json"});
    EXPECT_EQ(outcome.status, 4);
    const boost::json::value error = boost::json::parse(outcome.err).at("error");
    std::string damaged;
    for (const boost::json::value& file : error.at("damaged").as_array())
        damaged += boost::json::serialize(file.at("path")) + boost::json::serialize(file.at("state"));
    EXPECT_EQ(damaged, R"("clips/s1.mp4""changed""poster.png""missing")");
}

// The words of a program and the texts of documents may hold anything.
TEST(PublishMessages, HoldNoControlCharacter) {
    const std::string hostile = "a\x1b[31m\xff\xe2\x80\xae\xef\xb7\x90\nb";
    PublishFilm film;
    film.workspace.snapshot.productionPlan->shots[0].id = "a\x1b[31m";
    film.workspace.add("poster", "c\x1b[2J\n.png", "x");
    writeDocuments(film.workspace);
    fs::remove(film.root() / "c\x1b[2J\n.png");
    const Outcome outcome = film.publish({"--output", (film.home / hostile).string(), "--verbose"});
    EXPECT_EQ(outcome.status, 4);
    for (const char character : replaced(outcome.err, "\n", ""))
        EXPECT_TRUE(static_cast<unsigned char>(character) >= 0x20) << outcome;
    EXPECT_NE(outcome.err.find("missing     $'c\\x1b[2J\\n.png'\n"), std::string::npos) << outcome;
}

TEST(PublishMessages, HoldTheEscapedWordsOfTheImporter) {
    const Outcome outcome =
        PublishFilm().publish({"--quiet"}, {{"VISTREL_MISBEHAVE", "a\xe2\x80\xae\xef\xb7\x90z"}});
    EXPECT_EQ(outcome.status, 7);
    EXPECT_NE(outcome.err.find("kinovane: Vistrel refused the film: VISTREL_MISBEHAVE: "
                               "\"a\\u{202e}\\u{fdd0}z\" is unknown; known are "),
              std::string::npos)
        << outcome;
}

} // namespace

} // namespace kinovane::test
