// SPDX-License-Identifier: Apache-2.0

#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include "tooling/process/operation.hpp"
#include "tooling/process/resting_counts.hpp"

namespace kinovane::test {

namespace {

TEST(Task, MayBeMoved) {
    Gate gate;
    Task<int> first = startBehind(gate, 1);
    Task<int> second(std::move(first));
    EXPECT_FALSE(second.done());
    Task<int> third = startTask<int>([] { return 3; });
    third = std::move(second);
    EXPECT_TRUE(second.done()); // NOLINT(bugprone-use-after-move)
    EXPECT_FALSE(third.done());
    gate.open();
    EXPECT_EQ(third.get(), 1);
    EXPECT_THROW((void)first.get(), std::logic_error);  // NOLINT(bugprone-use-after-move)
    EXPECT_THROW((void)second.get(), std::logic_error); // NOLINT(bugprone-use-after-move)
}

TEST(Task, MayBePassedToAnotherThread) {
    Gate gate;
    Task<int> task = startBehind(gate, 1);
    std::future<int> result =
        std::async(std::launch::async, [task = std::move(task)]() mutable { return task.get(); });
    gate.open();
    EXPECT_EQ(result.get(), 1);
}

TEST(Task, MayHaveAMoveOnlyResult) {
    struct Unusual {
        explicit Unusual(int number) : owned(std::make_unique<int>(number)) {}
        std::unique_ptr<int> owned;
    };
    EXPECT_EQ(*startTask<Unusual>([] { return Unusual(7); }).get().owned, 7);
}

// Resources of the operation, such as open files, are free when its result arrives.
TEST(Task, DestroysItsOperationBeforeItIsDone) {
    for (int run = 0; run < 100; ++run) {
        auto held = std::make_shared<int>(1);
        const std::weak_ptr<int> watched = held;
        Task<int> task = startTask<int>([held = std::move(held)] { return *held; });
        waitUntilDone(task);
        EXPECT_TRUE(watched.expired());
        EXPECT_EQ(task.get(), 1);
    }
}

TEST(Task, FinishesWhenDropped) {
    const ProcessCounts before = restingCounts();
    Gate gate;
    std::promise<void> reached;
    {
        const Task<int> dropped = startTask<int>([passed = gate.pass(), &reached]() -> int {
            passed.wait();
            reached.set_value();
            throw std::runtime_error("ignored");
        });
    }
    gate.open();
    reached.get_future().wait();
    EXPECT_EQ(settledCounts(before), before);
}

// The caller may unload the library after `get`, so the thread must have ended, too.
TEST(Task, LeavesNoThreadAfterGet) {
    const ProcessCounts before = restingCounts();
    for (int run = 0; run < 500; ++run)
        EXPECT_EQ(startTask<int>([run] { return run; }).get(), run);
    EXPECT_EQ(settledCounts(before), before);
}

} // namespace

} // namespace kinovane::test
