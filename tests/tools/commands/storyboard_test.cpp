// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/ordinary_user.hpp"
#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/film_copy.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

/// A copy of the sample film, and a folder for its page.
struct ShownFilm {
    Outcome storyboard(std::vector<std::string> options = {}, std::string film = "",
                       std::map<std::string, std::string> environment = {}) const {
        options.insert(options.begin(), {"storyboard", film.empty() ? copy.root().string() : film});
        if (std::ranges::find(options, "--output") == options.end())
            options.insert(options.end(), {"--output", page.string()});
        return runCommandLineTool(std::move(options), std::move(environment));
    }

    std::string text() const { return contentOf(page); }

    /// Writes the handoff manifest of the film, with other paths where wanted.
    fs::path writeManifest(const fs::path& to, const std::string& root = "") const {
        const VistrelHandoff handoff =
            VistrelHandoffBuilder::build(FilmProjectLoader::load(copy.root() / "run.json"),
                                         root.empty() ? copy.root().string() : root, "2026-03-01T14:05:09Z");
        VistrelHandoffBuilder::write(handoff, to);
        return to;
    }

    FilmCopy copy;
    TemporaryDirectory folder;
    fs::path page = folder / "page.html";
};

std::string sizeOf(const fs::path& page) {
    const auto bytes = static_cast<double>(fs::file_size(page));
    const std::string text = std::to_string(std::round(bytes / 100'000) / 10);
    return text.substr(0, text.find('.') + 2) + " MB";
}

TEST(Storyboard, WritesAPage) {
    const ShownFilm film;
    const Outcome outcome = film.storyboard();
    EXPECT_EQ(outcome, (Outcome{0, film.page.string() + "\n",
                                "7 shots, 64 files. The page has " + sizeOf(film.page) +
                                    ": 19 pictures and clips are embedded, 0 linked.\n"}));
    EXPECT_EQ(namesIn(film.folder.path()), std::vector<std::string>{"page.html"});
}

TEST(Storyboard, IsTheSameForAnUnchangedFilm) {
    const ShownFilm film;
    film.storyboard();
    const std::string first = film.text();
    film.storyboard();
    EXPECT_EQ(film.text(), first);
}

TEST(Storyboard, EmbedsMediaUpToTheLimit) {
    const ShownFilm film;
    const struct {
        const char* limit;
        int embedded;
        int linked;
    } rows[]{{"0", 0, 19}, {"84 kB", 1, 18}, {"1 GB", 19, 0}};
    for (const auto& [limit, embedded, linked] : rows) {
        const Outcome outcome = film.storyboard({"--embed-limit", limit, "--json"});
        EXPECT_NE(outcome.out.find("\"embedded\":" + std::to_string(embedded) +
                                   ",\"linked\":" + std::to_string(linked)),
                  std::string::npos)
            << limit << ": " << outcome.out;
    }
}

TEST(Storyboard, PrintsJSON) {
    const ShownFilm film;
    film.copy.cut("clips/shot-03.mp4");
    const Outcome outcome = film.storyboard({"--verify", "--json"});
    EXPECT_EQ(outcome,
              (Outcome{4,
                       R"({"version":1,"film":")" + film.copy.root().string() +
                           R"(","title":"A Lamp for the Late Ferry","page":")" + film.page.string() +
                           R"(","bytes":)" + std::to_string(fs::file_size(film.page)) +
                           R"(,"shots":7,"files":64,"embedded":19,"linked":0,"verified":true,"damaged":[)"
                           R"({"path":"clips/shot-03.mp4","kind":"shot-clip","state":"changed",)"
                           R"("reason":"1.0 kB, recorded 14.7 kB: cut short"}],"opened":false})"
                           "\n",
                       ""}));
}

TEST(Storyboard, VerifiesEveryFile) {
    const struct {
        const char* sentence;
        std::function<void(const FilmCopy&)> prepare;
        int status;
        std::string expected; ///< The last line on standard error.
    } rows[]{
        {"a sound film", [](const FilmCopy&) {}, 0, "All files are sound.\n"},
        {"a damaged clip", [](const FilmCopy& film) { film.cut("clips/shot-03.mp4"); }, 4,
         "1 file is damaged or missing; the page lists them first.\n"},
        {"a file that is not handed over, and one that is missing",
         [](const FilmCopy& film) {
             film.change("logs/prompts.jsonl");
             film.remove("poster.png");
         },
         4, "2 files are damaged or missing; the page lists them first.\n"},
        {"only a file that cannot be read", [](const FilmCopy& film) { film.makePipe("score/score.m4a"); }, 6,
         "1 file is damaged or missing; the page lists them first.\n"},
    };
    for (const auto& [sentence, prepare, status, expected] : rows) {
        const ShownFilm film;
        prepare(film.copy);
        const Outcome outcome = film.storyboard({"--verify"});
        EXPECT_EQ(outcome.status, status) << sentence;
        EXPECT_TRUE(outcome.err.ends_with(".\n" + expected)) << outcome;
        EXPECT_TRUE(fs::exists(film.page)) << sentence;
    }
}

TEST(Storyboard, ShowsTheFilmOfAManifest) {
    const ShownFilm film;
    const TemporaryDirectory elsewhere;
    const struct {
        const char* sentence;
        fs::path manifest;
        std::string root;
        std::string embedded;
    } rows[]{
        {"beside the film", film.copy.root() / "vistrel-handoff.json", "/nowhere", "\"embedded\":19"},
        {"elsewhere", elsewhere / "handoff.json", "", "\"embedded\":19"},
        {"without the film", elsewhere / "handoff.json", "/nowhere", "\"embedded\":0"},
        {"with a folder of another film", elsewhere / "handoff.json", elsewhere.path().string(),
         "\"embedded\":0"},
    };
    for (const auto& [sentence, manifest, root, embedded] : rows) {
        film.writeManifest(manifest, root);
        const Outcome outcome = film.storyboard({"--json"}, manifest.string());
        EXPECT_EQ(outcome.status, 0) << sentence;
        EXPECT_NE(outcome.out.find(embedded), std::string::npos) << sentence << ": " << outcome.out;
        EXPECT_NE(outcome.out.find(R"("shots":7,"files":59)"), std::string::npos) << outcome.out;
        EXPECT_NE(film.text().find("Establish the quay, the keeper and the one dark lamp"),
                  std::string::npos);
    }
}

TEST(Storyboard, OpensThePage) {
    const ShownFilm film;
    const std::string log = (film.folder / "log").string();
    EXPECT_EQ(film.storyboard({"--open"}, "", {{"PATH", FILE_OPENER_FOLDER}, {"OPENER_LOG", log}}).status, 0);
    EXPECT_EQ(contentOf(log), film.page.string() + "\n");
    EXPECT_EQ(film.storyboard({"--open"}, "", {{"PATH", "/nonexistent"}}).status, 5);
}

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
