// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"
#include "tools/commands/verify_run.hpp"
#include "tools/film_copy.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

TEST(Verify, ReportsFilmsWithFewFilesAndBadRecords) {
    struct OtherRow {
        std::string sentence;
        std::function<void(WorkspaceMaker&)> prepare;
        int status;
        std::string out;
    };
    const std::string one = "0 files are sound: 0 B in {TIME}.\n1 of 1 recorded file examined.\n";
    const std::string correct = "Next: let the film tool correct its records: kinovane recover {FILM}\n";
    const std::vector<OtherRow> otherRows{
        {"no files", [](WorkspaceMaker& /*film*/) {}, 0,
         "There are no files to verify.\n0 of 0 recorded files examined.\n"},
        {"no files that are handed over", [](WorkspaceMaker& film) { film.list("notes", "a.txt"); }, 0,
         "There are no files to verify.\n0 of 1 recorded file examined.\nNext: kinovane verify --all "
         "{FILM}\n"},
        {"no plan",
         [](WorkspaceMaker& film) {
             film.add("poster", "a.png", "abc");
             film.snapshot.productionPlan.reset();
         },
         0, "The file is sound: 3 B in {TIME}.\n1 of 1 recorded file examined.\n"},
        {"an absolute path", [](WorkspaceMaker& film) { film.list("poster", "/a.png"); }, 4,
         "misplaced   /a.png  the recorded path is absolute\n1 of 1 file is damaged.\n" + one + correct},
        {"a malformed digest",
         [](WorkspaceMaker& film) { film.add("poster", "a.png", "abc").sha256 = "abc"; }, 4,
         "malformed   a.png  the recorded digest is not \"sha256:\" and 64 lowercase digits\n"
         "1 of 1 file is damaged.\n" +
             one + correct},
        {"a path with control characters",
         [](WorkspaceMaker& film) { film.list("poster", "a\x1b[31m\n.png"); }, 4,
         "missing     $'a\\x1b[31m\\n.png'\n1 of 1 file is damaged.\n" + one + restore},
        {"a path that is recorded twice",
         [](WorkspaceMaker& film) {
             film.add("poster", "a.png", "abc");
             film.add("thumbnail", "a.png", "abc");
         },
         4,
         "documents   The project records this file twice: a.png\n"
         "All 2 files are sound: 6 B in {TIME}.\n2 of 2 recorded files examined.\n"},
        {"a duration that is too long",
         [](WorkspaceMaker& film) {
             film.add("poster", "a.png", "abc");
             film.snapshot.productionPlan->shots[0].durationSeconds = 1e300;
         },
         4,
         "documents   The duration of the shot \"s1\" does not fit 64 bits of milliseconds.\n"
         "The file is sound: 3 B in {TIME}.\n1 of 1 recorded file examined.\n"},
    };
    for (const OtherRow& row : otherRows) {
        WorkspaceMaker film;
        row.prepare(film);
        writeDocuments(film);
        EXPECT_EQ(verify(film.snapshot.runManifest), (Outcome{row.status, row.out, ""})) << row.sentence;
        EXPECT_EQ(verify(film.snapshot.runManifest, {"--json"}).status, row.status) << row.sentence;
    }
}

TEST(Verify, VerifiesSeveralFilms) {
    const TemporaryDirectory none;
    const FilmCopy sound;
    const FilmCopy unreadable;
    unreadable.makeFolder("poster.png");
    const FilmCopy damaged;
    damaged.remove("poster.png");
    const auto run = [](const Arguments& films) {
        Arguments arguments{"verify"};
        arguments.insert(arguments.end(), films.begin(), films.end());
        return withoutTimes(runCommandLineTool(arguments));
    };
    const std::string first = sound.root().string() + "\n" + allSound + "\n";
    EXPECT_EQ(
        run({sound.root(), damaged.root()}),
        (Outcome{4,
                 first + damaged.root().string() + "\nmissing     poster.png\n1 of 61 files is damaged.\n" +
                     allButOne("2.1 MB") + replaced(restore, "{FILM}", damaged.root().string()),
                 ""}));
    EXPECT_EQ(run({unreadable.root(), damaged.root()}).status, 4);
    EXPECT_EQ(run({unreadable.root(), sound.root()}).status, 6);
    const Outcome missing = run({none.path(), sound.root()});
    EXPECT_EQ(missing, (Outcome{3, sound.root().string() + "\n" + allSound,
                                "kinovane: No run.json exists at " + (none / "run.json").string() + ".\n"}));
}

TEST(Verify, ReportsAWorkspaceThatCannotBeRead) {
    struct BadRow {
        std::string sentence;
        std::function<void(const FilmCopy&)> damage;
        std::string message;
    };
    const std::vector<BadRow> badRows{
        {"no run manifest", [](const FilmCopy& film) { film.remove("run.json"); },
         "No run.json exists at {ROOT}/run.json."},
        {"no project", [](const FilmCopy& film) { film.remove("film-project.json"); },
         "No film-project.json exists at {ROOT}/film-project.json."},
        {"a project that is no JSON", [](const FilmCopy& film) { film.change("film-project.json"); },
         "{ROOT}/film-project.json: line 1, column 1: this is not valid JSON"},
    };
    for (const BadRow& row : badRows) {
        const FilmCopy film;
        row.damage(film);
        const std::string message = replaced(row.message, "{ROOT}", film.root().string());
        EXPECT_EQ(verify(film.root()), (Outcome{3, "", "kinovane: " + message + "\n"})) << row.sentence;
        EXPECT_EQ(verify(film.root(), {"--json"}),
                  (Outcome{3, "",
                           R"({"version":1,"error":{"kind":"workspace","status":3,"message":")" + message +
                               "\"}}\n"}))
            << row.sentence;
    }
}

} // namespace

} // namespace kinovane::test
