// SPDX-License-Identifier: Apache-2.0

// The thread on which a handler is destroyed, for executors that move, copy, keep and drop their jobs. A
// handler may own parts of a user interface, which only one thread may use and destroy.

#include <functional>
#include <future>
#include <latch>
#include <memory>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/joining_thread.hpp"
#include "tooling/process/coroutine.hpp"
#include "tooling/process/operation.hpp"
#include "tooling/process/resting_counts.hpp"

namespace kinovane::test {

namespace {

using Job = std::function<void()>;

Job copyOf(const Job& job) { return job; }

/// A way in which an executor stores its jobs. `stored` is called before the executor returns.
struct Storage {
    const char* sentence;
    Executor (*makeExecutor)(Loop& loop, std::function<void()> stored);
};

const std::vector<Storage> storages{
    {"moves the job",
     [](Loop& loop, std::function<void()> stored) -> Executor {
         return [&loop, stored = std::move(stored)](Job job) {
             loop.post(std::move(job));
             stored();
         };
     }},
    {"copies the job",
     [](Loop& loop, std::function<void()> stored) -> Executor {
         return [&loop, stored = std::move(stored)](Job job) {
             loop.post(job); // NOLINT(performance-unnecessary-value-param): as applications write it
             stored();
         };
     }},
    {"copies a job received by reference",
     [](Loop& loop, std::function<void()> stored) -> Executor {
         return [&loop, stored = std::move(stored)](const Job& job) {
             loop.post(job);
             stored();
         };
     }},
    {"stores a job of its own that holds the job",
     [](Loop& loop, std::function<void()> stored) -> Executor {
         return [&loop, stored = std::move(stored)](Job job) { // NOLINT(performance-*)
             loop.post([job] { job(); });
             stored();
         };
     }},
    {"copies the job and destroys the copy first",
     [](Loop& loop, std::function<void()> stored) -> Executor {
         return [&loop, stored = std::move(stored)](const Job& job) {
             EXPECT_TRUE(copyOf(job));
             loop.post(job);
             stored();
         };
     }},
};

/// A way in which a main loop uses a job.
struct Use {
    const char* sentence;
    void (*use)(const Job& job, std::vector<Job>& kept); ///< The job is destroyed afterwards.
    bool runs;
};

const std::vector<Use> uses{
    {"runs it", [](const Job& job, std::vector<Job>& /*kept*/) { job(); }, true},
    {"runs a copy of it", [](const Job& job, std::vector<Job>& /*kept*/) { copyOf(job)(); }, true},
    {"keeps it after it ran",
     [](const Job& job, std::vector<Job>& kept) {
         kept.push_back(job);
         job();
     },
     true},
    {"drops it", [](const Job& /*job*/, std::vector<Job>& /*kept*/) {}, false},
    {"drops it after a copy of it",
     [](const Job& job, std::vector<Job>& /*kept*/) { EXPECT_TRUE(copyOf(job)); }, false},
};

struct Handled {
    int value = 0;
    std::thread::id handlerDestroyedOn;
    std::thread::id resultDestroyedOn;
};

enum class Done { before, afterwards };

/// Starts an operation whose result and handler record where they are destroyed. The operation is done before
/// or after the handler is installed.
void start(const Executor& executor, Handled& handled, Done done) {
    using Result = std::shared_ptr<DestructionRecorder>;
    Gate gate;
    Task<Result> task = startTask<Result>([passed = gate.pass(), &handled] {
        passed.wait();
        return std::make_shared<DestructionRecorder>(handled.resultDestroyedOn);
    });
    if (done == Done::before) {
        gate.open();
        waitUntilDone(task);
    }
    task.then(executor,
              [&handled, recorder = std::make_unique<DestructionRecorder>(handled.handlerDestroyedOn)](
                  Task<Result> /*finished*/) { ++handled.value; });
    if (done == Done::afterwards)
        gate.open();
}

// The executor returns after the loop has used the job, so that its argument is the last copy.
TEST(TaskHandler, IsDestroyedByTheLoopDuringTheCallOfTheExecutor) {
    const ProcessCounts before = restingCounts();
    for (const Storage& storage : storages)
        for (const Use& use : uses) {
            SCOPED_TRACE(std::string("an executor that ") + storage.sentence + ", a loop that " +
                         use.sentence);
            Handled handled;
            Loop loop;
            std::vector<Job> kept;
            const auto used = std::make_shared<std::binary_semaphore>(0);
            start(storage.makeExecutor(loop, [used] { used->acquire(); }), handled, Done::afterwards);
            use.use(loop.next(), kept);
            used->release();
            EXPECT_EQ(settledCounts(before), before);
            std::thread([&kept] { kept.clear(); }).join();
            EXPECT_EQ(handled.value, use.runs ? 1 : 0);
            EXPECT_EQ(handled.handlerDestroyedOn, std::this_thread::get_id());
            EXPECT_EQ(handled.resultDestroyedOn, std::this_thread::get_id());
        }
}

// The loop uses the job while the executor is called, or afterwards.
TEST(TaskHandler, IsDestroyedByTheLoopAtAnyMoment) {
    for (const Storage& storage : storages)
        for (const Use& use : uses) {
            SCOPED_TRACE(std::string("an executor that ") + storage.sentence + ", a loop that " +
                         use.sentence);
            for (int run = 0; run < 40; ++run) {
                Handled handled;
                Loop loop;
                std::vector<Job> kept;
                start(storage.makeExecutor(loop, [] {}), handled,
                      run % 4 == 0 ? Done::before : Done::afterwards);
                use.use(loop.next(), kept);
                std::thread([&kept] { kept.clear(); }).join();
                ASSERT_EQ(handled.value, use.runs ? 1 : 0);
                ASSERT_EQ(handled.handlerDestroyedOn, std::this_thread::get_id());
                ASSERT_EQ(handled.resultDestroyedOn, std::this_thread::get_id());
            }
        }
}

// Some standard libraries copy a small std::function when it is moved.
TEST(TaskHandler, LeavesNoCopyOfAFunctionWithTheCallerOfThen) {
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watch = held;
    bool destroyed = false;
    Task<int>::ready(5).then(
        [&](const Job& job) {
            job();
            destroyed = watch.expired();
        },
        std::function([held = std::move(held)](const Task<int>& /*finished*/) {}));
    EXPECT_TRUE(destroyed);
}

// The exception reaches the loop.
TEST(TaskHandler, IsDestroyedByTheLoopIfItThrows) {
    std::thread::id destroyedOn;
    Loop loop;
    startTask<int>([] { return 5; })
        .then(loop.executor(), [recorder = std::make_unique<DestructionRecorder>(destroyedOn)](
                                   Task<int> /*finished*/) { throw std::runtime_error("broken"); });
    const Job job = loop.next();
    EXPECT_THROW(job(), std::runtime_error);
    EXPECT_EQ(destroyedOn, std::this_thread::get_id());
    EXPECT_NO_THROW(job());
}

// Only the thread that calls the executor ever had the job.
TEST(TaskHandler, IsDestroyedByAnExecutorThatDropsTheJob) {
    std::thread::id calledOn;
    const auto destroyedOn = std::make_shared<std::promise<std::thread::id>>();
    std::shared_ptr<void> held(nullptr, [destroyedOn](const void* /*nothing*/) {
        destroyedOn->set_value(std::this_thread::get_id());
    });
    Gate gate;
    startBehind(gate, 5).then(
        [&calledOn](const Job& /*job*/) { calledOn = std::this_thread::get_id(); },
        [held = std::move(held)](const Task<int>& /*finished*/) { ADD_FAILURE() << "the handler ran"; });
    gate.open();
    const std::thread::id worker = destroyedOn->get_future().get();
    EXPECT_EQ(worker, calledOn);
    EXPECT_NE(worker, std::this_thread::get_id());
}

// Destroying an unused copy, for instance one of the top of a priority queue, does not drop a job that is
// still in the queue.
TEST(TaskHandler, OutlivesACopyOfItsJob) {
    for (const Storage& storage : storages) {
        SCOPED_TRACE(storage.sentence);
        const ProcessCounts before = restingCounts();
        Handled handled;
        Loop loop;
        const auto used = std::make_shared<std::binary_semaphore>(0);
        start(storage.makeExecutor(loop, [used] { used->acquire(); }), handled, Done::afterwards);
        const Job job = loop.next();
        EXPECT_TRUE(copyOf(job));
        EXPECT_EQ(handled.handlerDestroyedOn, std::thread::id());
        used->release();
        EXPECT_EQ(settledCounts(before), before);
        EXPECT_TRUE(copyOf(job));
        EXPECT_EQ(handled.handlerDestroyedOn, std::thread::id());
        job();
        EXPECT_EQ(handled.value, 1);
    }
}

TEST(TaskHandler, RunsOnceHoweverOftenItsJobRuns) {
    Handled handled;
    Loop loop;
    start(loop.executor(), handled, Done::afterwards);
    const Job job = loop.next();
    constexpr int threads = 4;
    std::latch together(threads);
    std::vector<JoiningThread> runners;
    for (int thread = 0; thread < threads; ++thread)
        runners.emplace_back([&together, job] {
            together.arrive_and_wait();
            job();
        });
    runners.clear();
    job();
    EXPECT_EQ(handled.value, 1);
}

// The loop clears its queue while the handler runs, for example because the application quits.
TEST(TaskHandler, MayDestroyTheJobThatRunsIt) {
    int handled = 0;
    Loop loop;
    Job job;
    startTask<int>([] { return 5; }).then(loop.executor(), [&](Task<int> finished) {
        job = nullptr;
        handled = finished.get();
    });
    job = loop.next();
    job();
    EXPECT_EQ(handled, 5);
}

} // namespace

} // namespace kinovane::test
