// SPDX-License-Identifier: Apache-2.0

#include <optional>

#include <gtest/gtest.h>

#include "simulators/simulator_call.hpp"
#include "simulators/vistrel_film.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
namespace bj = boost::json;

/// Changes one key of a document: it becomes null, or it is erased.
enum class Change { null, erase };

void change(bj::value& document, const std::string& object, const std::string& key, Change how) {
    bj::object& record = document.at_pointer(object).as_object();
    if (how == Change::null)
        record[key] = nullptr;
    else
        record.erase(key);
}

/// What a command does with a film one of whose documents was changed.
struct Outcome {
    ProcessResult result;
    std::string handoff; ///< Written by `export-vistrel`; empty after any other command.

    bool operator==(const Outcome&) const = default;
};

TEST(FilmSimulator, TreatsNullAsAbsent) {
    const Variable clock("FILM_CLOCK", "2026-03-01T14:05:09Z");
    const Variable behaviour("FILM_MISBEHAVE", std::nullopt);
    const TemporaryDirectory directory;
    const FilmToolClient film(programPath("film"));
    const fs::path folder = directory / "film";
    const std::string run = film.plan("An idea", "A title", 6, folder).get().string();
    film.approve(run, "plan", "n", "m").get();
    film.advance(run).get();
    film.approve(run, "frames", "n", "m").get();
    film.advance(run).get();
    fs::copy(folder, directory / "unchanged", fs::copy_options::recursive);

    struct Row {
        const char* sentence;
        const char* file;
        const char* object; ///< A JSON pointer.
        const char* key;
        std::vector<std::string> arguments;
        const char* refusal; ///< Empty when the command succeeds.
    };
    const std::vector<std::string> status{"status", run};
    const std::vector<std::string> approve{"approve", run, "--gate",        "delivery",
                                           "--note",  "n", "--approved-by", "m"};
    const std::vector<std::string> reroll{"reroll", run, "--shot", "shot-01", "--note", "n"};
    const std::vector<std::string> handOver{"export-vistrel", run, "--output", directory / "handoff.json"};
    const std::vector<Row> rows{
        {"open questions", "film-project.json", "/brief", "openQuestions", status, ""},
        {"a shot's status", "film-project.json", "/shots/0", "status", approve, ""},
        {"a shot's status before a new take", "film-project.json", "/shots/0", "status", reroll, ""},
        {"a shot's take", "film-project.json", "/shots/0", "take", approve, ""},
        {"a shot's take before a new one", "film-project.json", "/shots/0", "take", reroll,
         "The shot \"shot-01\" has no take yet.\n"},
        {"a shot's candidate", "film-project.json", "/shots/0", "selectedCandidate", approve, ""},
        {"an approval's note", "film-project.json", "/approvals/plan", "note", approve, ""},
        {"a job's shot", "film-project.json", "/jobs/0", "shotId", approve, ""},
        {"the frame rate", "production-plan.json", "/target", "fps", handOver, ""},
        {"the aspect ratio", "production-plan.json", "/target", "aspectRatio", handOver, ""},
        {"the width", "production-plan.json", "/target", "width", handOver, ""},
        {"the height", "production-plan.json", "/target", "height", handOver, ""},
        {"a cast member's seed", "production-plan.json", "/cast/1", "seed", handOver, ""},
        {"a location's seed", "production-plan.json", "/locations/0", "seed", handOver, ""},
        {"a chosen candidate", "production-plan.json", "/shots/0", "selectedCandidate", handOver, ""},
        {"a chosen seed", "production-plan.json", "/shots/0", "selectedSeed", handOver, ""},
        {"the run's id", "run.json", "", "runId", status, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const auto outcome = [&](Change how) {
            fs::remove_all(folder);
            fs::remove(directory / "handoff.json");
            fs::copy(directory / "unchanged", folder, fs::copy_options::recursive);
            bj::value document = bj::parse(contentOf(folder / row.file));
            change(document, row.object, row.key, how);
            directory.write(std::string("film/") + row.file, bj::serialize(document));
            const ProcessResult result = call(programPath("film"), row.arguments);
            return Outcome{result, fs::exists(directory / "handoff.json")
                                       ? contentOf(directory / "handoff.json")
                                       : std::string()};
        };
        const Outcome absent = outcome(Change::erase);
        EXPECT_EQ(absent.result.stderr, row.refusal);
        EXPECT_EQ(absent.result.exitCode, *row.refusal == '\0' ? 0 : 1);
        const Outcome null = outcome(Change::null);
        EXPECT_EQ(null.result, absent.result);
        EXPECT_EQ(null.handoff, absent.handoff);
    }
}

TEST(VistrelSimulator, TreatsNullAsAbsent) {
    struct Row {
        const char* sentence;
        const char* object; ///< A JSON pointer.
        const char* key;
    };
    const std::vector<Row> rows{
        {"the logline", "/project", "logline"},
        {"the synopsis", "/project", "synopsis"},
        {"the theme", "/project", "theme"},
        {"the width", "/project", "width"},
        {"the height", "/project", "height"},
        {"a cast member's seed", "/cast/0", "seed"},
        {"a location's seed", "/locations/0", "seed"},
        {"a shot's key frame", "/shots/2", "keyframeAssetId"},
        {"a shot's clip", "/shots/2", "clipAssetId"},
    };
    VistrelFilm film;
    const bj::value unchanged = film.document;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const auto storyboard = [&](Change how) {
            film.document = unchanged;
            change(film.document, row.object, row.key, how);
            film.save();
            const ProcessResult checked = film.check();
            EXPECT_EQ(checked.exitCode, 0) << checked.stderr;
            const ProcessResult imported = film.import();
            EXPECT_EQ(imported.stdout, checked.stdout);
            const auto receipt = bj::parse(imported.stdout);
            return imported.stdout +
                   contentOf(film.library / std::string(receipt.at("project_id").as_string()) /
                             "storyboard.json");
        };
        const std::string absent = storyboard(Change::erase);
        EXPECT_EQ(storyboard(Change::null), absent);
    }
}

} // namespace
} // namespace kinovane::test
