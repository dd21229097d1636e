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

/// The result of an attempt. Nothing here allocates, because allocations may still fail.
enum class Result { returned, outOfMemory, libraryError, undocumented };

Result resultOf(const std::function<void()>& operation) {
    try {
        operation();
        return Result::returned;
    } catch (const std::bad_alloc&) {
        return Result::outOfMemory;
    } catch (const std::system_error&) {
        return Result::libraryError;
    } catch (const FilmProjectError&) {
        return Result::libraryError;
    } catch (const VistrelHandoffError&) {
        return Result::libraryError;
    } catch (const FilmToolError&) {
        return Result::libraryError;
    } catch (...) {
        return Result::undocumented;
    }
}

struct Attempt {
    Result result;
    bool failed;
};

Attempt attemptWith(const std::function<void()>& operation, std::size_t index, std::size_t times) {
    const FailingAllocation failure(index, times);
    const Result result = resultOf(operation);
    return {result, failure.hasFailed()};
}

} // namespace

void AllocationSweep::run() const {
    SCOPED_TRACE(name);
    prepare();
    operation(); // Allocates what is only made once, at the first use.
    const ProcessCounts before = restingCounts();

    std::size_t attempts = 0;
    for (const std::size_t times : {std::size_t{1}, FailingAllocation::forever}) {
        bool failed = true;
        for (std::size_t index = 0; failed && !testing::Test::HasFailure(); ++index) {
            SCOPED_TRACE((times == 1 ? "only allocation " : "from allocation ") + std::to_string(index));
            prepare();
            const Attempt attempt = attemptWith(operation, index, times);
            failed = attempt.failed;
            attempts += failed ? 1 : 0;
            EXPECT_NE(attempt.result, Result::undocumented);
            EXPECT_TRUE(failed || attempt.result == Result::returned);
            check(attempt.result == Result::returned);
            const ProcessCounts after = settledCounts(before);
            EXPECT_EQ(after.descriptors, before.descriptors);
            EXPECT_EQ(after.threads, before.threads);
            EXPECT_EQ(after.children, before.children);
        }
    }
    EXPECT_GT(attempts, 0U) << "no allocation was seen";
    std::cout << "[ FAULTS   ] " << name << ": " << attempts << " allocations failed" << std::endl;
}

} // namespace kinovane::test
