// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "faults/fault_plan.hpp"
#include "faults/outcome.hpp"

namespace kinovane::test {

/// Runs an operation many times, with a fault at each of its system calls in turn.
struct FaultSweep {
    std::string name; ///< Of the operation, for the output.
    std::function<std::string()> operation;
    /// The calls that the operation must make, so that none of them goes untested unnoticed.
    std::vector<Call> expectedCalls;
    /// Restores the initial state before each attempt.
    std::function<void()> prepare = [] {};
    /// Additional checks after a fault.
    std::function<void(const Fault& fault, const Outcome& outcome)> check = [](const auto&, const auto&) {};
    /// Whether every success must give the same result. If not, `check` checks the results.
    bool oneResult = true;
    /// Whether every run makes the same calls.
    bool repeatable = true;
    /// Faults in addition to those of the fault table.
    std::vector<Fault> moreFaults = {};

    /// Runs the operation once without a fault, and once for each fault at each of its calls. Always checked:
    /// an interruption or a short count has no effect; otherwise the outcome is the same or a documented
    /// error; and no descriptor, thread or child is left.
    void run() const;
};

} // namespace kinovane::test
