// SPDX-License-Identifier: Apache-2.0

// Where a handler is destroyed, however the executor treats its jobs. A handler holds parts of a user
// interface, which only one thread may touch, also when they are destroyed.
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

#include "tooling/process/coroutine.hpp"
#include "tooling/process/operation.hpp"
#include "tooling/process/resting_counts.hpp"

namespace kinovane::test {

namespace {

using Job = std::function<void()>;

Job copyOf(const Job& job) { return job; }

/// How executors store their jobs. `stored` is called before the executor returns.
struct Storing {
    const char* sentence;
    Executor (*into)(Loop& loop, std::function<void()> stored);
};

const std::vector<Storing> storings{
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

/// What a main loop does with a job.
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

/// Starts an operation whose result and whose handler record where they are destroyed. It is done before the
/// handler is installed, or afterwards.
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

// The executor returns only after its job was used: the job that it was called with is the last copy.
TEST(TaskHandler, DestroyedWhereTheJobIsUsedWhileTheExecutorIsCalled) {
    const ProcessCounts before = restingCounts();
    for (const Storing& storing : storings)
        for (const Use& use : uses) {
            SCOPED_TRACE(std::string("an executor that ") + storing.sentence + ", a loop that " +
                         use.sentence);
            Handled handled;
            Loop loop;
            std::vector<Job> kept;
            const auto used = std::make_shared<std::binary_semaphore>(0);
            start(storing.into(loop, [used] { used->acquire(); }), handled, Done::afterwards);
            use.use(loop.next(), kept);
            used->release();
            EXPECT_EQ(settledCounts(before), before);
            std::thread([&kept] { kept.clear(); }).join();
            EXPECT_EQ(handled.value, use.runs ? 1 : 0);
            EXPECT_EQ(handled.handlerDestroyedOn, std::this_thread::get_id());
            EXPECT_EQ(handled.resultDestroyedOn, std::this_thread::get_id());
        }
}

// The same with the job used at any moment: while the executor is called, or afterwards.
TEST(TaskHandler, DestroyedWhereTheJobIsUsed) {
    for (const Storing& storing : storings)
        for (const Use& use : uses) {
            SCOPED_TRACE(std::string("an executor that ") + storing.sentence + ", a loop that " +
                         use.sentence);
            for (int run = 0; run < 40; ++run) {
                Handled handled;
                Loop loop;
                std::vector<Job> kept;
                start(storing.into(loop, [] {}), handled, run % 4 == 0 ? Done::before : Done::afterwards);
                use.use(loop.next(), kept);
                std::thread([&kept] { kept.clear(); }).join();
                ASSERT_EQ(handled.value, use.runs ? 1 : 0);
                ASSERT_EQ(handled.handlerDestroyedOn, std::this_thread::get_id());
                ASSERT_EQ(handled.resultDestroyedOn, std::this_thread::get_id());
            }
        }
}

// A handler is also destroyed there when it throws. The exception reaches the loop.
TEST(TaskHandler, AHandlerThatThrows) {
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

// An executor that drops its job inside its own call is the only one that the job ever belonged to.
TEST(TaskHandler, DestroyedByAnExecutorThatDropsTheJobAtOnce) {
    std::thread::id calledOn;
    const auto destroyedOn = std::make_shared<std::promise<std::thread::id>>();
    std::shared_ptr<void> held(nullptr, [destroyedOn](const void* /*nothing*/) {
        destroyedOn->set_value(std::this_thread::get_id());
    });
    Gate gate;
    startBehind(gate, 5).then(
        [&calledOn](const Job& /*job*/) { calledOn = std::this_thread::get_id(); },
        [held = std::move(held)](const Task<int>& /*finished*/) { ADD_FAILURE() << "it ran"; });
    gate.open();
    const std::thread::id worker = destroyedOn->get_future().get();
    EXPECT_EQ(worker, calledOn);
    EXPECT_NE(worker, std::this_thread::get_id());
}

// A copy that goes unused while the job itself waits in the queue, as with the top of a priority queue, is
// not the end of the job.
TEST(TaskHandler, ACopyMayBeDroppedBeforeTheJobRuns) {
    for (const Storing& storing : storings) {
        SCOPED_TRACE(storing.sentence);
        const ProcessCounts before = restingCounts();
        Handled handled;
        Loop loop;
        const auto used = std::make_shared<std::binary_semaphore>(0);
        start(storing.into(loop, [used] { used->acquire(); }), handled, Done::afterwards);
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
    std::vector<std::jthread> runners;
    for (int thread = 0; thread < threads; ++thread)
        runners.emplace_back([&together, job] {
            together.arrive_and_wait();
            job();
        });
    runners.clear();
    job();
    EXPECT_EQ(handled.value, 1);
}

// The loop clears its queue while the handler runs, for example because the application closes.
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
