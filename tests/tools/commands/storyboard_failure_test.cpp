// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/commands/shown_film.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

TEST(Storyboard, RefusesAndWritesNothing) {
    struct Row {
        std::string sentence;
        std::vector<std::string> options; ///< With "{film}" and "{out}" for the folders.
        int status;
        std::string message;
        std::string film = "{film}";
    };
    const std::vector<Row> rows{
        {"a document of the film",
         {"--output", "{film}/film-project.json"},
         2,
         "--output would replace one of the film's own files: {film}/film-project.json"},
        {"a recorded file",
         {"--output", "{film}/./poster.png"},
         2,
         "--output would replace one of the film's own files: {film}/./poster.png"},
        {"a link to a recorded file",
         {"--output", "{out}/link.html"},
         2,
         "--output would replace one of the film's own files: {out}/link.html"},
        {"a hard link to a recorded file",
         {"--output", "{out}/hard-link.html"},
         2,
         "--output would replace one of the film's own files: {out}/hard-link.html"},
        {"a recorded file, by force",
         {"--output", "{film}/poster.png", "--force"},
         2,
         "--output would replace one of the film's own files: {film}/poster.png"},
        {"a file that only the manifest records",
         {"--output", "{film}/extra.txt", "--force"},
         2,
         "--output would replace one of the film's own files: {film}/extra.txt",
         "{out}/extra.json"},
        {"the handoff manifest",
         {"--output", "{film}/vistrel-handoff.json"},
         2,
         "--output would replace one of the film's own files: {film}/vistrel-handoff.json"},
        {"a folder",
         {"--output", "{out}"},
         2,
         "--output is a folder: {out}\nNext: kinovane storyboard --output {out}/storyboard.html"},
        {"a folder that does not exist yet",
         {"--output", "{out}/new/", "--force"},
         2,
         "--output is a folder: {out}/new/\nNext: kinovane storyboard --output {out}/new/storyboard.html"},
        {"a named pipe",
         {"--output", "{out}/pipe", "--force"},
         2,
         "--output is a named pipe, not a file: {out}/pipe"},
        {"a device", {"--output", "/dev/null", "--force"}, 2, "--output is a device, not a file: /dev/null"},
        {"nothing", {"--output", "", "--force"}, 2, "--output is empty"},
        {"a file of another kind",
         {"--output", "{out}/notes.txt"},
         2,
         "--output would replace a file that is no storyboard page: {out}/notes.txt\n"
         "Next: kinovane storyboard --force, if the file may be replaced"},
        {"a file of another kind, with a manifest whose film is not found",
         {"--output", "{out}/notes.txt"},
         2,
         "--output would replace a file that is no storyboard page: {out}/notes.txt\n"
         "Next: kinovane storyboard --force, if the file may be replaced",
         "{out}/handoff.json"},
        {"a missing folder",
         {"--output", "{out}/pages/a.html"},
         6,
         "the folder of the page does not exist: {out}/pages\nNext: mkdir -p {out}/pages"},
        {"standard output", {"--output", "-"}, 2, "--output is the path of a page, such as storyboard.html"},
        {"no film", {}, 3, "No run.json exists at {out}/run.json.", "{out}"},
        {"a manifest that is cut short",
         {},
         3,
         "{out}/cut.json: line 1, column 2: the document ends too early",
         "{out}/cut.json"},
        {"a manifest without its fields",
         {},
         3,
         "{out}/empty.json: contractVersion is missing",
         "{out}/empty.json"},
        {"the manifest itself",
         {"--output", "{out}/handoff.json", "--force"},
         2,
         "--output would replace the manifest: {out}/handoff.json",
         "{out}/handoff.json"},
        {"a manifest without its film, to be verified",
         {"--verify"},
         3,
         "{out}/handoff.json: the film's folder was not found, so that no file can be verified",
         "{out}/handoff.json"},
        {"a size of no known unit",
         {"--embed-limit", "5 apples"},
         2,
         "--embed-limit: \"5 apples\" is not a size such as 16 MB\nFor help: kinovane storyboard --help"},
    };
    for (const auto& [sentence, options, status, message, location] : rows) {
        const ShownFilm film;
        const std::string out = film.folder.path().string();
        const auto filled = [&](const std::string& text) {
            return replaced(replaced(text, "{film}", film.copy.root().string()), "{out}", out);
        };
        fs::create_symlink(film.copy.root() / "frames/shot-01.png", film.folder / "link.html");
        fs::create_hard_link(film.copy.root() / "poster.png", film.folder / "hard-link.html");
        ::mkfifo((film.folder / "pipe").c_str(), 0600);
        film.folder.write("notes.txt", "my notes");
        film.folder.write("cut.json", "{");
        film.folder.write("empty.json", "{}");
        film.writeManifest(film.folder / "handoff.json", "/nowhere");
        film.writeManifest(film.folder / "extra.json");
        film.folder.write("extra.json",
                          replaced(contentOf(film.folder / "extra.json"), "poster.png", "extra.txt"));
        const std::vector<std::string> before = namesIn(film.folder.path());
        std::vector<std::string> arguments;
        for (const std::string& option : options)
            arguments.push_back(filled(option));
        EXPECT_EQ(film.storyboard(arguments, filled(location)),
                  (Outcome{status, "", "kinovane: " + filled(message) + "\n"}))
            << sentence;
        EXPECT_EQ(namesIn(film.folder.path()), before) << sentence;
        EXPECT_EQ(contentOf(film.folder / "notes.txt"), "my notes") << sentence;
        const Outcome verified = runCommandLineTool({"verify", film.copy.root().string()});
        EXPECT_EQ(verified.status, 0) << sentence << ": the film is as it was";
    }
}

