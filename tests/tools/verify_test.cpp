// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

/// A copy of the sample film that a test may damage.
class FilmCopy {
  public:
    FilmCopy() { fs::copy(sampleFilm(), root(), fs::copy_options::recursive); }

    fs::path root() const { return directory_ / "film"; }

    void change(const std::string& path) const { directory_.write("film/" + path, "something else"); }
    void remove(const std::string& path) const { fs::remove(root() / path); }
    void linkOutside(const std::string& path) const {
        fs::rename(root() / path, directory_ / "elsewhere");
        fs::create_symlink(directory_ / "elsewhere", root() / path);
    }
    void makeFolder(const std::string& path) const {
        remove(path);
        fs::create_directory(root() / path);
    }

  private:
    TemporaryDirectory directory_;
};

/// A damaged file as reported.
struct Damage {
    std::string path, kind, description;
};

const Damage mismatch{"clips/shot-02.mp4", "mismatch",
                      "Artifact hash mismatch for clips/shot-02.mp4. Expected "
                      "sha256:000a674aa771de84aa3994c3c00b0dfa2c4b06a7267ed8bcb77b5e5c117e09e9, got "
                      "sha256:f41f3fa625ff120ddca7ef456bf66371ecea23c129f4e4c32367101edb516cf8."};
const Damage missing{"poster.png", "missing", "The handoff artifact is missing: poster.png"};
const Damage misplaced{"cast/noor.png", "unsafe",
                       "The handoff contains an unsafe artifact path: cast/noor.png"};
const Damage folder{"score/score.m4a", "unreadable",
                    "The handoff artifact could not be read: score/score.m4a (Is a directory)"};
const Damage otherFolder{"frames/shot-01.png", "unreadable",
                         "The handoff artifact could not be read: frames/shot-01.png (Is a directory)"};

/// A damage to the film, and the expected report.
struct Row {
    std::string sentence;
    std::function<void(const FilmCopy&)> damage;
    int status;
    std::vector<Damage> damaged;
    std::string lastLine;
};

std::vector<Row> rows() {
    const std::string allSound = "All files are sound: 59 files, 2.2 MB.";
    return {
        {"a sound film", [](const FilmCopy& /*film*/) {}, 0, {}, allSound},
        {"a file that is not handed over does not matter",
         [](const FilmCopy& film) { film.remove("logs/prompts.jsonl"); },
         0,
         {},
         allSound},
        {"a changed file",
         [](const FilmCopy& film) { film.change("clips/shot-02.mp4"); },
         4,
         {mismatch},
         "1 of 59 files is damaged."},
        {"a removed file",
         [](const FilmCopy& film) { film.remove("poster.png"); },
         4,
         {missing},
         "1 of 59 files is damaged."},
        {"a link to the same file outside",
         [](const FilmCopy& film) { film.linkOutside("cast/noor.png"); },
         4,
         {misplaced},
         "1 of 59 files is damaged."},
        {"a folder instead of a file",
         [](const FilmCopy& film) { film.makeFolder("score/score.m4a"); },
         6,
         {folder},
         "1 of 59 files is damaged."},
        {"folders instead of two files",
         [](const FilmCopy& film) {
             film.makeFolder("score/score.m4a");
             film.makeFolder("frames/shot-01.png");
         },
         6,
         {otherFolder, folder},
         "2 of 59 files are damaged."},
        {"every damage at once, in the project's order",
         [](const FilmCopy& film) {
             film.remove("poster.png");
             film.makeFolder("score/score.m4a");
             film.change("clips/shot-02.mp4");
             film.linkOutside("cast/noor.png");
         },
         4,
         {misplaced, mismatch, folder, missing},
         "4 of 59 files are damaged."},
    };
}

Outcome verify(const fs::path& location, const Arguments& options = {}) {
    Arguments arguments{"verify", location.string()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return runCommandLineTool(std::move(arguments));
}

boost::json::value parsed(const Outcome& outcome) {
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 1) << outcome;
    return boost::json::parse(outcome.out);
}

