// SPDX-License-Identifier: Apache-2.0

// The awaitables that `on` and `operator co_await` return.

#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tooling/process/coroutine.hpp"
#include "tooling/process/operation.hpp"
#include "tooling/process/resting_counts.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {

namespace {

const std::string taken = "logic_error: the result of this task was already taken";

void runInline(const std::function<void()>& job) { job(); }

/// Awaits `awaitable` twice and records both outcomes.
template <class Awaitable>
Coroutine awaitTwice(Awaitable awaitable, std::vector<std::string>& outcomes) {
    for (int attempt = 0; attempt < 2; ++attempt)
        try {
            outcomes.push_back(co_await awaitable);
        } catch (...) {
            outcomes.push_back(describe(std::current_exception()));
        }
}

TEST(TaskAwaitable, ReturnsItsResultOnce) {
    struct Operation {
        const char* sentence;
        std::string (*run)();
        const char* expected;
    };
    const std::vector<Operation> operations{
        {"a value", [] { return std::string("done"); }, "done"},
        {"an error", []() -> std::string { throw std::runtime_error("broken"); }, "exception: broken"},
    };
    using Outcomes = std::vector<std::string>;
    struct Row {
        const char* sentence;
        Coroutine (*await)(Task<std::string> task, Outcomes& outcomes);
    };
    const std::vector<Row> rows{
        {"without an executor",
         [](Task<std::string> task, Outcomes& outcomes) {
             return awaitTwice(std::move(task).operator co_await(), outcomes);
         }},
        {"through an executor",
         [](Task<std::string> task, Outcomes& outcomes) { return awaitTwice(task.on(runInline), outcomes); }},
    };
    for (const Operation& operation : operations)
        for (const Row& row : rows)
            for (const bool doneBefore : {false, true}) {
                SCOPED_TRACE(std::string(operation.sentence) + " " + row.sentence +
                             (doneBefore ? ", done before" : ", done afterwards"));
                Gate gate;
                Task<std::string> task = startTask<std::string>([passed = gate.pass(), &operation] {
                    passed.wait();
                    return operation.run();
                });
                if (doneBefore) {
                    gate.open();
                    waitUntilDone(task);
                }
                Outcomes outcomes;
                Coroutine coroutine = row.await(std::move(task), outcomes);
                if (!doneBefore)
                    gate.open();
                coroutine.wait();
                EXPECT_EQ(outcomes, (Outcomes{operation.expected, taken}));
            }
}

template <class Awaitable>
Coroutine awaitReference(Awaitable& awaitable, std::string& outcome) {
    try {
        outcome = co_await awaitable;
    } catch (...) {
        outcome = describe(std::current_exception());
    }
}

TEST(TaskAwaitable, SuspendsOnlyOneCoroutine) {
    Gate gate;
    Loop loop;
    auto awaitable = startBehind(gate, std::string("done")).on(loop.executor());
    std::string first;
    std::string second;
    Coroutine suspended = awaitReference(awaitable, first);
    const Coroutine refused = awaitReference(awaitable, second);
    EXPECT_EQ(second, taken);
    gate.open();
    loop.runNext();
    suspended.wait();
    EXPECT_EQ(first, "done");
}

TEST(TaskAwaitable, ThrowsAfterItWasMoved) {
    auto moved = startTask<std::string>([] { return std::string("done"); }).on(runInline);
    auto awaitable = std::move(moved);
    std::string first;
    std::string second;
    const Coroutine refused = awaitReference(moved, first); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(first, taken);
    Coroutine coroutine = awaitReference(awaitable, second);
    coroutine.wait();
    EXPECT_EQ(second, "done");
}

TEST(TaskAwaitable, MayBeDestroyedWithoutBeingAwaited) {
    const ProcessCounts before = restingCounts();
    Gate gate;
    Loop loop;
    {
        Task<int> task = startBehind(gate, 5);
        const auto awaitable = task.on(loop.executor());
        EXPECT_TRUE(task.done());
        EXPECT_THROW((void)task.get(), std::logic_error);
    }
    gate.open();
    EXPECT_EQ(settledCounts(before), before);
    EXPECT_EQ(loop.waiting(), 0U);
}

/// Counts the objects that exist.
class Counted {
  public:
    explicit Counted(std::atomic<int>& objects) : objects_(&objects) { ++*objects_; }
    Counted(const Counted& other) : objects_(other.objects_) { ++*objects_; }
    Counted& operator=(const Counted&) = delete;
    ~Counted() { --*objects_; }
    void use() const {}

  private:
    std::atomic<int>* objects_;
};

// g++ 12 needs braced lists and lambdas with captures in statements before the co_await.
Coroutine awaitWhatWasMadeBefore(const FilmToolClient& film, std::atomic<int>& objects, std::string& output) {
    const Counted counted(objects);
    auto listed = film.run({"out", "a list"}, {{"KINOVANE_TEST", "1"}});
    output = (co_await std::move(listed)).stdout;
    auto named = film.run({"out", ", a closure"});
    const auto executor = [counted](const std::function<void()>& job) {
        counted.use();
        job();
    };
    output += (co_await named.on(executor)).stdout;
    auto awaitable = film.run({"out", ", an awaitable"}).on([counted](const std::function<void()>& job) {
        counted.use();
        job();
    });
    output += (co_await awaitable).stdout;
}

TEST(TaskAwaitable, AcceptsArgumentsMadeInAnEarlierStatement) {
    const ProcessCounts before = restingCounts();
    std::atomic<int> objects = 0;
    std::string output;
    {
        const FilmToolClient film(testProgramPath());
        Coroutine coroutine = awaitWhatWasMadeBefore(film, objects, output);
        coroutine.wait();
    }
    EXPECT_EQ(output, "a list, a closure, an awaitable");
    EXPECT_EQ(settledCounts(before), before);
    EXPECT_EQ(objects, 0);
}

} // namespace

} // namespace kinovane::test
