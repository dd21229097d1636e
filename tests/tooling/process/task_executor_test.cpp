// SPDX-License-Identifier: Apache-2.0

// Executors that are empty, that throw, or that do not run their jobs.

#include <chrono>
#include <csignal>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tooling/process/coroutine.hpp"
#include "tooling/process/operation.hpp"
#include "tooling/process/resting_counts.hpp"

namespace kinovane::test {

namespace {

TEST(TaskExecutor, IsRefusedIfEmpty) {
    struct Row {
        const char* sentence;
        void (*use)(Task<int>& task);
    };
    const std::vector<Row> rows{
        {"then", [](Task<int>& task) { task.then(nullptr, [](const Task<int>& /*finished*/) { FAIL(); }); }},
        {"on", [](Task<int>& task) { (void)task.on(Executor()); }},
        {"then, with a pointer to no function",
         [](Task<int>& task) {
             void (*const function)(std::function<void()>) = nullptr;
             task.then(function, [](const Task<int>& /*finished*/) { FAIL(); });
         }},
    };
    for (const Row& row : rows)
        for (const bool doneBefore : {false, true}) {
            SCOPED_TRACE(row.sentence);
            Gate gate;
            Task<int> task = startBehind(gate, 5);
            if (doneBefore) {
                gate.open();
                waitUntilDone(task);
            }
            std::string text = "no exception";
            try {
                row.use(task);
            } catch (const std::invalid_argument& error) {
                text = error.what();
            }
            EXPECT_EQ(text, "the executor is empty");
            EXPECT_EQ(task.done(), doneBefore);
            if (!doneBefore)
                gate.open();
            EXPECT_EQ(task.get(), 5);
        }
}

/// Takes a result through an executor that throws. Returns after 30 seconds if the process does not end.
void useThrowingExecutor(bool inCoroutine, bool doneBefore) {
    struct Wait {
        static Coroutine forResult(Task<int> task, Executor executor) {
            (void)co_await task.on(std::move(executor));
        }
    };
    const Executor throwing = [](const std::function<void()>& /*job*/) {
        throw std::runtime_error("the loop has ended");
    };
    Gate gate;
    Task<int> task = startBehind(gate, 5);
    if (doneBefore) {
        gate.open();
        waitUntilDone(task);
    }
    std::optional<Coroutine> coroutine;
    if (inCoroutine)
        coroutine.emplace(Wait::forResult(std::move(task), throwing));
    else
        task.then(throwing, [](const Task<int>& /*finished*/) {});
    if (!doneBefore)
        gate.open();
    (void)std::binary_semaphore(0).try_acquire_for(std::chrono::seconds(30));
}

TEST(TaskExecutor, EndsTheProcessIfItThrows) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // Operations have threads.
    for (const bool inCoroutine : {false, true})
        for (const bool doneBefore : {false, true}) {
            SCOPED_TRACE(inCoroutine ? "on" : "then");
            SCOPED_TRACE(doneBefore ? "done before" : "done afterwards");
            EXPECT_EXIT(useThrowingExecutor(inCoroutine, doneBefore), testing::KilledBySignal(SIGABRT),
                        "the loop has ended");
        }
}

// A loop that has ended runs no jobs. Operations that end later still call its executor.
TEST(TaskExecutor, MayDropOrKeepJobsAfterItsLoopHasEnded) {
    struct Wait {
        static Coroutine forResult(Task<int> task, Executor executor, std::shared_ptr<int> /*held*/) {
            (void)co_await task.on(std::move(executor));
            ADD_FAILURE() << "the coroutine resumed";
        }
    };
    enum class Jobs { dropped, destroyedFirst, destroyedLast };
    struct Row {
        const char* sentence;
        Jobs jobs;
    };
    const ProcessCounts before = restingCounts();
    for (const Row row : {Row{"jobs are dropped", Jobs::dropped},
                          Row{"jobs are kept and destroyed before the coroutine", Jobs::destroyedFirst},
                          Row{"jobs are kept and destroyed after the coroutine", Jobs::destroyedLast}}) {
        SCOPED_TRACE(row.sentence);
        auto heldByHandler = std::make_shared<int>(1);
        auto heldByCoroutine = std::make_shared<int>(1);
        const std::weak_ptr<int> handler = heldByHandler;
        const std::weak_ptr<int> frame = heldByCoroutine;
        std::mutex mutex;
        std::deque<std::function<void()>> kept;
        std::counting_semaphore<2> called(0);
        const Executor executor = [&](const std::function<void()>& job) {
            const std::lock_guard lock(mutex);
            if (row.jobs != Jobs::dropped)
                kept.push_back(job);
            called.release();
        };
        Gate gate;
        startBehind(gate, 5).then(executor, [held = std::move(heldByHandler)](const Task<int>& /*finished*/) {
            ADD_FAILURE() << "the handler ran";
        });
        std::optional<Coroutine> coroutine(
            Wait::forResult(startBehind(gate, 6), executor, std::move(heldByCoroutine)));
        gate.open();
        called.acquire();
        called.acquire();
        EXPECT_EQ(settledCounts(before), before);
        EXPECT_EQ(handler.expired(), row.jobs == Jobs::dropped);
        EXPECT_FALSE(frame.expired());
        if (row.jobs == Jobs::destroyedFirst)
            kept.clear();
        EXPECT_FALSE(frame.expired());
        coroutine.reset();
        EXPECT_TRUE(frame.expired());
        kept.clear();
        EXPECT_TRUE(handler.expired());
    }
}

} // namespace

} // namespace kinovane::test