TEST(Verify, ListsTheDamagedFiles) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.sentence);
        const FilmCopy film;
        row.damage(film);
        std::string out;
        for (const Damage& damage : row.damaged)
            out += damage.description + "\n";
        const Outcome expected{row.status, out + row.lastLine + "\n", ""};
        EXPECT_EQ(verify(film.root() / "run.json"), expected);
        for (const char* workers : {"1", "3", "256"})
            EXPECT_EQ(verify(film.root(), {"--workers", workers}), expected) << workers;
    }
}

TEST(Verify, ListsTheDamagedFilesAsJSON) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.sentence);
        const FilmCopy film;
        row.damage(film);
        const Outcome outcome = verify(film.root() / "run.json", {"--json"});
        EXPECT_EQ(outcome.status, row.status);
        boost::json::array damaged;
        for (const auto& [path, kind, description] : row.damaged)
            damaged.push_back({{"path", path}, {"kind", kind}, {"description", description}});
        EXPECT_EQ(
            parsed(outcome),
            (boost::json::value{
                {"files", 59}, {"bytes", 2224207}, {"sound", 59 - row.damaged.size()}, {"damaged", damaged}}))
            << outcome;
    }
}

TEST(Verify, AcceptsFilmsWithFewFilesAndWithoutAPlan) {
    struct OtherRow {
        std::string sentence;
        std::function<void(WorkspaceMaker&)> prepare;
        int status;
        std::string out, json;
    };
    const std::vector<OtherRow> otherRows{
        {"no files", [](WorkspaceMaker& /*film*/) {}, 0, "There are no files to verify.\n",
         R"({"files":0,"bytes":0,"sound":0,"damaged":[]})"},
        {"one file", [](WorkspaceMaker& film) { film.add("poster", "a.png", "abc"); }, 0,
         "All files are sound: 1 file, 3 B.\n", R"({"files":1,"bytes":3,"sound":1,"damaged":[]})"},
        {"no plan",
         [](WorkspaceMaker& film) {
             film.add("poster", "a.png", "abc");
             film.snapshot.productionPlan.reset();
         },
         0, "All files are sound: 1 file, 3 B.\n", R"({"files":1,"bytes":3,"sound":1,"damaged":[]})"},
        {"a path that leaves the folder", [](WorkspaceMaker& film) { film.list("poster", "../a.png"); }, 4,
         "The handoff contains an unsafe artifact path: ../a.png\n1 of 1 file is damaged.\n",
         R"({"files":1,"bytes":0,"sound":0,"damaged":[{"path":"../a.png","kind":"unsafe",)"
         R"("description":"The handoff contains an unsafe artifact path: ../a.png"}]})"},
        {"a path with control characters",
         [](WorkspaceMaker& film) { film.list("poster", "a\x1b[31m\n.png"); }, 4,
         "The handoff artifact is missing: a [31m .png\n1 of 1 file is damaged.\n",
         R"({"files":1,"bytes":0,"sound":0,"damaged":[{"path":"a\u001b[31m\n.png","kind":"missing",)"
         R"("description":"The handoff artifact is missing: a\u001b[31m\n.png"}]})"},
    };
    for (const OtherRow& row : otherRows) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker film;
        row.prepare(film);
        writeDocuments(film);
        EXPECT_EQ(verify(film.snapshot.runManifest), (Outcome{row.status, row.out, ""}));
        const Outcome outcome = verify(film.snapshot.runManifest, {"--json"});
        EXPECT_EQ(outcome.status, row.status);
        EXPECT_EQ(parsed(outcome), boost::json::parse(row.json)) << outcome;
    }
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
         "The film project could not be read: film-project.json: line 1, column 1: this is not valid JSON"},
    };
    for (const BadRow& row : badRows)
        for (const Arguments& options : {Arguments{}, Arguments{"--json"}}) {
            SCOPED_TRACE(row.sentence);
            const FilmCopy film;
            row.damage(film);
            EXPECT_EQ(verify(film.root(), options),
                      (Outcome{3, "",
                               "kinovane: " + replaced(row.message, "{ROOT}", film.root().string()) + "\n"}));
        }
}

} // namespace

} // namespace kinovane::test
