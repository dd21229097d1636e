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

TEST(FilmToolResults, TheWholeResult) {
    const Recorder recorder("printed\xFF\n");
    const Variable errors("RECORDER_ERRORS", "said\n");
    const FilmToolClient client(Recorder::path());
    const auto result = [](Texts arguments) {
        return ProcessResult{Recorder::path(), std::move(arguments), 0, "printed\xEF\xBF\xBD\n", "said\n"};
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

TEST(FilmToolResults, ClientsAreComparedByTheirProgram) {
    EXPECT_EQ(FilmToolClient("~/film").executable(), "~/film");
    EXPECT_EQ(FilmToolClient("film"), FilmToolClient("film"));
    EXPECT_NE(FilmToolClient("film"), FilmToolClient("/usr/bin/film"));
}

TEST(FilmToolResults, ArgumentsToBeShown) {
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

/// The place of the tests' programs under another name, as the current directory.
class FilmToolInPlace : public testing::Test {
  protected:
    FilmToolInPlace() { fs::current_path(place.path()); }
    ~FilmToolInPlace() override { fs::current_path(former_); }

    std::string install(const std::string& name) const {
        fs::create_directories((place / name).parent_path());
        fs::copy_file(Recorder::path(), place / name);
        return (place / name).string();
    }

    const TemporaryDirectory place;

  private:
    const fs::path former_ = fs::current_path();
};

TEST_F(FilmToolInPlace, TheAgentIsToldTheToolsAbsolutePath) {
    const std::string tool = install("bin/kinovane-film");
    const Variable path("PATH", (place / "bin").string());
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

TEST_F(FilmToolInPlace, AToolInstalledInTheMeantimeIsFound) {
    fs::create_directories(place / "first");
    fs::create_directories(place / "second");
    const Variable path("PATH", (place / "first").string() + ":" + (place / "second").string());
    const FilmToolClient client("kinovane-film");
    EXPECT_EQ(failureOf(client.recover("/r.json")), "Required executable not found: kinovane-film");
    const std::string second = install("second/kinovane-film");
    EXPECT_EQ(client.recover("/r.json").get().executable, second);
    const std::string first = install("first/kinovane-film");
    EXPECT_EQ(client.recover("/r.json").get().executable, first);
    fs::remove(first);
    EXPECT_EQ(client.recover("/r.json").get().executable, second);
}

TEST_F(FilmToolInPlace, ARelativeLocationIsTheOneAtTheTimeOfTheCall) {
    const Recorder recorder(launchSpecRow().fullDocument());
    const FilmToolClient client(Recorder::path());
    Task<ProcessResult> recovery = client.recover("r.json");
    fs::current_path("/");
    EXPECT_EQ(recovery.get().arguments, (Texts{"recover", (place / "r.json").string()}));
    fs::current_path(place.path());
    Task<PiAgentLaunchSpec> launch = client.agentLaunchSpec("r.json", "pi");
    fs::current_path("/");
    EXPECT_EQ(launch.get(), fullLaunchSpec());
    EXPECT_EQ(recorder.arguments().at(2), (place / "r.json").string());
}

// The worker thread may come to the lookup after the application has changed its directory, where another
// program has the same name.
TEST_F(FilmToolInPlace, ARelativeToolIsTheOneAtTheTimeOfTheCall) {
    const std::string tool = install("here/bin/kinovane-film");
    install("there/bin/kinovane-film");
    const Variable path("PATH", ".//bin");
    for (const char* name : {"bin/kinovane-film", "./bin/kinovane-film", "kinovane-film"}) {
        SCOPED_TRACE(name);
        const Recorder recorder(launchSpecRow().fullDocument());
        for (int round = 0; round < 50; ++round) {
            fs::current_path(place / "here");
            Task<ProcessResult> recovery = FilmToolClient(name).recover("/r.json");
            fs::current_path(place / "there");
            EXPECT_EQ(recovery.get().executable, tool);
            fs::current_path(place / "here");
            Task<PiAgentLaunchSpec> launch = FilmToolClient(name).agentLaunchSpec("/r.json", "pi");
            fs::current_path(place / "there");
            EXPECT_EQ(launch.get(), fullLaunchSpec());
            EXPECT_EQ(recorder.arguments().at(6), tool);
        }
    }
    fs::current_path(place.path());
}

TEST_F(FilmToolInPlace, ARelativeReplyIsBelowTheDirectoryOfTheCall) {
    fs::create_directories(place / "here");
    for (const char* reply : {"film/run.json", "./film/run.json", ".//film/run.json"}) {
        const Recorder recorder(planReply(reply));
        fs::current_path(place / "here");
        Task<fs::path> plan = FilmToolClient(Recorder::path()).plan("i", "t", 1, "/films");
        fs::current_path(place.path());
        EXPECT_EQ(plan.get().native(), (place / "here/film/run.json").native());
    }
}

/// One reply to several commands at once: each finds its keys in it.
std::string replyToMany() {
    std::string reply = exportReceiptRow().fullDocument();
    reply.back() = ',';
    reply += launchSpecRow().fullDocument().substr(1);
    reply.back() = ',';
    return reply + planReply("/r.json").substr(1);
}

TEST_F(FilmToolInPlace, ManyAtOnce) {
    constexpr std::size_t count = 64;
    Fifo arrivals(place / "arrivals");
    Fifo gate(place / "gate");
    const Variable arrivalsPath("RECORDER_ARRIVALS", arrivals.path());
    const Variable gatePath("RECORDER_GATE", gate.path());
    const Variable output("RECORDER_OUTPUT", replyToMany());
    const FilmToolClient client(Recorder::path());
    arrivals.open();
    const ProcessCounts before = countProcess();

    /// An operation under way.
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
    // All of them run now, and none can have ended: had a call waited for its child, nobody would be here.
    arrivals.awaitAnnouncements(count);
    for (const Running& operation : running)
        EXPECT_FALSE(operation.done());
    EXPECT_EQ(countProcess().children, before.children + count);

    gate.open();
    for (const Running& operation : running)
        EXPECT_EQ(operation.failure(), "");
    running.clear();
    ProcessCounts after = before;
    ++after.descriptors; // The open gate.
    EXPECT_EQ(settledCounts(after), after);
}

} // namespace

} // namespace kinovane::test
