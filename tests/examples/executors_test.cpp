// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/background.hpp>
#include <kinovane/tooling.hpp>

#include "examples/toolkit_loops.hpp"
#include "support/joining_thread.hpp"
#include "support/recorder.hpp"
#include "support/sample_film.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using ThreadID = std::thread::id;

/// Part of a handler: tells on which thread the handler is destroyed.
class Destruction {
  public:
    explicit Destruction(std::promise<ThreadID>& thread) : thread_(&thread) {}
    Destruction(Destruction&& other) noexcept : thread_(std::exchange(other.thread_, nullptr)) {}
    Destruction& operator=(Destruction&&) = delete;
    ~Destruction() {
        if (thread_ != nullptr)
            thread_->set_value(std::this_thread::get_id());
    }

  private:
    std::promise<ThreadID>* thread_;
};

TEST(ToolkitExecutor, RunsAndDestroysHandlersOnTheThreadOfTheLoop) {
    for (const ToolkitRow& row : toolkitLoops()) {
        SCOPED_TRACE(row.name);
        const std::unique_ptr<ToolkitLoop> loop = row.makeLoop();
        std::promise<ThreadID> destroyed;
        ThreadID operation, handler;
        runInBackground([] {
            return std::this_thread::get_id();
        }).then(loop->executor(), [&, destruction = Destruction(destroyed)](Task<ThreadID> finished) {
            operation = finished.get();
            handler = std::this_thread::get_id();
            loop->quit();
        });
        loop->run();
        EXPECT_NE(operation, handler);
        EXPECT_EQ(handler, std::this_thread::get_id());
        EXPECT_EQ(destroyed.get_future().get(), std::this_thread::get_id());
    }
}

