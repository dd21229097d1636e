// SPDX-License-Identifier: Apache-2.0

// Every operation when one of its allocations fails, or one and all later ones.

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>

#include "faults/allocation_sweep.hpp"
#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "support/variable.hpp"
#include "tooling/process/coroutine.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

struct Row {
    const char* sentence;
    std::function<void()> operation;
};

void sweep(const std::vector<Row>& rows) {
    for (const Row& row : rows)
        AllocationSweep{.name = row.sentence, .operation = row.operation}.run();
}

TEST(AllocationFaults, LeakNothingInDocumentsAndLookups) {
    const fs::path run = sampleFilm() / "run.json";
    const fs::path nowhere = sampleFilm() / "nowhere/run.json";
    const std::string document = encodeJSON(FilmTreatment{"t", "l", "s", "th", {"b1", "b2"}, "v", "s"});
    const FilmTreatment treatment = decodeJSON<FilmTreatment>(document);
    const std::string broken = document.substr(0, document.size() / 2);
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(run);
    sweep({
        {"reading a record", [&] { static_cast<void>(decodeJSON<FilmTreatment>(document)); }},
        {"refusing a broken record",
         [&] {
             try {
                 static_cast<void>(decodeJSON<FilmTreatment>(broken));
             } catch (const JSONDecodingError&) {
                 return;
             }
         }},
        {"writing a record", [&] { static_cast<void>(encodeJSON(treatment, JSONFormat::pretty)); }},
        {"refusing a workspace that does not exist",
         [&] {
             try {
                 FilmProjectLoader::load(nowhere);
             } catch (const FilmProjectError&) {
                 return;
             }
         }},
        {"choosing the cut", [&] { static_cast<void>(film.playableCutURL()); }},
        {"finding a program", [] { FilmToolClient::resolveExecutable("sh"); }},
        {"listing the copies of pi", [] { PiExecutableResolver::bundledCandidates("/"); }},
    });
}

/// A small workspace, because every allocation of an operation is tried twice.
struct SmallFilm {
    WorkspaceMaker maker;
    fs::path run = maker.directory.write("run.json", "");

    SmallFilm() {
        maker.directory.write("film-project.json", smallestProject());
        maker.directory.write("production-plan.json", encodeJSON(*maker.snapshot.productionPlan));
        maker.add("poster", "poster.png", "poster");
        maker.add("shot-clip", "clips/s1.mp4", "clip");
        fs::create_symlink(maker.directory / "poster.png", maker.directory / "link.png");
        maker.add("thumbnail", "link.png", "poster");
    }
};

TEST(AllocationFaults, LeakNothingInLoadingAndVerifying) {
    const SmallFilm film;
    HandoffBuildOptions several;
    several.workers = 3;
    sweep({
        {"loading", [&] { FilmProjectLoader::load(film.run); }},
        {"building", [&] { VistrelHandoffBuilder::build(film.maker.snapshot, "film", "now"); }},
        {"building with three workers",
         [&] { VistrelHandoffBuilder::build(film.maker.snapshot, "film", "now", several); }},
        {"an audit", [&] { VistrelHandoffBuilder::audit(film.maker.snapshot); }},
        {"an audit with three workers", [&] { VistrelHandoffBuilder::audit(film.maker.snapshot, several); }},
        {"the digest of a file", [&] { VistrelHandoffBuilder::sha256(film.maker.directory / "poster.png"); }},
    });
}

TEST(AllocationFaults, LeaveTheOldManifestOrTheNewOne) {
    const TemporaryDirectory directory;
    const VistrelHandoff handoff;
    const std::string content = encodeJSON(handoff, JSONFormat::pretty);
    const fs::path target = directory / "output/handoff.json";
    AllocationSweep{.name = "writing a manifest",
                    .operation = [&] { VistrelHandoffBuilder::write(handoff, target); },
                    .prepare =
                        [&] {
                            fs::remove_all(directory / "output");
                            directory.write("output/handoff.json", "old");
                        },
                    .check =
                        [&](bool succeeded) {
                            EXPECT_EQ(contentOf(target), succeeded ? content : "old");
                            EXPECT_EQ(namesIn(directory / "output"),
                                      std::vector<std::string>{"handoff.json"});
                        }}
        .run();
}

TEST(AllocationFaults, LeakNothingInRunningAProgram) {
    const std::string program = programPath("test_program");
    const FilmToolClient client(program);
    const VistrelClient vistrel(program);
    const QuexRunAgentClient agent(program);
    // The empty reply is refused, which also allocates.
    const auto refused = [](auto task) {
        try {
            static_cast<void>(task.get());
        } catch (const FilmToolError&) {
            return;
        }
    };
    sweep({
        {"a run with an environment", [&] { client.run({"out", "x"}, {{"A", "b"}}).get(); }},
        {"a run that fails", [&] { refused(client.run({"err", "x", "exit", "3"})); }},
        {"a run that is dropped", [&] { static_cast<void>(client.run({"out", "x"})); }},
        {"a program that does not exist", [&] { refused(FilmToolClient("/no/such/program").run({})); }},
        {"asking for the status", [&] { refused(client.status("/run.json")); }},
        {"planning", [&] { refused(client.plan("idea", "title", 3, "/film")); }},
        {"asking for the launch of the agent", [&] { refused(client.agentLaunchSpec("/run.json", "pi")); }},
        {"checking a manifest", [&] { refused(vistrel.validate("/handoff.json")); }},
        {"asking the agent runtime", [&] { refused(agent.status()); }},
    });
}

TEST(AllocationFaults, LeakNothingInAnExecutor) {
    const FilmToolClient client(programPath("test_program"));
    // Runs the job inline, so the executor itself allocates nothing.
    const Executor inlineExecutor = [](const std::function<void()>& job) { job(); };
    sweep({
        {"a handler",
         [&] {
             std::binary_semaphore handled(0);
             client.run({}).then(inlineExecutor,
                                 [&](const Task<ProcessResult>& /*finished*/) { handled.release(); });
             handled.acquire();
         }},
    });
}

} // namespace

} // namespace kinovane::test
