// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/publish_film.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

struct Target {
    std::string sentence;
    std::string path; ///< Below the folder "{HOME}" or "{ROOT}".
    std::function<void(const PublishFilm&)> make = {};
};

std::string pathOf(const std::string& text, const PublishFilm& film) {
    return replaced(replaced(text, "{HOME}", film.home.path().string()), "{ROOT}", film.root().string());
}

TEST(PublishTarget, IsNeverOneOfTheFilmsOwnFiles) {
    const std::vector<Target> rows{
        {"the run manifest", "{ROOT}/run.json"},
        {"the project", "{ROOT}/film-project.json"},
        {"the plan", "{ROOT}/production-plan.json"},
        {"the treatment, which does not exist", "{ROOT}/treatment.json"},
        {"a recorded file", "{ROOT}/poster.png"},
        {"a recorded file that is not handed over", "{ROOT}/prompts.jsonl"},
        {"another path", "{ROOT}/clips/../poster.png"},
        {"a symbolic link", "{HOME}/link",
         [](const PublishFilm& film) { fs::create_symlink(film.root() / "poster.png", film.home / "link"); }},
        {"a hard link", "{HOME}/link",
         [](const PublishFilm& film) {
             fs::create_hard_link(film.root() / "poster.png", film.home / "link");
         }},
    };
    for (const Target& row : rows) {
        SCOPED_TRACE(row.sentence);
        const PublishFilm film;
        if (row.make)
            row.make(film);
        const std::string path = pathOf(row.path, film);
        for (const char* more : {"--force", "--dry-run", "--manifest-only"})
            EXPECT_EQ(
                film.publish({"--output", path, more}),
                (Outcome{2, "",
                         "kinovane: --output would replace one of the film's own files: " + path + "\n"}));
        EXPECT_EQ(contentOf(film.root() / "poster.png"), "a poster");
        EXPECT_FALSE(fs::exists(film.root() / "treatment.json"));
    }
}

TEST(PublishTarget, IsARegularFile) {
    const PublishFilm film;
    const std::string home = film.home.path().string();
    ::mkfifo((film.home / "pipe").c_str(), 0600);
    struct Row {
        std::string path, message;
    };
    const std::vector<Row> rows{
        {home, "--output is a folder: " + home + "\nNext: kinovane publish --output " + home +
                   "/vistrel-handoff.json"},
        {home + "/new/", "--output is a folder: " + home + "/new/\nNext: kinovane publish --output " + home +
                             "/new/vistrel-handoff.json"},
        {home + "/pipe", "--output is a named pipe, not a file: " + home + "/pipe"},
        {"/dev/null", "--output is a device, not a file: /dev/null"},
        {"", "--output is empty"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(film.publish({"--output", row.path, "--force"}),
                  (Outcome{2, "", "kinovane: " + row.message + "\n"}));
}

TEST(PublishTarget, ReplacesAnotherFileOnlyWhenForced) {
    struct Row {
        std::string sentence, content;
    };
    const std::vector<Row> rows{
        {"an empty file", ""},
        {"text", "my novel"},
        {"JSON of another kind", R"({"contractVersion":"quexrun/film-project.v1"})"},
        {"JSON without a version", "{}"},
        {"a list", "[]"},
        {"a version that is no text", R"({"contractVersion":1})"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const PublishFilm film;
        const std::string path = film.home.write("file", row.content).string();
        EXPECT_EQ(film.publish({"--output", path}),
                  (Outcome{2, "",
                           "kinovane: --output would replace a file that is no handoff manifest: " + path +
                               "\nNext: kinovane publish --force, if the file may be replaced\n"}));
        EXPECT_EQ(contentOf(path), row.content);
        EXPECT_EQ(film.publish({"--output", path, "--force"}),
                  (Outcome{0, importResult, film.written(path) + checkedStep + importedStep}));
    }
    const PublishFilm film;
    film.workspace.directory.write("vistrel-handoff.json", "my novel");
    EXPECT_EQ(film.publish(),
              (Outcome{2, "",
                       "kinovane: the manifest would replace a file that is no handoff "
                       "manifest: " +
                           film.manifest().string() +
                           "\nNext: kinovane publish --force, if the file may be replaced\n"}));
}

TEST(PublishTarget, ReplacesAManifestOfAnyVersion) {
    const PublishFilm film;
    const std::string path =
        film.home.write("file", R"({"contractVersion":"quexrun/film-vistrel-handoff.v9"})").string();
    EXPECT_EQ(film.publish({"--output", path}),
              (Outcome{0, importResult, film.written(path) + checkedStep + importedStep}));
}

TEST(PublishTarget, IsInAFolderThatCanBeWrittenTo) {
    const PublishFilm film;
    for (const fs::path& folder : {film.root(), film.home.path()})
        fs::permissions(folder, fs::perms::all);
    fs::create_directory(film.home / "closed");
    fs::permissions(film.home / "closed", fs::perms::owner_read | fs::perms::owner_exec |
                                              fs::perms::others_read | fs::perms::others_exec);
    for (const char* name : {"closed/m.json", "closed/new/m.json"}) {
        // A damaged file is not reported: nothing was read before the folder was found to be closed.
        film.workspace.directory.write("poster.png", "");
        const std::string error = asOrdinaryUser(
            [&] { return film.publish({"--manifest-only", "--output", (film.home / name).string()}).err; });
        EXPECT_EQ(error,
                  film.loaded() + "kinovane: " + (film.home / "closed").string() + ": Permission denied\n");
    }
}

} // namespace

} // namespace kinovane::test