TEST(ToolkitExecutor, RunsJobsOneAfterTheOther) {
    constexpr int count = 1000;
    for (const ToolkitRow& row : toolkitLoops()) {
        SCOPED_TRACE(row.name);
        const std::unique_ptr<ToolkitLoop> loop = row.makeLoop();
        std::vector<int> numbers;
        const JoiningThread thread([&, post = loop->executor()] {
            for (int number = 0; number < count; ++number)
                post([&, number] { numbers.push_back(number); });
            post([&] { loop->quit(); });
        });
        loop->run();
        ASSERT_EQ(numbers.size(), static_cast<std::size_t>(count));
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST(ToolkitExecutor, NeverRunsAJobInsideTheCallThatPostsIt) {
    for (const ToolkitRow& row : toolkitLoops()) {
        SCOPED_TRACE(row.name);
        const std::unique_ptr<ToolkitLoop> loop = row.makeLoop();
        std::string order;
        const auto addAndQuit = [&](Task<int> /*finished*/) {
            order += " second";
            loop->quit();
        };
        const auto postAnother = [&](Task<int> /*finished*/) {
            Task<int>::ready(2).then(loop->executor(), addAndQuit);
            order += " first";
        };
        Task<int>::ready(1).then(loop->executor(), postAnother);
        order += "posted";
        loop->run();
        EXPECT_EQ(order, "posted first second");
    }
}

TEST(ToolkitExecutor, DestroysWaitingHandlersOnTheThreadThatDestroysTheLoop) {
    for (const ToolkitRow& row : toolkitLoops()) {
        SCOPED_TRACE(row.name);
        std::unique_ptr<ToolkitLoop> loop = row.makeLoop();
        std::promise<ThreadID> destroyed;
        JoiningThread([&] {
            Task<int>::ready(1).then(loop->executor(),
                                     [destruction = Destruction(destroyed)](Task<int> /*finished*/) {
                                         ADD_FAILURE() << "the handler was called";
                                     });
        }).join();
        loop.reset();
        EXPECT_EQ(destroyed.get_future().get(), std::this_thread::get_id());
    }
}

TEST(ToolkitExecutor, DropsTheHandlerOfAnOperationThatEndsAfterTheLoop) {
    for (const ToolkitRow& row : toolkitLoops()) {
        SCOPED_TRACE(row.name);
        std::unique_ptr<ToolkitLoop> loop = row.makeLoop();
        std::promise<void> gate;
        std::promise<ThreadID> operation, destroyed;
        runInBackground([&] {
            gate.get_future().wait();
            operation.set_value(std::this_thread::get_id());
        }).then(loop->executor(), [destruction = Destruction(destroyed)](Task<void> /*finished*/) {
            ADD_FAILURE() << "the handler was called";
        });
        loop.reset();
        gate.set_value();
        EXPECT_EQ(destroyed.get_future().get(), operation.get_future().get());
    }
}

/// Runs the example of a toolkit with a program in place of the film tool.
ProcessResult resultOf(const ToolkitRow& row, const std::vector<std::string>& arguments) {
    try {
        return FilmToolClient(programPath(row.example)).run(arguments).get();
    } catch (const FilmToolError& error) {
        return std::get<FilmToolError::commandFailed>(error.value()).result;
    }
}

/// Qt writes a warning to standard error when the locale is not a UTF-8 locale.
Variable locale() { return {"LC_ALL", "C.UTF-8"}; }

TEST(ToolkitExample, ShowsTheOutputOfAProduction) {
    const Variable utf8 = locale();
    for (const ToolkitRow& row : toolkitsWithExample()) {
        SCOPED_TRACE(row.name);
        const Recorder recorder("Frame 1 of 2 …\nFrame 2 of 2 …\n");
        const ProcessResult result = resultOf(row, {Recorder::path(), "/film/run.json"});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.stdout, "Frame 1 of 2 …\nFrame 2 of 2 …\nThe production has finished.\n");
        EXPECT_EQ(result.stderr, "");
        EXPECT_EQ(recorder.arguments(), (std::vector<std::string>{"run", "/film/run.json"}));
    }
}

TEST(ToolkitExample, ShowsWhyAProductionFailed) {
    const Variable utf8 = locale();
    const TemporaryDirectory directory;
    const Variable misbehaviour("FILM_MISBEHAVE", std::nullopt);
    const std::string missing = directory / "no film";
    const std::string run =
        FilmToolClient(programPath("film")).plan("A lamp", "Lamp", 6, directory / "film").get();
    struct Row {
        const char* sentence;
        std::vector<std::string> arguments;
        std::int32_t exitCode;
        std::string output, errors;
    };
    for (const ToolkitRow& toolkit : toolkitsWithExample()) {
        const std::vector<Row> rows{
            {"the program is missing",
             {missing, run},
             1,
             "",
             "Required executable not found: " + missing + "\n"},
            {"the program fails",
             {programPath("film"), run},
             1,
             "The gate \"plan\" is not approved.\n",
             "The gate \"plan\" is not approved.\n\n"},
            {"an argument is missing", {missing}, 2, "", "usage: " + toolkit.example + " FILM RUN_JSON\n"},
            {"there is an argument too much",
             {missing, run, ""},
             2,
             "",
             "usage: " + toolkit.example + " FILM RUN_JSON\n"},
        };
        for (const Row& row : rows) {
            SCOPED_TRACE(toolkit.name + ", " + row.sentence);
            EXPECT_EQ(resultOf(toolkit, row.arguments),
                      (ProcessResult{programPath(toolkit.example), row.arguments, row.exitCode, row.output,
                                     row.errors}));
        }
    }
}

/// Whether a process waits for this FIFO to be opened for writing. Releases it.
bool anyoneWaitsFor(const fs::path& fifo) {
    const int descriptor = ::open(fifo.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        EXPECT_EQ(errno, ENXIO);
        return false;
    }
    ::close(descriptor);
    return true;
}

TEST(ToolkitExample, EndsTheProductionBeforeItQuits) {
    const Variable utf8 = locale();
    for (const ToolkitRow& row : toolkitsWithExample()) {
        SCOPED_TRACE(row.name);
        const Recorder recorder("not written");
        const TemporaryDirectory directory;
        const fs::path gatePath = directory / "gate";
        const fs::path arrivalsPath = directory / "arrivals";
        ASSERT_EQ(::mkfifo(gatePath.c_str(), 0600), 0);
        ASSERT_EQ(::mkfifo(arrivalsPath.c_str(), 0600), 0);
        const Variable gate("RECORDER_GATE", gatePath);
        const Variable arrivals("RECORDER_ARRIVALS", arrivalsPath);

        StopSource stop;
        RunOptions options;
        options.stop = stop.token();
        options.gracePeriod = std::chrono::minutes(4); // The example ends by itself.
        Task<ProcessResult> example =
            FilmToolClient(programPath(row.example)).run({Recorder::path(), "run.json"}, {}, options);
        EXPECT_EQ(std::ifstream(arrivalsPath).get(), '!'); // The program waits at the gate.
        stop.requestStop();                                // Sends SIGTERM to the example only.
        try {
            ADD_FAILURE() << "the example was not stopped: " << example.get().stdout;
        } catch (const RunStopped& stopped) {
            EXPECT_EQ(stopped.result().exitCode, 0);
            EXPECT_EQ(stopped.result().stdout, "The production was stopped.\n");
            EXPECT_EQ(stopped.result().stderr, "");
        }
        EXPECT_FALSE(anyoneWaitsFor(gatePath)) << "the program outlived the example";
    }
}

} // namespace
} // namespace kinovane::test
