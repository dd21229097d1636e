// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
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
using Steps = std::function<std::string(const PublishFilm&)>;

/// A failure when a film of two files is published.
struct Failure {
    std::string sentence;
    std::function<void(PublishFilm&)> damage; ///< Changes the sound workspace; may be empty.
    int status;
    std::string message; ///< "{ROOT}" is replaced by the workspace's folder.
    Steps stepsBefore;   ///< The steps that are shown before the failure.
    std::vector<std::string> options = {};
    std::string misbehaviour = {};
};

std::string nothing(const PublishFilm& /*film*/) { return ""; }
std::string loaded(const PublishFilm& film) { return film.loaded(); }
std::string onlyLoaded(const PublishFilm& /*film*/) { return "Loaded    t\n"; }
std::string written(const PublishFilm& film) { return film.written(); }
std::string dryRun(const PublishFilm& film) { return film.writtenInDryRun(); }
std::string checked(const PublishFilm& film) { return film.written() + checkedStep; }
std::string checkedWithoutCounts(const PublishFilm& film) {
    return film.written() + "Checked   Vistrel accepts the film\n";
}

void expectFailures(const std::vector<Failure>& rows) {
    for (const Failure& row : rows) {
        SCOPED_TRACE(row.sentence);
        PublishFilm film;
        if (row.damage)
            row.damage(film);
        const std::string message = replaced(row.message, "{ROOT}", film.root().string());
        std::vector<std::string> options;
        for (const std::string& option : row.options)
            options.push_back(replaced(option, "{ROOT}", film.root().string()));
        const std::map<std::string, std::string> environment{{"VISTREL_LIBRARY", ""},
                                                             {"VISTREL_MISBEHAVE", row.misbehaviour}};
        EXPECT_EQ(film.publish(options, environment),
                  (Outcome{row.status, "", row.stepsBefore(film) + "kinovane: " + message + "\n"}));

        fs::remove(film.manifest());
        options.emplace_back("--json");
        const Outcome json = film.publish(options, environment);
        EXPECT_EQ(json.status, row.status);
        EXPECT_EQ(json.out, "");
        const boost::json::value error = boost::json::parse(json.err).at("error");
        EXPECT_EQ(error.at("status").as_int64(), row.status);
        EXPECT_EQ(error.at("message").as_string(), message);
    }
}

void removeFile(const PublishFilm& film, const char* name) { fs::remove(film.root() / name); }

void changeProject(const PublishFilm& film, const std::string& what, const std::string& by) {
    const std::string project = contentOf(film.root() / "film-project.json");
    film.workspace.directory.write("film-project.json", replaced(project, what, by));
}

const std::string vistrel = programPath("vistrel");

TEST(PublishFailure, IsReportedForAWorkspaceThatCannotBeRead) {
    expectFailures({
        {"no run manifest", [](auto& film) { removeFile(film, "run.json"); }, 3,
         "No run.json exists at {ROOT}/run.json.", nothing},
        {"no project", [](auto& film) { removeFile(film, "film-project.json"); }, 3,
         "No film-project.json exists at {ROOT}/film-project.json.", nothing},
        {"a project without a title", [](auto& film) { changeProject(film, "\"title\"", "\"titel\""); }, 3,
         "{ROOT}/film-project.json: title is missing", nothing},
    });
}

