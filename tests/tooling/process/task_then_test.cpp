// SPDX-License-Identifier: Apache-2.0

#include <functional>
#include <future>
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

TEST(TaskThen, RunsTheHandlerThroughTheExecutor) {
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
        std::thread::id handledOn;
        int value = 0;
        task.then(loop.executor(), [&](Task<int> finished) {
            handledOn = std::this_thread::get_id();
            EXPECT_TRUE(finished.done());
            value = finished.get();
            EXPECT_THROW((void)finished.get(), std::logic_error);
        });
        EXPECT_EQ(loop.waiting(), row.doneBefore ? 1U : 0U);
        EXPECT_TRUE(task.done());
        if (!row.doneBefore)
            gate.open();
        const std::function<void()> job = loop.next();
        EXPECT_EQ(value, 0) << "the handler ran before the job";
        job();
        EXPECT_EQ(value, 5);
        EXPECT_EQ(handledOn, std::this_thread::get_id());
        EXPECT_EQ(loop.waiting(), 0U);
    }
}

// A handler may own parts of a user interface, which only one thread may use and destroy.
TEST(TaskThen, DestroysTheHandlerOnTheThreadThatRanIt) {
    for (int run = 0; run < 300; ++run) {
        Loop loop;
        std::thread::id handlerDestroyedOn;
        std::thread::id resultDestroyedOn;
        Task<std::shared_ptr<DestructionRecorder>> task = startTask<std::shared_ptr<DestructionRecorder>>(
            [&] { return std::make_shared<DestructionRecorder>(resultDestroyedOn); });
        if (run % 2 == 0)
            waitUntilDone(task);
        task.then(loop.executor(),
                  [recorder = std::make_unique<DestructionRecorder>(handlerDestroyedOn)](
                      Task<std::shared_ptr<DestructionRecorder>> finished) { (void)finished.get(); });
        EXPECT_EQ(handlerDestroyedOn, std::thread::id());
        loop.runNext();
        ASSERT_EQ(handlerDestroyedOn, std::this_thread::get_id());
        ASSERT_EQ(resultDestroyedOn, std::this_thread::get_id());
    }
}

TEST(TaskThen, DestroysTheHandlerOnTheThreadThatDropsTheJob) {
    for (int run = 0; run < 100; ++run) {
        Loop loop;
        std::thread::id destroyedOn;
        startTask<int>([] { return 5; })
            .then(loop.executor(), [recorder = std::make_unique<DestructionRecorder>(destroyedOn)](
                                       Task<int> /*finished*/) { ADD_FAILURE() << "the handler ran"; });
        std::function<void()> job = loop.next();
        EXPECT_EQ(destroyedOn, std::thread::id());
        job = nullptr;
        ASSERT_EQ(destroyedOn, std::this_thread::get_id());
    }
}

TEST(TaskThen, DestroysTheHandlerIfTheExecutorDropsTheJob) {
    const ProcessCounts before = restingCounts();
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    std::promise<void> dropped;
    Gate gate;
    startBehind(gate, 5).then(
        [&](const std::function<void()>& /*job*/) { dropped.set_value(); },
        [held = std::move(held)](Task<int> /*finished*/) { ADD_FAILURE() << "the handler ran"; });
    gate.open();
    dropped.get_future().wait();
    EXPECT_EQ(settledCounts(before), before);
    EXPECT_TRUE(watched.expired());
}

