// SPDX-License-Identifier: Apache-2.0

#include "terminal/progress_line.hpp"

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

using namespace std::chrono_literals;

/// A clock that a test sets.
struct TestClock {
    std::chrono::steady_clock::time_point now{5h};

    ActiveTime::Clock function() {
        return [this] { return now; };
    }
};

TEST(ActiveTime, LeavesTheTimeOfASuspensionOut) {
    TestClock clock;
    ActiveTime time(clock.function());
    clock.now += 3s;
    EXPECT_EQ(time.seconds(), 3);
    clock.now += 1h;
    std::raise(SIGCONT);
    EXPECT_EQ(time.seconds(), 3);
    clock.now += 2s;
    EXPECT_EQ(time.seconds(), 5);
}

TEST(ActiveTime, CountsASlowRead) {
    TestClock clock;
    ActiveTime time(clock.function());
    clock.now += 1min;
    EXPECT_EQ(time.seconds(), 60);
}

std::string outputOf(const CommonOptions& options, const std::vector<std::chrono::milliseconds>& times) {
    TestClock clock;
    const auto begin = clock.now;
    testing::internal::CaptureStderr();
    {
        const Console console(options);
        ProgressLine line(console, clock.function());
        VerificationProgress progress{0, times.size() - 1, 0, 10 * times.size(), "a\n.mp4"};
        for (const std::chrono::milliseconds time : times) {
            clock.now = begin + time;
            line.show(progress);
            ++progress.filesDone;
            progress.bytesDone += 10;
        }
    }
    return testing::internal::GetCapturedStderr();
}

TEST(ProgressLine, WritesJSONFiveTimesASecondAndAtTheEnd) {
    CommonOptions options;
    options.progress = ProgressMode::json;
    const auto line = [](int filesDone) {
        return R"({"progress":{"filesDone":)" + std::to_string(filesDone) +
               R"(,"filesTotal":6,"bytesDone":)" + std::to_string(10 * filesDone) +
               R"(,"bytesTotal":70,"path":"a\n.mp4"}})" + "\n";
    };
    EXPECT_EQ(outputOf(options, {0ms, 20ms, 199ms, 200ms, 399ms, 401ms, 402ms}),
              line(0) + line(3) + line(5) + line(6));
    options.json = true;
    EXPECT_EQ(outputOf(options, {0ms, 1ms, 2ms, 3ms, 4ms, 5ms, 6ms}), line(0) + line(6));
}

TEST(ProgressLine, IsSilentWithoutATerminal) { EXPECT_EQ(outputOf({}, {0ms, 1s, 2s}), ""); }

TEST(ProgressLine, IsSilentWhenQuietOutputIsWanted) {
    CommonOptions options;
    options.progress = ProgressMode::json;
    options.quiet = true;
    EXPECT_EQ(outputOf(options, {0ms, 1s, 2s}), "");
}

} // namespace

} // namespace kinovane::tool