TEST(PublishFailure, IsReportedForAFilmThatCannotBeHandedOver) {
    expectFailures({
        {"no plan", [](auto& film) { removeFile(film, "production-plan.json"); }, 4,
         "The film cannot be handed over:\n"
         "  The workspace has no production plan. A film is published once its plan was accepted.",
         onlyLoaded},
        {"a missing file", [](auto& film) { removeFile(film, "poster.png"); }, 4,
         "1 of 2 files is damaged:\n"
         "missing     poster.png\n"
         "No manifest was written, and nothing was imported.\nNext: kinovane verify {ROOT}",
         loaded},
        {"a file that is cut short", [](auto& film) { film.workspace.directory.write("poster.png", "a"); }, 4,
         "1 of 2 files is damaged:\n"
         "changed     poster.png  1 B, recorded 8 B: cut short\n"
         "No manifest was written, and nothing was imported.\nNext: kinovane verify {ROOT}",
         loaded},
        {"a changed file of the same size",
         [](auto& film) { film.workspace.directory.write("poster.png", "a Poster"); }, 4,
         "1 of 2 files is damaged:\n"
         "changed     poster.png  its content is not what was recorded\n"
         "No manifest was written, and nothing was imported.\nNext: kinovane verify {ROOT}",
         loaded},
        {"several changed files",
         [](auto& film) {
             film.workspace.directory.write("poster.png", "a Poster");
             film.workspace.directory.write("clips/s1.mp4", "Moving pictures");
         },
         4,
         "2 of 2 files are damaged:\n"
         "changed     clips/s1.mp4  its content is not what was recorded\n"
         "changed     poster.png  its content is not what was recorded\n"
         "No manifest was written, and nothing was imported.\nNext: kinovane verify {ROOT}",
         loaded,
         {"--workers", "2"}},
        {"a file of another size, reported without reading a changed one",
         [](auto& film) {
             film.workspace.directory.write("poster.png", "");
             film.workspace.directory.write("clips/s1.mp4", "Moving pictures");
         },
         4,
         "1 of 2 files is damaged:\n"
         "changed     poster.png  empty, recorded 8 B: cut short\n"
         "No manifest was written, and nothing was imported.\nNext: kinovane verify {ROOT}",
         loaded},
        {"a link that leads out",
         [](auto& film) {
             removeFile(film, "poster.png");
             fs::create_symlink("/dev/null", film.root() / "poster.png");
         },
         4,
         "1 of 2 files is damaged:\n"
         "misplaced   poster.png  leads out of the film's folder, to /dev/null\n"
         "No manifest was written, and nothing was imported.\nNext: kinovane verify {ROOT}",
         loaded},
    });
}

TEST(PublishFailure, IsReportedForAnImporterThatIsBroken) {
    const std::string missing = "Vistrel's program was not found: /nowhere/vistrel\n"
                                "Next: kinovane publish --vistrel PROGRAM, or kinovane doctor";
    const std::string end = ": " + vistrel + "\nThe manifest was written, and nothing was imported.";
    expectFailures({
        {"no such program", {}, 5, missing, loaded, {"--vistrel", "/nowhere/vistrel"}},
        {"no such program, reported before any file is examined",
         [](auto& film) { removeFile(film, "poster.png"); },
         5,
         missing,
         loaded,
         {"--vistrel", "/nowhere/vistrel"}},
        {"an exit status",
         {},
         5,
         "Vistrel failed with the exit status 3 and without a message" + end,
         written,
         {},
         "exit-3"},
        {"a signal",
         {},
         5,
         "vistrel was ended by signal 9 (Killed): " + vistrel +
             "\nThe manifest was written, and nothing was imported.",
         written,
         {},
         "killed"},
        {"a receipt with other keys",
         {},
         5,
         "Vistrel's reply is not a valid receipt (project_id is missing)" + end,
         written,
         {},
         "camel-case"},
        {"a reply that is no receipt, in a dry run",
         {},
         5,
         "Vistrel's reply is not a valid receipt (line 1, column 1: this is not valid JSON): " + vistrel +
             "\nNothing was imported.",
         dryRun,
         {"--dry-run"},
         "not-json"},
    });
}

TEST(PublishFailure, IsReportedForARefusal) {
    expectFailures({
        {"a refusal of the dry run, without words",
         {},
         7,
         "Vistrel refused the film without a reason\nNothing was imported.",
         written,
         {},
         "not-ok"},
        {"a refusal of the import, without words",
         {},
         7,
         "Vistrel refused the film without a reason\nIt had accepted the film in the dry run.",
         checkedWithoutCounts,
         {"--vistrel", programPath("reluctant_importer")}},
        {"a refusal of the import",
         {},
         7,
         "Vistrel refused the film: VISTREL_LIBRARY is not set: it names the folder that films are imported "
         "into\nIt had accepted the film in the dry run.",
         checked},
    });
}

TEST(PublishFailure, IsReportedForPathsThatCannotBeReadOrWritten) {
    expectFailures({
        {"a folder instead of a file",
         [](auto& film) {
             removeFile(film, "poster.png");
             fs::create_directory(film.root() / "poster.png");
         },
         6,
         "1 of 2 files is damaged:\n"
         "unreadable  poster.png  is a folder, not a file\n"
         "No manifest was written, and nothing was imported.\nNext: kinovane verify {ROOT}",
         loaded},
        {"a manifest below a file",
         {},
         6,
         "{ROOT}/run.json: Not a directory",
         loaded,
         {"--output", "{ROOT}/run.json/handoff.json"}},
        {"a manifest in a folder that does not exist",
         {},
         6,
         "the folder of the manifest does not exist: {ROOT}/a/b\nNext: mkdir -p {ROOT}/a/b",
         loaded,
         {"--output", "{ROOT}/a/b/handoff.json"}},
    });
}

} // namespace

} // namespace kinovane::test
