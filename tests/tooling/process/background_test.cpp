// SPDX-License-Identifier: Apache-2.0

#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include <gmock/gmock.h>

#include <kinovane/background.hpp>

namespace kinovane::test {
namespace {

using testing::ElementsAre;

TEST(Background, RunsAFunctionOnAnotherThread) {
    Task<std::thread::id> task = runInBackground([] { return std::this_thread::get_id(); });
    EXPECT_NE(task.get(), std::this_thread::get_id());
}

TEST(Background, PassesResultsAndErrors) {
    EXPECT_EQ(runInBackground([] { return std::string("result"); }).get(), "result");
    runInBackground([] {}).get();
    EXPECT_EQ(
        *runInBackground([value = std::make_unique<int>(7)]() mutable { return std::move(value); }).get(), 7);
    Task<int> failing = runInBackground([]() -> int { throw std::runtime_error("reason"); });
    try {
        failing.get();
        FAIL() << "no error";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "reason");
    }
}

TEST(Task, IsReadyOrFailedFromTheStart) {
    Task<std::string> ready = Task<std::string>::ready("value");
    EXPECT_TRUE(ready.done());
    EXPECT_EQ(ready.get(), "value");
    Task<void>::ready().get();
    Task<int> failed = Task<int>::failed(std::make_exception_ptr(std::runtime_error("reason")));
    EXPECT_TRUE(failed.done());
    EXPECT_THROW(failed.get(), std::runtime_error);
}

TEST(Task, WaitsWithoutTakingTheResult) {
    Task<int> task = runInBackground([] { return 5; });
    task.wait();
    EXPECT_TRUE(task.done());
    task.wait();
    EXPECT_EQ(task.get(), 5);
    task.wait();
}

TEST(WhenAll, GivesTheResultsInOrder) {
    std::promise<void> second;
    std::vector<Task<int>> tasks;
    tasks.push_back(runInBackground([&] {
        second.get_future().wait();
        return 1;
    }));
    tasks.push_back(runInBackground([&] {
        second.set_value();
        return 2;
    }));
    EXPECT_THAT(whenAll(std::move(tasks)).get(), ElementsAre(1, 2));
    EXPECT_TRUE(whenAll(std::vector<Task<int>>()).get().empty());
}

TEST(WhenAll, WaitsForEveryTaskAndThrowsTheFirstError) {
    std::promise<void> gate;
    bool last = false;
    std::vector<Task<void>> tasks;
    tasks.push_back(runInBackground([&] {
        gate.get_future().wait();
        throw std::runtime_error("first");
    }));
    tasks.push_back(runInBackground([] { throw std::logic_error("second"); }));
    tasks.push_back(runInBackground([&] {
        gate.set_value();
        last = true;
    }));
    Task<void> all = whenAll(std::move(tasks));
    EXPECT_THROW(all.get(), std::runtime_error);
    EXPECT_TRUE(last);
}

TEST(WhenAll, JoinsTasksOfDifferentResults) {
    const auto [number, text] =
        whenAll(runInBackground([] { return 3; }), Task<std::string>::ready("three")).get();
    EXPECT_EQ(number, 3);
    EXPECT_EQ(text, "three");
    EXPECT_THROW(whenAll(Task<int>::failed(std::make_exception_ptr(std::runtime_error("x"))),
                         Task<std::string>::ready("y"))
                     .get(),
                 std::runtime_error);
}

} // namespace
} // namespace kinovane::test