TEST(Storyboard, LeavesAnOldPageWholeWhenItCannotBeWritten) {
    const ShownFilm film;
    film.storyboard();
    const std::string old = film.text();
    EXPECT_EQ(film.storyboard({"--embed-limit", "1e9"}).status, 2);
    EXPECT_EQ(film.text(), old);
    film.copy.remove("film-project.json");
    EXPECT_EQ(film.storyboard().status, 3);
    EXPECT_EQ(film.text(), old);
}

TEST(Storyboard, ReplacesAnotherFileOnlyWhenForced) {
    const struct {
        const char* sentence;
        std::string content;
    } rows[]{
        {"an empty file", ""},
        {"text", "my novel"},
        {"another page", "<!DOCTYPE html>\n<html lang=\"en\"><head><title>Recipes</title></head></html>\n"},
        {"text about the mark of a page", R"(Notes: <meta name="generator" content="kinovane storyboard">)"},
        {"a page that has the mark too late", "<!DOCTYPE html>\n" + std::string(4096, ' ') +
                                                  R"(<meta name="generator" content="kinovane storyboard">)"},
        {"bytes", std::string("\0\xff\r\n", 4)},
    };
    const ShownFilm film;
    for (const auto& [sentence, content] : rows) {
        film.folder.write("page.html", content);
        EXPECT_EQ(film.storyboard(),
                  (Outcome{2, "",
                           "kinovane: --output would replace a file that is no storyboard page: " +
                               film.page.string() +
                               "\nNext: kinovane storyboard --force, if the file may be replaced\n"}))
            << sentence;
        EXPECT_EQ(film.text(), content) << sentence;
        EXPECT_EQ(film.storyboard({"--force"}).status, 0) << sentence;
        EXPECT_TRUE(film.text().starts_with("<!DOCTYPE html>\n")) << sentence;
    }
}

TEST(Storyboard, ReplacesAPageOfAnyFilmThroughALink) {
    const ShownFilm film;
    film.folder.write("old.html", "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                                  R"(<meta name="generator" content="kinovane storyboard">)");
    fs::create_symlink("old.html", film.page);
    EXPECT_EQ(film.storyboard().status, 0);
    EXPECT_TRUE(fs::is_symlink(film.page));
    EXPECT_TRUE(contentOf(film.folder / "old.html").ends_with("</html>\n"));
}

TEST(Storyboard, ReportsAFolderThatCannotBeWritten) {
    const ShownFilm film;
    film.storyboard();
    const std::string old = film.text();
    constexpr fs::perms readable = fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec;
    fs::permissions(film.folder.path(), readable);
    fs::permissions(film.copy.root().parent_path(), readable);
    EXPECT_EQ(asOrdinaryUser([&] { return film.storyboard({"--verify"}).err; }),
              "kinovane: " + film.folder.path().string() + ": Permission denied\n");
    EXPECT_EQ(film.text(), old);
}

} // namespace

} // namespace kinovane::test
