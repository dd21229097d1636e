// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <vector>

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
        {"the handoff manifest",
         {"--output", "{film}/vistrel-handoff.json"},
         2,
         "--output would replace one of the film's own files: {film}/vistrel-handoff.json"},
        {"a folder",
         {"--output", "{out}"},
         2,
         "--output is a folder: {out}\nNext: --output {out}/storyboard.html"},
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
         {"--output", "{out}/handoff.json"},
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
        film.folder.write("cut.json", "{");
        film.folder.write("empty.json", "{}");
        film.writeManifest(film.folder / "handoff.json", "/nowhere");
        const std::vector<std::string> before = namesIn(film.folder.path());
        std::vector<std::string> arguments;
        for (const std::string& option : options)
            arguments.push_back(filled(option));
        EXPECT_EQ(film.storyboard(arguments, filled(location)),
                  (Outcome{status, "", "kinovane: " + filled(message) + "\n"}))
            << sentence;
        EXPECT_EQ(namesIn(film.folder.path()), before) << sentence;
        const Outcome verified = runCommandLineTool({"verify", film.copy.root().string()});
        EXPECT_EQ(verified.status, 0) << sentence << ": the film is as it was";
    }
}

TEST(Storyboard, LeavesAnOldPageWholeWhenItCannotBeWritten) {
    const ShownFilm film;
    film.folder.write("page.html", "old");
    EXPECT_EQ(film.storyboard({"--embed-limit", "1e9"}).status, 2);
    EXPECT_EQ(film.text(), "old");
    film.copy.remove("film-project.json");
    EXPECT_EQ(film.storyboard().status, 3);
    EXPECT_EQ(film.text(), "old");
}

TEST(Storyboard, ReportsAFolderThatCannotBeWritten) {
    const ShownFilm film;
    film.folder.write("page.html", "old");
    constexpr fs::perms readable = fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec;
    fs::permissions(film.folder.path(), readable);
    fs::permissions(film.copy.root().parent_path(), readable);
    EXPECT_EQ(asOrdinaryUser([&] { return film.storyboard({"--verify"}).err; }),
              "kinovane: " + film.folder.path().string() + ": Permission denied\n");
    EXPECT_EQ(film.text(), "old");
}

} // namespace

} // namespace kinovane::test
