// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "support/child_counts.hpp"
#include "support/recorder.hpp"
#include "support/task_failure.hpp"
#include "tooling/film_tool/replies.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

TEST(FilmToolClient, ReturnsTheWholeResult) {
    const Recorder recorder("printed\xFF\n");
    const Variable errors("RECORDER_ERRORS", "warning\n");
    const FilmToolClient client(Recorder::path());
    const auto result = [](Texts arguments) {
        return ProcessResult{Recorder::path(), std::move(arguments), 0, "printed\xEF\xBF\xBD\n", "warning\n"};
    };
    EXPECT_EQ(client.advance("/r.json").get(), result({"run", "/r.json"}));
    EXPECT_EQ(client.advance("/r.json", "pi", "p", "m").get(),
              result({"run", "/r.json", "--pi-command", "pi"}));
    EXPECT_EQ(client.recover("/r.json").get(), result({"recover", "/r.json"}));
    EXPECT_EQ(client.reroll("/r.json", "s1", "darker").get(),
              result({"reroll", "/r.json", "--shot", "s1", "--note", "darker"}));
    EXPECT_EQ(client.review("/r.json").get(), result({"review", "/r.json"}));
    EXPECT_EQ(client.run({"a", ""}).get(), result({"a", ""}));
}

TEST(FilmToolClient, IsComparedByItsProgram) {
    EXPECT_EQ(FilmToolClient("~/film").executable(), "~/film");
    EXPECT_EQ(FilmToolClient("film"), FilmToolClient("film"));
    EXPECT_NE(FilmToolClient("film"), FilmToolClient("/usr/bin/film"));
}

TEST(FilmToolClient, ReturnsTheArgumentsOfTheAgent) {
    const auto here = [](const char* path) { return (fs::current_path() / path).string(); };
    const FilmToolClient client("kinovane-no-such-tool");
    EXPECT_EQ(client.agentArguments("/r.json"), (Texts{"agent", "--run-manifest", "/r.json"}));
    EXPECT_EQ(client.agentArguments("a b/r.json", "/my pi"),
              (Texts{"agent", "--run-manifest", here("a b/r.json"), "--pi-command", "/my pi"}));
    EXPECT_EQ(client.agentArguments(""), (Texts{"agent", "--run-manifest", ""}));
    EXPECT_EQ(FilmToolClient::agentLaunchArguments("", "pi", "film").at(2), "");
    EXPECT_EQ(client.agentArguments("/r.json", ""),
              (Texts{"agent", "--run-manifest", "/r.json", "--pi-command", ""}));
    EXPECT_EQ(FilmToolClient::agentLaunchArguments("/r.json", "pi", "/opt/film"),
              (Texts{"agent", "--run-manifest", "/r.json", "--pi-command", "pi", "--plugin-command",
                     "/opt/film", "--print-command"}));
    EXPECT_EQ(FilmToolClient::agentLaunchArguments("r.json", "", "--film"),
              (Texts{"agent", "--run-manifest", here("r.json"), "--pi-command", "", "--plugin-command",
                     "--film", "--print-command"}));
}

/// A working directory in which copies of the recorder are installed as the film tool.
class FilmToolInDirectory : public testing::Test {
  protected:
    FilmToolInDirectory() { fs::current_path(directory.path()); }
    ~FilmToolInDirectory() override { fs::current_path(former_); }

    std::string install(const std::string& name) const {
        fs::create_directories((directory / name).parent_path());
        fs::copy_file(Recorder::path(), directory / name);
        return (directory / name).string();
    }

    const TemporaryDirectory directory;

  private:
    const fs::path former_ = fs::current_path();
};

TEST_F(FilmToolInDirectory, ReceivesItsAbsolutePathAsThePluginCommand) {
    const std::string tool = install("bin/kinovane-film");
    const Variable path("PATH", (directory / "bin").string());
    for (const std::string& name : {std::string("kinovane-film"), std::string("bin/kinovane-film"),
                                    std::string("./bin/kinovane-film"), tool}) {
        SCOPED_TRACE(name);
        const Recorder recorder(launchSpecRow().fullDocument());
        EXPECT_EQ(FilmToolClient(name).agentLaunchSpec("/r.json", "~/pi").get(), fullLaunchSpec());
        EXPECT_EQ(recorder.arguments(), (Texts{"agent", "--run-manifest", "/r.json", "--pi-command", "~/pi",
                                               "--plugin-command", tool, "--print-command"}));
        EXPECT_EQ(recorder.environment(), ownEnvironment());
    }
}

TEST_F(FilmToolInDirectory, IsFoundWhenInstalledSinceTheLastCall) {
    fs::create_directories(directory / "first");
    fs::create_directories(directory / "second");
    const Variable path("PATH", (directory / "first").string() + ":" + (directory / "second").string());
    const FilmToolClient client("kinovane-film");
    EXPECT_EQ(failureOf(client.recover("/r.json")), "Required executable not found: kinovane-film");
    const std::string second = install("second/kinovane-film");
    EXPECT_EQ(client.recover("/r.json").get().executable, second);
    const std::string first = install("first/kinovane-film");
    EXPECT_EQ(client.recover("/r.json").get().executable, first);
    fs::remove(first);
    EXPECT_EQ(client.recover("/r.json").get().executable, second);
}

