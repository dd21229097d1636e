// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"
#include "tools/commands/verify_run.hpp"
#include "tools/film_copy.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

/// The result of a run with JSON output.
boost::json::object filmIn(const Outcome& outcome) {
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 1) << outcome;
    boost::json::object document = boost::json::parse(outcome.out).as_object();
    EXPECT_EQ(document.at("version"), 1);
    return document.at("films").as_array().at(0).as_object();
}

struct Row {
    std::string sentence;
    std::function<void(const FilmCopy&)> damage;
    int status;
    std::string out;   ///< "{ELSEWHERE}" is the file outside.
    std::string state; ///< In JSON.
    std::vector<std::string> damaged;
};

std::vector<Row> rows() {
    return {
        {"a sound film", [](const FilmCopy& /*film*/) {}, 0, allSound, "sound", {}},
        {"a file that is not handed over does not matter",
         [](const FilmCopy& film) { film.remove("logs/prompts.jsonl"); },
         0,
         allSound,
         "sound",
         {}},
        {"a changed file",
         [](const FilmCopy& film) { film.change("clips/shot-02.mp4"); },
         4,
         "changed     clips/shot-02.mp4  its content is not what was recorded\n"
         "1 of 61 files is damaged.\n" +
             allButOne("2.2 MB") + restore,
         "damaged",
         {"clips/shot-02.mp4"}},
        {"a file that was cut short",
         [](const FilmCopy& film) { film.cut("clips/shot-03.mp4"); },
         4,
         "changed     clips/shot-03.mp4  1.0 kB, recorded 14.7 kB: cut short\n"
         "1 of 61 files is damaged.\n" +
             allButOne("2.2 MB") + restore,
         "damaged",
         {"clips/shot-03.mp4"}},
        {"a removed file",
         [](const FilmCopy& film) { film.remove("poster.png"); },
         4,
         "missing     poster.png\n1 of 61 files is damaged.\n" + allButOne("2.1 MB") + restore,
         "damaged",
         {"poster.png"}},
        {"a changed document",
         [](const FilmCopy& film) {
             const fs::path document = film.root() / "treatment.json";
             fs::resize_file(document, fs::file_size(document) - 1);
         },
         4,
         "changed     treatment.json  1222 B, recorded 1223 B: cut short\n1 of 61 files is damaged.\n" +
             allButOne("2.2 MB") + restore,
         "damaged",
         {"treatment.json"}},
        {"a link to the same file outside",
         [](const FilmCopy& film) { film.linkOutside("cast/noor.png"); },
         4,
         "misplaced   cast/noor.png  leads out of the film's folder, to {ELSEWHERE}\n"
         "1 of 61 files is damaged.\n" +
             allButOne("2.2 MB") + "Next: let the film tool correct its records: kinovane recover {FILM}\n",
         "damaged",
         {"cast/noor.png"}},
        {"a folder instead of a file",
         [](const FilmCopy& film) { film.makeFolder("score/score.m4a"); },
         6,
         "unreadable  score/score.m4a  is a folder, not a file\n"
         "1 of 61 files could not be read, so its state is unknown.\n" +
             allButOne("2.1 MB") + "Next: make the files readable, then kinovane verify {FILM}\n",
         "unreadable",
         {"score/score.m4a"}},
        {"a named pipe instead of a file",
         [](const FilmCopy& film) { film.makePipe("score/score.m4a"); },
         6,
         "unreadable  score/score.m4a  is a named pipe, not a file\n"
         "1 of 61 files could not be read, so its state is unknown.\n" +
             allButOne("2.1 MB") + "Next: make the files readable, then kinovane verify {FILM}\n",
         "unreadable",
         {"score/score.m4a"}},
        {"several damages",
         [](const FilmCopy& film) {
             film.remove("poster.png");
             film.makeFolder("score/score.m4a");
             film.makePipe("frames/shot-01.png");
             film.change("clips/shot-02.mp4");
         },
         4,
         "unreadable  frames/shot-01.png  is a named pipe, not a file\n"
         "changed     clips/shot-02.mp4  its content is not what was recorded\n"
         "unreadable  score/score.m4a  is a folder, not a file\n"
         "missing     poster.png\n"
         "2 of 61 files are damaged.\n"
         "2 of 61 files could not be read, so their state is unknown.\n"
         "57 files are sound: 1.9 MB in {TIME}.\n61 of 64 recorded files examined.\n" +
             restore,
         "damaged",
         {"frames/shot-01.png", "clips/shot-02.mp4", "score/score.m4a", "poster.png"}},
    };
}

TEST(Verify, ListsTheDamagedFilesAsTheyAreFound) {
    for (const Row& row : rows()) {
        const FilmCopy film;
        row.damage(film);
        const Outcome expected{row.status, replaced(row.out, "{ELSEWHERE}", film.outside().string()), ""};
        EXPECT_EQ(verify(film.root() / "run.json", {"--workers", "1"}), expected) << row.sentence;
        Outcome several = verify(film.root(), {"--workers", "3"});
        EXPECT_EQ(several.status, row.status) << row.sentence;
        EXPECT_EQ(several.out.size(), expected.out.size()) << row.sentence;
    }
}

TEST(Verify, ListsTheDamagedFilesAsJSON) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.sentence);
        const FilmCopy film;
        row.damage(film);
        const Outcome outcome = verify(film.root(), {"--json", "--workers", "1"});
        EXPECT_EQ(outcome.status, row.status);
        const boost::json::object result = filmIn(outcome);
        EXPECT_EQ(result.at("state").as_string(), row.state);
        EXPECT_EQ(result.at("recorded"), 64);
        EXPECT_EQ(result.at("examined"), 61);
        EXPECT_EQ(result.at("sound"), 61 - row.damaged.size());
        std::vector<std::string> damaged;
        for (const boost::json::value& file : result.at("damaged").as_array())
            damaged.emplace_back(file.at("path").as_string());
        EXPECT_EQ(damaged, row.damaged);
    }
}

TEST(Verify, ExaminesEveryRecordedFileOnRequest) {
    const FilmCopy film;
    film.remove("logs/prompts.jsonl");
    EXPECT_EQ(verify(film.root(), {"--all"}),
              (Outcome{4,
                       "missing     logs/prompts.jsonl\n1 of 64 files is damaged.\n"
                       "63 files are sound: 2.3 MB in {TIME}.\n64 of 64 recorded files examined.\n" +
                           restore,
                       ""}));
}

TEST(Verify, ShowsEveryFileWithVerboseOutput) {
    WorkspaceMaker film;
    film.add("poster", "a.png", "abc");
    writeDocuments(film);
    EXPECT_EQ(verify(film.snapshot.root, {"--verbose"}),
              (Outcome{0,
                       "sound       a.png  3 B\n            recorded "
                       "sha256:ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad\n"
                       "The file is sound: 3 B in {TIME}.\n1 of 1 recorded file examined.\n",
                       ""}));
}

} // namespace

} // namespace kinovane::test
