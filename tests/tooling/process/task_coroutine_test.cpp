// SPDX-License-Identifier: Apache-2.0

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tooling/process/coroutine.hpp"
#include "tooling/process/operation.hpp"
#include "tooling/process/resting_counts.hpp"

namespace kinovane::test {

namespace {

/// What a coroutine recorded.
struct Trace {
    int value = 0;
    std::thread::id resumedOn;
    int unwound = 0; ///< How often its local object was destroyed.
};

/// A local object of a coroutine.
class Unwinding {
  public:
    explicit Unwinding(Trace& trace) : trace_(&trace) {}
    Unwinding(const Unwinding&) = delete;
    Unwinding& operator=(const Unwinding&) = delete;
    ~Unwinding() { ++trace_->unwound; }

  private:
    Trace* trace_;
};

Coroutine awaitPlainly(Task<int> task, Trace& trace) {
    const Unwinding unwinding(trace);
    trace.value = co_await std::move(task);
    trace.resumedOn = std::this_thread::get_id();
}

Coroutine awaitOn(Task<int> task, Executor executor, Trace& trace) {
    const Unwinding unwinding(trace);
    trace.value = co_await task.on(std::move(executor));
    trace.resumedOn = std::this_thread::get_id();
}

void runInline(const std::function<void()>& job) { job(); }

TEST(TaskCoroutine, ResumesOnTheWorkerThread) {
    for (int run = 0; run < 100; ++run) {
        Gate gate;
        std::thread::id worker;
        Task<int> task = startTask<int>([passed = gate.pass(), &worker] {
            passed.wait();
            worker = std::this_thread::get_id();
            return 5;
        });
        Trace trace;
        Coroutine coroutine = awaitPlainly(std::move(task), trace);
        EXPECT_EQ(trace.value, 0);
        gate.open();
        coroutine.wait();
        EXPECT_EQ(trace.value, 5);
        EXPECT_EQ(trace.resumedOn, worker);
        EXPECT_NE(trace.resumedOn, std::this_thread::get_id());
        EXPECT_EQ(trace.unwound, 1);
    }
}

TEST(TaskCoroutine, ContinuesAtOnceIfTheTaskIsDone) {
    Task<int> task = startTask<int>([] { return 5; });
    waitUntilDone(task);
    Trace trace;
    const Coroutine coroutine = awaitPlainly(std::move(task), trace);
    EXPECT_EQ(trace.value, 5);
    EXPECT_EQ(trace.resumedOn, std::this_thread::get_id());
}

// In some of the runs the operation ends between the check whether it is done and the suspension.
TEST(TaskCoroutine, ResumesIfTheOperationEndsDuringTheSuspension) {
    for (int run = 0; run < 500; ++run) {
        Trace trace;
        Coroutine coroutine = awaitPlainly(startTask<int>([run] { return run; }), trace);
        coroutine.wait();
        EXPECT_EQ(trace.value, run);
        EXPECT_EQ(trace.unwound, 1);
    }
}

TEST(TaskCoroutine, ResumesThroughTheExecutor) {
    struct Row {
        const char* sentence;
        bool doneBefore;
    };
    for (const Row row : {Row{"not done yet", false}, Row{"done already", true}}) {
        SCOPED_TRACE(row.sentence);
        Gate gate;
        Task<int> task = startBehind(gate, 5);
        if (row.doneBefore) {
            gate.open();
            waitUntilDone(task);
        }
        Loop loop;
        Trace trace;
        Coroutine coroutine = awaitOn(std::move(task), loop.executor(), trace);
        EXPECT_EQ(loop.waiting(), row.doneBefore ? 1U : 0U);
        if (!row.doneBefore)
            gate.open();
        const std::function<void()> job = loop.next();
        EXPECT_EQ(trace.value, 0) << "the coroutine resumed before the job ran";
        job();
        EXPECT_EQ(trace.value, 5);
        EXPECT_EQ(trace.resumedOn, std::this_thread::get_id());
        coroutine.wait();
        EXPECT_EQ(loop.waiting(), 0U);
    }
}

TEST(TaskCoroutine, ResumesThroughAnInlineExecutor) {
    Task<int> done = startTask<int>([] { return 5; });
    waitUntilDone(done);
    Trace early;
    const Coroutine first = awaitOn(std::move(done), runInline, early);
    EXPECT_EQ(early.value, 5);
    EXPECT_EQ(early.resumedOn, std::this_thread::get_id());

    Gate gate;
    Trace late;
    Coroutine second = awaitOn(startBehind(gate, 6), runInline, late);
    gate.open();
    second.wait();
    EXPECT_EQ(late.value, 6);
    EXPECT_NE(late.resumedOn, std::this_thread::get_id());
}

TEST(TaskCoroutine, MayBeDestroyedWhileSuspended) {
    const ProcessCounts before = restingCounts();
    struct Row {
        const char* sentence;
        bool throughExecutor;
        bool doneBefore; ///< The executor has the job when the coroutine is destroyed.
    };
    // Without an executor this is only allowed because the operation cannot end before the gate is open.
    for (const Row row : {Row{"without an executor", false, false}, Row{"before it is done", true, false},
                          Row{"while the executor holds the job", true, true}}) {
        SCOPED_TRACE(row.sentence);
        Gate gate;
        Loop loop;
        Trace trace;
        Task<int> task = startBehind(gate, 5);
        std::function<void()> job;
        {
            const Coroutine coroutine = row.throughExecutor ? awaitOn(std::move(task), loop.executor(), trace)
                                                            : awaitPlainly(std::move(task), trace);
            if (row.doneBefore) {
                gate.open();
                job = loop.next();
            }
            EXPECT_EQ(trace.unwound, 0);
        }
        EXPECT_EQ(trace.unwound, 1);
        if (!row.doneBefore)
            gate.open();
        if (row.throughExecutor && !row.doneBefore)
            job = loop.next();
        if (job)
            job();
        EXPECT_EQ(settledCounts(before), before);
        EXPECT_EQ(trace.value, 0);
        EXPECT_EQ(trace.unwound, 1);
    }
}

// The thread that runs the executor's jobs destroys the coroutine while the operation runs, while the
// executor is called, or while its job is in the queue. Runs until each has happened.
TEST(TaskCoroutine, MayBeDestroyedByTheExecutorsThreadAtAnyMoment) {
    const ProcessCounts before = restingCounts();
    struct Row {
        const char* sentence;
        Executor (*into)(Loop& loop);
    };
    for (const Row row : {Row{"the job is moved", [](Loop& loop) { return loop.executor(); }},
                          Row{"the job is copied", [](Loop& loop) -> Executor {
                                  return [&loop](const std::function<void()>& job) { loop.post(job); };
                              }}}) {
        SCOPED_TRACE(row.sentence);
        int withoutJob = 0;
        int withJob = 0;
        for (int run = 0; run < 300 || withoutJob < 10 || withJob < 10; ++run) {
            ASSERT_LT(run, 100'000);
            Trace trace;
            Loop loop;
            {
                const Coroutine coroutine = awaitOn(startTask<int>([] { return 5; }), row.into(loop), trace);
                for (int turn = 0; turn < run % 100; ++turn)
                    std::this_thread::yield();
                if (loop.waiting() == 0)
                    ++withoutJob;
                else
                    ++withJob;
            }
            ASSERT_EQ(trace.unwound, 1);
            loop.runNext();
            ASSERT_EQ(trace.value, 0);
            ASSERT_EQ(trace.unwound, 1);
        }
    }
    EXPECT_EQ(settledCounts(before), before);
}

TEST(TaskCoroutine, StaysSuspendedIfTheExecutorDropsItsJob) {
    const ProcessCounts before = restingCounts();
    auto result = std::make_shared<int>(5);
    const std::weak_ptr<int> watched = result;
    struct Wait {
        static Coroutine forever(Task<std::shared_ptr<int>> task, Executor executor, bool& resumed) {
            (void)co_await task.on(std::move(executor));
            resumed = true;
        }
    };
    bool resumed = false;
    {
        std::promise<void> dropped;
        Gate gate;
        const Coroutine coroutine = Wait::forever(
            startBehind(gate, std::move(result)),
            [&](const std::function<void()>& /*job*/) { dropped.set_value(); }, resumed);
        gate.open();
        dropped.get_future().wait();
        EXPECT_EQ(settledCounts(before), before);
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(resumed);
}

/// A coroutine that destroys its own frame when it ends.
struct DetachedCoroutine {
    struct promise_type {
        DetachedCoroutine get_return_object() const noexcept { return {}; }
        std::suspend_never initial_suspend() const noexcept { return {}; }
        std::suspend_never final_suspend() const noexcept { return {}; }
        void return_void() const noexcept {}
        [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }
    };
};

DetachedCoroutine addUp(Task<int> first, Executor executor, std::promise<int>& sum) {
    int value = co_await std::move(first);
    value += co_await startTask<int>([] { return 20; });
    value += co_await startTask<int>([] { return 300; }).on(executor);
    co_await startTask<void>([] {});
    co_await startTask<void>([] {}).on(executor);
    sum.set_value(value);
}

TEST(TaskCoroutine, AwaitsSeveralTasksInSequence) {
    const ProcessCounts before = restingCounts();
    for (int run = 0; run < 50; ++run) {
        std::promise<int> sum;
        addUp(startTask<int>([] { return 1; }), runInline, sum);
        EXPECT_EQ(sum.get_future().get(), 321);
        EXPECT_EQ(settledCounts(before), before);
    }
}

} // namespace

} // namespace kinovane::test