TEST_F(FilmToolInDirectory, ReceivesLocationsInTheDirectoryOfTheCall) {
    const Recorder recorder(launchSpecRow().fullDocument());
    const FilmToolClient client(Recorder::path());
    Task<ProcessResult> recovery = client.recover("r.json");
    fs::current_path("/");
    EXPECT_EQ(recovery.get().arguments, (Texts{"recover", (directory / "r.json").string()}));
    fs::current_path(directory.path());
    Task<PiAgentLaunchSpec> launch = client.agentLaunchSpec("r.json", "pi");
    fs::current_path("/");
    EXPECT_EQ(launch.get(), fullLaunchSpec());
    EXPECT_EQ(recorder.arguments().at(2), (directory / "r.json").string());
}

// The worker thread may look for the tool after the application has changed its working directory. Another
// program has the same name there.
TEST_F(FilmToolInDirectory, IsFoundInTheDirectoryOfTheCall) {
    const std::string tool = install("here/bin/kinovane-film");
    install("there/bin/kinovane-film");
    const Variable path("PATH", ".//bin");
    for (const char* name : {"bin/kinovane-film", "./bin/kinovane-film", "kinovane-film"}) {
        SCOPED_TRACE(name);
        const Recorder recorder(launchSpecRow().fullDocument());
        for (int round = 0; round < 50; ++round) {
            fs::current_path(directory / "here");
            Task<ProcessResult> recovery = FilmToolClient(name).recover("/r.json");
            fs::current_path(directory / "there");
            EXPECT_EQ(recovery.get().executable, tool);
            fs::current_path(directory / "here");
            Task<PiAgentLaunchSpec> launch = FilmToolClient(name).agentLaunchSpec("/r.json", "pi");
            fs::current_path(directory / "there");
            EXPECT_EQ(launch.get(), fullLaunchSpec());
            EXPECT_EQ(recorder.arguments().at(6), tool);
        }
    }
    fs::current_path(directory.path());
}

TEST_F(FilmToolInDirectory, NamesARunManifestInTheDirectoryOfTheCall) {
    fs::create_directories(directory / "here");
    for (const char* reply : {"film/run.json", "./film/run.json", ".//film/run.json"}) {
        const Recorder recorder(planReply(reply));
        fs::current_path(directory / "here");
        Task<fs::path> plan = FilmToolClient(Recorder::path()).plan("i", "t", 1, "/films");
        fs::current_path(directory.path());
        EXPECT_EQ(plan.get().native(), (directory / "here/film/run.json").native());
    }
}

/// A reply that every command can decode, because it has the keys of all.
std::string replyToAllCommands() {
    std::string reply = exportReceiptRow().fullDocument();
    reply.back() = ',';
    reply += launchSpecRow().fullDocument().substr(1);
    reply.back() = ',';
    return reply + planReply("/r.json").substr(1);
}

TEST_F(FilmToolInDirectory, RunsManyTimesAtOnce) {
    constexpr std::size_t count = 64;
    Fifo arrivals(directory / "arrivals");
    Fifo gate(directory / "gate");
    const Variable arrivalsPath("RECORDER_ARRIVALS", arrivals.path());
    const Variable gatePath("RECORDER_GATE", gate.path());
    const Variable output("RECORDER_OUTPUT", replyToAllCommands());
    const FilmToolClient client(Recorder::path());
    arrivals.open();
    const ProcessCounts before = countProcess();

    /// A running operation.
    struct Running {
        std::function<bool()> done;
        std::function<std::string()> failure;
    };
    std::vector<Running> running;
    const auto add = [&](auto task) {
        auto shared = std::make_shared<decltype(task)>(std::move(task));
        running.push_back(
            {[shared] { return shared->done(); }, [shared] { return failureOf(std::move(*shared)); }});
    };
    while (running.size() < count) {
        add(client.plan("i", "t", 1, "/films"));
        add(client.approve("/r.json", "g", "n", "b"));
        add(client.advance("/r.json", "pi", "p", "m"));
        add(client.recover("/r.json"));
        add(client.reroll("/r.json", "s", "n"));
        add(client.review("/r.json"));
        add(client.exportVistrel("/r.json"));
        add(client.agentLaunchSpec("/r.json", "pi"));
    }
    // All programs are running, so no call has waited for its program to end.
    arrivals.awaitAnnouncements(count);
    for (const Running& operation : running)
        EXPECT_FALSE(operation.done());
    EXPECT_EQ(countProcess().children, before.children + count);

    gate.open();
    for (const Running& operation : running)
        EXPECT_EQ(operation.failure(), "");
    running.clear();
    ProcessCounts after = before;
    ++after.descriptors; // The gate is open.
    EXPECT_EQ(settledCounts(after), after);
}

} // namespace

} // namespace kinovane::test
