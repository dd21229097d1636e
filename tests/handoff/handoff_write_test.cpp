// SPDX-License-Identifier: Apache-2.0

#include <cmath>
#include <span>
#include <thread>

#include <sys/stat.h>

#include <gmock/gmock.h>

#include <kinovane/handoff.hpp>

#include "handoff/ordinary_user.hpp"
#include "support/repeating_thread.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;

VistrelHandoff sampleHandoff() {
    const FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(sampleFilm() / "run.json");
    return VistrelHandoffBuilder::build(snapshot, "/films/a-lamp-for-the-late-ferry", "2026-03-01T14:05:09Z");
}

TEST(HandoffWrite, GivesTheRecordedManifestOfTheSampleFilm) {
    const TemporaryDirectory directory;
    const fs::path file = directory / "manifest.json";
    VistrelHandoffBuilder::write(sampleHandoff(), file);
    EXPECT_EQ(contentOf(file), contentOf(fs::path(KINOVANE_GOLDEN) / "a-lamp-for-the-late-ferry.json"));
}

TEST(HandoffWrite, ReturnsTheDigestOfAFileThatReadsBackEqual) {
    const TemporaryDirectory directory;
    const fs::path file = directory / "manifest.json";
    const VistrelHandoff handoff = sampleHandoff();
    const std::string digest = VistrelHandoffBuilder::write(handoff, file);
    const std::string content = contentOf(file);
    EXPECT_EQ(digest, VistrelHandoffBuilder::sha256(std::as_bytes(std::span(content))));
    EXPECT_EQ(digest, VistrelHandoffBuilder::sha256(file));
    EXPECT_EQ(content, encodeJSON(handoff, JSONFormat::pretty));
    EXPECT_EQ(decodeJSON<VistrelHandoff>(content), handoff);
    EXPECT_EQ(content.find("\\/"), std::string::npos) << "slashes are not escaped";
    EXPECT_THAT(namesIn(directory.path()), ElementsAre("manifest.json"));
}

TEST(HandoffWrite, CreatesMissingDirectories) {
    const TemporaryDirectory directory;
    const fs::path file = directory / "a/b c/d/manifest.json";
    VistrelHandoffBuilder::write(VistrelHandoff{}, file);
    EXPECT_EQ(decodeJSON<VistrelHandoff>(contentOf(file)), VistrelHandoff{});
}

TEST(HandoffWrite, KeepsTheModeOfAnOldFile) {
    const TemporaryDirectory directory;
    const fs::path file = directory.write("manifest.json", std::string(1000000, 'x'));
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    VistrelHandoffBuilder::write(VistrelHandoff{}, file);
    EXPECT_EQ(contentOf(file), encodeJSON(VistrelHandoff{}, JSONFormat::pretty));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

// The digest is that of the file on disk, even when the file may not be opened.
TEST(HandoffWrite, ReplacesAFileThatMayNotBeRead) {
    struct Row {
        std::string_view sentence;
        std::optional<mode_t> old; ///< The old file's mode.
        mode_t mask;
        mode_t expected;
    };
    const std::vector<Row> rows{
        {"an old file that its owner may not read", 0200, 0022, 0200},
        {"an old file that its owner may neither read nor write", 0000, 0022, 0000},
        {"an old file that only others may read", 0044, 0077, 0044},
        {"a new file that nobody may read", std::nullopt, 0777, 0000},
        {"a new file that may only be written", std::nullopt, 0555, 0222},
    };
    const std::string expected = VistrelHandoffBuilder::sha256(
        std::as_bytes(std::span(std::string_view(encodeJSON(VistrelHandoff{}, JSONFormat::pretty)))));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const TemporaryDirectory directory;
        fs::permissions(directory.path(), fs::perms::all);
        const fs::path file = directory / "manifest.json";
        struct stat status{};
        {
            const OrdinaryUser user;
            if (row.old) {
                directory.write("manifest.json", "old");
                ASSERT_EQ(::chmod(file.c_str(), *row.old), 0);
            }
            const mode_t before = ::umask(row.mask);
            EXPECT_NO_THROW(EXPECT_EQ(VistrelHandoffBuilder::write(VistrelHandoff{}, file), expected));
            ::umask(before);
            ASSERT_EQ(::stat(file.c_str(), &status), 0);
            ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
        }
        EXPECT_EQ(status.st_mode & 07777U, row.expected);
        EXPECT_EQ(contentOf(file), encodeJSON(VistrelHandoff{}, JSONFormat::pretty));
    }
}

TEST(HandoffWrite, FollowsALink) {
    const TemporaryDirectory directory;
    directory.write("kept/manifest.json", "old");
    fs::create_symlink("kept/manifest.json", directory / "link.json");
    VistrelHandoffBuilder::write(VistrelHandoff{}, directory / "link.json");
    EXPECT_TRUE(fs::is_symlink(directory / "link.json"));
    EXPECT_EQ(contentOf(directory / "kept/manifest.json"), encodeJSON(VistrelHandoff{}, JSONFormat::pretty));
    EXPECT_THAT(namesIn(directory / "kept"), ElementsAre("manifest.json"));
}

