// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "faults/fault_plan.hpp"
#include "faults/outcome.hpp"

namespace kinovane::test {

/// An operation whose calls to the system are made to fail, one after the other.
struct FaultSweep {
    std::string path; ///< How the record names the operation.
    std::function<std::string()> operation;
    /// The calls that the operation is known to make; if one is missing, it would go untried.
    std::vector<Call> expectedCalls;
    /// Makes everything as it was, before each attempt.
    std::function<void()> prepare = [] {};
    /// What has to hold after a fault, beside what always has to.
    std::function<void(const Fault& fault, const Outcome& outcome)> check = [](const auto&, const auto&) {};
    /// Whether there is one result only, and anything else an error. If not, `check` judges the results.
    bool oneResult = true;
    /// Whether the same calls are made every time.
    bool repeatable = true;
    /// Faults beside those of the table.
    std::vector<Fault> moreFaults = {};

    /// Runs the operation once without a fault, and once for each fault at each of its calls. What always has
    /// to hold: an interruption or a short count changes nothing; otherwise the outcome is the same, or a
    /// documented error; and no descriptor, thread or child is left.
    void run() const;
};

} // namespace kinovane::test