TEST(TaskThen, RunsTheHandlerInAnInlineExecutor) {
    const Executor atOnce = [](const std::function<void()>& job) { job(); };
    Task<int> done = startTask<int>([] { return 5; });
    waitUntilDone(done);
    int early = 0;
    done.then(atOnce, [&](Task<int> finished) { early = finished.get(); });
    EXPECT_EQ(early, 5);

    Gate gate;
    std::promise<std::pair<int, std::thread::id>> late;
    startBehind(gate, 6).then(
        atOnce, [&](Task<int> finished) { late.set_value({finished.get(), std::this_thread::get_id()}); });
    gate.open();
    const auto [value, thread] = late.get_future().get();
    EXPECT_EQ(value, 6);
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(TaskThen, AcceptsAMutableMoveOnlyHandler) {
    Loop loop;
    int handled = 0;
    startTask<int>([] {
        return 5;
    }).then(loop.executor(), [owned = std::make_unique<int>(1), &handled](Task<int> finished) mutable {
        *owned += finished.get();
        handled = *owned;
    });
    loop.runNext();
    EXPECT_EQ(handled, 6);
}

TEST(TaskThen, AcceptsAHandlerThatIgnoresItsTask) {
    const ProcessCounts before = restingCounts();
    Loop loop;
    bool handled = false;
    startTask<int>([]() -> int {
        throw std::runtime_error("ignored");
    }).then(loop.executor(), [&](const Task<int>& /*finished*/) { handled = true; });
    loop.runNext();
    EXPECT_TRUE(handled);
    EXPECT_EQ(settledCounts(before), before);
}

TEST(TaskThen, AcceptsAHandlerThatStartsAnOperation) {
    Loop loop;
    std::vector<int> order;
    startTask<int>([] { return 1; }).then(loop.executor(), [&](Task<int> first) {
        order.push_back(first.get());
        startTask<int>([] { return 2; }).then(loop.executor(), [&](Task<int> second) {
            order.push_back(second.get());
        });
    });
    loop.runNext();
    EXPECT_EQ(order, std::vector<int>{1});
    loop.runNext();
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

// A window that owns its task closes in the handler.
TEST(TaskThen, AcceptsAHandlerThatDestroysItsTask) {
    const ProcessCounts before = restingCounts();
    for (const bool doneBefore : {false, true}) {
        SCOPED_TRACE(doneBefore ? "done already" : "not done yet");
        Loop loop;
        Gate gate;
        auto task = std::make_unique<Task<std::string>>(startBehind(gate, std::string(100, 'x')));
        if (doneBefore) {
            gate.open();
            waitUntilDone(*task);
        }
        std::string handled;
        task->then(loop.executor(), [&](Task<std::string> finished) {
            task.reset();
            handled = finished.get();
            finished =
                Task<std::string>::ready(std::string()); // Releases the last reference to the operation.
        });
        if (!doneBefore)
            gate.open();
        loop.runNext();
        EXPECT_EQ(task, nullptr);
        EXPECT_EQ(handled, std::string(100, 'x'));
    }
    EXPECT_EQ(settledCounts(before), before);
}

TEST(TaskThen, RunsManyHandlersThroughOneExecutor) {
    const ProcessCounts before = restingCounts();
    constexpr int tasks = 100;
    Loop loop;
    std::vector<int> handled(tasks, 0);
    for (int number = 0; number < tasks; ++number)
        startTask<int>([number] { return number; }).then(loop.executor(), [&](Task<int> finished) {
            ++handled[static_cast<std::size_t>(finished.get())];
        });
    for (int number = 0; number < tasks; ++number)
        loop.runNext();
    EXPECT_EQ(handled, std::vector<int>(tasks, 1));
    EXPECT_EQ(loop.waiting(), 0U);
    EXPECT_EQ(settledCounts(before), before);
}

// The task has a copy of the executor, which is destroyed when the operation is done.
TEST(TaskThen, ReleasesTheExecutor) {
    const ProcessCounts before = restingCounts();
    auto held = std::make_shared<Loop>();
    const std::weak_ptr<Loop> watched = held;
    Loop& loop = *held;
    startTask<int>([] { return 5; })
        .then([held, post = loop.executor()](std::function<void()> job) { post(std::move(job)); },
              [](Task<int> finished) { EXPECT_EQ(finished.get(), 5); });
    loop.runNext();
    held.reset();
    EXPECT_EQ(settledCounts(before), before);
    EXPECT_TRUE(watched.expired());
}

} // namespace

} // namespace kinovane::test
