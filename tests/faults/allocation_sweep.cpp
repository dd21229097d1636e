// SPDX-License-Identifier: Apache-2.0

#include "faults/allocation_sweep.hpp"

#include <cstddef>
#include <iostream>
#include <new>
#include <optional>
#include <system_error>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "support/child_counts.hpp"
#include "support/failing_allocation.hpp"
#include "tooling/process/resting_counts.hpp"

namespace kinovane::test {

namespace {

/// What came of an attempt. Nothing here allocates, because the allocations may still be failing.
enum class Ending { returned, outOfMemory, libraryError, undocumented };

Ending endingOf(const std::function<void()>& operation) {
    try {
        operation();
        return Ending::returned;
    } catch (const std::bad_alloc&) {
        return Ending::outOfMemory;
    } catch (const std::system_error&) {
        return Ending::libraryError;
    } catch (const FilmProjectError&) {
        return Ending::libraryError;
    } catch (const VistrelHandoffError&) {
        return Ending::libraryError;
    } catch (const FilmToolError&) {
        return Ending::libraryError;
    } catch (...) {
        return Ending::undocumented;
    }
}

struct Attempt {
    Ending ending;
    bool struck;
};

Attempt attemptWith(const std::function<void()>& operation, std::size_t index, std::size_t times) {
    const FailingAllocation failure(index, times);
    const Ending ending = endingOf(operation);
    return {ending, failure.struck()};
}

} // namespace

void AllocationSweep::run() const {
    SCOPED_TRACE(path);
    prepare();
    operation(); // What is made once, at the first use, exists from now on.
    const ProcessCounts before = restingCounts();

    std::size_t attempts = 0;
    for (const std::size_t times : {std::size_t{1}, FailingAllocation::forever}) {
        bool struck = true;
        for (std::size_t index = 0; struck && !testing::Test::HasFailure(); ++index) {
            SCOPED_TRACE((times == 1 ? "only allocation " : "from allocation ") + std::to_string(index));
            prepare();
            const Attempt attempt = attemptWith(operation, index, times);
            struck = attempt.struck;
            attempts += struck ? 1 : 0;
            EXPECT_NE(attempt.ending, Ending::undocumented);
            EXPECT_TRUE(struck || attempt.ending == Ending::returned);
            check(attempt.ending == Ending::returned);
            const ProcessCounts after = settledCounts(before);
            EXPECT_EQ(after.descriptors, before.descriptors);
            EXPECT_EQ(after.threads, before.threads);
            EXPECT_EQ(after.children, before.children);
        }
    }
    EXPECT_GT(attempts, 0U) << "no allocation was seen";
    std::cout << "[ FAULTS   ] " << path << ": " << attempts << " allocations failed" << std::endl;
}

} // namespace kinovane::test