TEST(HandoffWrite, ShowsReadersAWholeFile) {
    const TemporaryDirectory directory;
    const fs::path file = directory / "manifest.json";
    VistrelHandoff first = sampleHandoff();
    VistrelHandoff second = first;
    second.exportedAt = "later";
    second.shots.clear();
    VistrelHandoffBuilder::write(first, file);
    const RepeatingThread writer(
        [&](std::size_t turn) { VistrelHandoffBuilder::write(turn % 2 == 0 ? second : first, file); });
    for (int round = 0; round < 200; ++round) {
        const auto read = decodeJSON<VistrelHandoff>(contentOf(file));
        ASSERT_TRUE(read == first || read == second);
    }
}

TEST(HandoffWrite, LeavesTheOldFileUnchangedWhenEncodingFails) {
    struct Row {
        std::string_view sentence;
        void (*damage)(VistrelHandoff&);
        std::string expected;
    };
    const std::vector<Row> rows{
        {"a title that is not UTF-8", [](VistrelHandoff& h) { h.project.title = "caf\xe9"; },
         "project.title: the text is not UTF-8"},
        {"an incomplete character at the end", [](VistrelHandoff& h) { h.assets.at(2).source = "\xe2\x80"; },
         "assets[2].source: the text is not UTF-8"},
        {"a surrogate", [](VistrelHandoff& h) { h.shots.at(1).characterIds.at(0) = "\xed\xa0\x80"; },
         "shots[1].characterIds[0]: the text is not UTF-8"},
        {"a time that is not a number",
         [](VistrelHandoff& h) { h.shots.at(0).dialogue.at(0).startSeconds = NAN; },
         "shots[0].dialogue[0].startSeconds: the number is not finite"},
        {"an infinite level", [](VistrelHandoff& h) { h.shots.at(5).soundEffects.at(1).levelDb = -INFINITY; },
         "shots[5].soundEffects[1].levelDb: the number is not finite"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const TemporaryDirectory directory;
        const fs::path file = directory.write("manifest.json", "old");
        VistrelHandoff handoff = sampleHandoff();
        row.damage(handoff);
        for (const fs::path& location : {file, directory / "new/manifest.json"}) {
            try {
                VistrelHandoffBuilder::write(handoff, location);
                ADD_FAILURE() << "no error";
            } catch (const JSONEncodingError& error) {
                EXPECT_EQ(error.what(), row.expected);
            }
        }
        EXPECT_EQ(contentOf(file), "old");
        EXPECT_THAT(namesIn(directory.path()), ElementsAre("manifest.json"));
    }
}

TEST(HandoffWrite, RefusesUnusableLocations) {
    struct Row {
        std::string_view sentence;
        std::string location;
        std::errc expected;
    };
    const std::vector<Row> rows{
        {"a directory", "directory", std::errc::is_a_directory},
        {"a directory, with a slash", "directory/", std::errc::is_a_directory},
        {"a directory, with a dot", "directory/.", std::errc::is_a_directory},
        {"a FIFO", "pipe", std::errc::operation_not_supported},
        {"below a file", "file/manifest.json", std::errc::not_a_directory},
        {"a read-only directory", "locked/manifest.json", std::errc::permission_denied},
        {"below a read-only directory", "locked/new/manifest.json", std::errc::permission_denied},
        {"a link to itself", "loop", std::errc::too_many_symbolic_link_levels},
        {"a name with a NUL byte", std::string("cut\0short", 9), std::errc::invalid_argument},
        {"a name that is too long", std::string(300, 'n'), std::errc::filename_too_long},
    };
    const TemporaryDirectory directory;
    directory.write("directory/kept", "kept");
    directory.write("file", "kept");
    directory.write("locked/old.json", "old");
    fs::create_symlink("loop", directory / "loop");
    ASSERT_EQ(::mkfifo((directory / "pipe").c_str(), 0666), 0);
    fs::permissions(directory / "locked", fs::perms(0555));
    fs::permissions(directory.path(), fs::perms(0777));
    const std::vector<std::string> names = namesIn(directory.path());
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            const OrdinaryUser user;
            VistrelHandoffBuilder::write(VistrelHandoff{}, directory / row.location);
            ADD_FAILURE() << "no error";
        } catch (const fs::filesystem_error& error) {
            EXPECT_EQ(error.code(), row.expected) << error.what();
        }
        EXPECT_EQ(namesIn(directory.path()), names);
        EXPECT_THAT(namesIn(directory / "directory"), ElementsAre("kept"));
        EXPECT_THAT(namesIn(directory / "locked"), ElementsAre("old.json"));
        EXPECT_TRUE(fs::is_fifo(directory / "pipe"));
    }
}

TEST(HandoffWrite, RefusesAnEmptyLocation) {
    const TemporaryDirectory directory;
    const fs::path before = fs::current_path();
    fs::current_path(directory.path());
    std::error_code code;
    std::string message;
    try {
        VistrelHandoffBuilder::write(VistrelHandoff{}, "");
    } catch (const fs::filesystem_error& error) {
        code = error.code();
        message = error.what();
    }
    fs::current_path(before);
    EXPECT_EQ(code, std::errc::invalid_argument);
    EXPECT_THAT(message, testing::HasSubstr("cannot write, because the location is empty"));
    EXPECT_THAT(namesIn(directory.path()), ElementsAre());
}

} // namespace
} // namespace kinovane::test
