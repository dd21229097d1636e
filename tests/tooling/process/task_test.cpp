// SPDX-License-Identifier: Apache-2.0

#include <functional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/joining_thread.hpp"
#include "tooling/process/coroutine.hpp"
#include "tooling/process/operation.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {

namespace {

const std::string taken = "logic_error: the result of this task was already taken";

template <class T>
Coroutine awaitInto(Task<T> task, std::string& text) {
    try {
        text = co_await std::move(task);
    } catch (...) {
        text = describe(std::current_exception());
    }
}

template <class T>
Coroutine awaitOnInto(Task<T> task, Executor executor, std::string& text) {
    try {
        text = co_await task.on(std::move(executor));
    } catch (...) {
        text = describe(std::current_exception());
    }
}

template <class T>
std::string textOf(Task<T> task) {
    try {
        return task.get();
    } catch (...) {
        return describe(std::current_exception());
    }
}

/// A way to take a result. Calls `begun` when it waits for the result.
struct Consumer {
    const char* sentence;
    std::string (*take)(Task<std::string> task, const std::function<void()>& begun);
};

const std::vector<Consumer> consumers{
    {"get",
     [](Task<std::string> task, const std::function<void()>& begun) {
         const JoiningThread other(begun);
         return textOf(std::move(task));
     }},
    {"co_await",
     [](Task<std::string> task, const std::function<void()>& begun) {
         std::string text;
         Coroutine coroutine = awaitInto(std::move(task), text);
         begun();
         coroutine.wait();
         return text;
     }},
    {"on",
     [](Task<std::string> task, const std::function<void()>& begun) {
         std::string text;
         Loop loop;
         Coroutine coroutine = awaitOnInto(std::move(task), loop.executor(), text);
         begun();
         loop.runNext();
         coroutine.wait();
         return text;
     }},
    {"then",
     [](Task<std::string> task, const std::function<void()>& begun) {
         std::string text;
         Loop loop;
         task.then(loop.executor(), [&](Task<std::string> finished) { text = textOf(std::move(finished)); });
         begun();
         loop.runNext();
         return text;
     }},
};

TEST(Task, ReturnsItsResultOrErrorToEveryConsumer) {
    struct Row {
        const char* sentence;
        std::function<std::string()> operation;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"a text", [] { return std::string("done"); }, "done"},
        {"an empty text", [] { return std::string(); }, ""},
        {"a FilmToolError",
         []() -> std::string { throw FilmToolError(FilmToolError::executableNotFound{"film"}); },
         "FilmToolError: Required executable not found: film"},
        {"a system error",
         []() -> std::string { throw std::system_error(5, std::generic_category(), "read"); },
         "system_error 5: read: Input/output error"},
        {"another exception", []() -> std::string { throw std::runtime_error("broken"); },
         "exception: broken"},
        {"a thrown object that is not an exception", []() -> std::string { throw 7; }, "int: 7"},
    };
    for (const Consumer& consumer : consumers)
        for (const Row& row : rows) {
            SCOPED_TRACE(std::string(consumer.sentence) + ": " + row.sentence);
            Task<std::string> early = startTask<std::string>(row.operation);
            waitUntilDone(early);
            EXPECT_EQ(consumer.take(std::move(early), [] {}), row.expected) << "done before";

            Gate gate;
            Task<std::string> late = startTask<std::string>([passed = gate.pass(), &row] {
                passed.wait();
                return row.operation();
            });
            EXPECT_FALSE(late.done());
            EXPECT_EQ(consumer.take(std::move(late), [&] { gate.open(); }), row.expected)
                << "done afterwards";
        }
}

TEST(Task, ReturnsItsResultOnce) {
    for (const Consumer& consumer : consumers) {
        SCOPED_TRACE(consumer.sentence);
        Task<std::string> task = startTask<std::string>([] { return std::string("x"); });
        EXPECT_EQ(consumer.take(std::move(task), [] {}), "x");
        // A task that was moved from behaves like one whose result was taken.
        Loop loop;
        EXPECT_TRUE(task.done()); // NOLINT(bugprone-use-after-move)
        const std::vector<std::function<void()>> attempts{
            [&] { (void)task.get(); },
            [&] { (void)std::move(task).operator co_await(); },
            [&] { (void)task.on(loop.executor()); },
            [&] { task.then(loop.executor(), [](Task<std::string> /*finished*/) { FAIL(); }); },
        };
        for (const auto& attempt : attempts) {
            std::string text = "no exception";
            try {
                attempt();
            } catch (...) {
                text = describe(std::current_exception());
            }
            EXPECT_EQ(text, taken);
        }
        EXPECT_EQ(loop.waiting(), 0U);
    }
}

TEST(Task, ThrowsOnASecondGet) {
    Task<int> value = startTask<int>([] { return 1; });
    EXPECT_EQ(value.get(), 1);
    EXPECT_THROW((void)value.get(), std::logic_error);
    EXPECT_TRUE(value.done());
    Task<int> error = startTask<int>([]() -> int { throw 7; });
    EXPECT_THROW((void)error.get(), int);
    EXPECT_THROW((void)error.get(), std::logic_error);
}

TEST(Task, ReportsWhetherItIsDone) {
    Gate gate;
    Task<int> task = startBehind(gate, 1);
    EXPECT_FALSE(task.done());
    gate.open();
    waitUntilDone(task);
    EXPECT_TRUE(task.done());
    EXPECT_EQ(task.get(), 1);
    EXPECT_TRUE(task.done());
}

TEST(Task, MayHaveNoResult) {
    int runs = 0;
    startTask<void>([&] { ++runs; }).get();
    EXPECT_EQ(runs, 1);
    Task<void> error = startTask<void>([] { throw std::runtime_error("broken"); });
    EXPECT_THROW(error.get(), std::runtime_error);
    Loop loop;
    startTask<void>([&] { ++runs; }).then(loop.executor(), [&](Task<void> finished) {
        finished.get();
        ++runs;
    });
    loop.runNext();
    EXPECT_EQ(runs, 3);
}

TEST(Task, ThrowsErrorsOfProgramsInCoroutines) {
    struct Await {
        static Coroutine into(Task<ProcessResult> task, std::string& text) {
            try {
                text = (co_await std::move(task)).stdout;
            } catch (...) {
                text = describe(std::current_exception());
            }
        }
    };
    struct Row {
        Task<ProcessResult> task;
        const char* expected;
    };
    std::vector<Row> rows;
    rows.push_back({startTestProgram({"out", "hello"}), "hello"});
    rows.push_back({startTestProgram({"exit", "3"}), "FilmToolError: Film command exited 3."});
    rows.push_back({FilmToolClient("kinovane-no-such-tool").run({}),
                    "FilmToolError: Required executable not found: kinovane-no-such-tool"});
    for (Row& row : rows) {
        SCOPED_TRACE(row.expected);
        std::string text;
        Coroutine coroutine = Await::into(std::move(row.task), text);
        coroutine.wait();
        EXPECT_EQ(text, row.expected);
    }
}

} // namespace

} // namespace kinovane::test
