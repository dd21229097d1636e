// SPDX-License-Identifier: Apache-2.0

#include "faults/fault_sweep.hpp"

#include <algorithm>
#include <iostream>
#include <set>

#include <gtest/gtest.h>

#include "faults/fault_table.hpp"
#include "support/child_counts.hpp"
#include "tooling/process/resting_counts.hpp"

namespace kinovane::test {

namespace {

std::string nameOf(std::size_t kind) { return std::string(callNames.at(kind)); }

std::string listOf(const CallCounts& counts) {
    std::string text;
    for (std::size_t kind = 0; kind < counts.size(); ++kind)
        if (counts[kind] != 0)
            text += (text.empty() ? "" : ", ") + std::to_string(counts[kind]) + " " + nameOf(kind);
    return text;
}

/// Every expected call has to be made, and every call that is made needs a row in the fault table.
void checkCounts(const CallCounts& counts, const std::vector<Call>& expected) {
    for (const Call call : expected)
        EXPECT_GT(counts.at(static_cast<std::size_t>(call)), 0U)
            << nameOf(static_cast<std::size_t>(call)) << " was not called, or not seen";
    for (std::size_t kind = 0; kind < counts.size(); ++kind)
        EXPECT_TRUE(counts[kind] == 0 || std::any_of(faultTable().begin(), faultTable().end(),
                                                     [&](const FaultRow& row) {
                                                         return static_cast<std::size_t>(row.call) == kind;
                                                     }))
            << nameOf(kind) << " was called, but has no row in the fault table";
}

void record(const std::string& operation, std::size_t faults, std::size_t missed, const CallCounts& counts) {
    std::string key;
    for (const char letter : operation)
        key += letter == ' ' ? '_' : letter;
    testing::Test::RecordProperty(key, std::to_string(faults));
    std::cout << "[ FAULTS   ] " << operation << ": " << faults << " faults";
    if (missed != 0)
        std::cout << " (" << missed << " of them at calls that were not made in that run)";
    std::cout << ", at " << listOf(counts) << std::endl;
}

} // namespace

void FaultSweep::run() const {
    SCOPED_TRACE(name);
    prepare();
    (void)outcomeOf(operation); // Allocates what is only made once, at the first use.
    const ProcessCounts before = restingCounts();

    prepare();
    CallCounts counts{};
    Outcome expected;
    {
        const FaultPlan none;
        expected = outcomeOf(operation);
        counts = none.counts();
    }
    EXPECT_NE(expected.kind, Outcome::Kind::undocumented) << expected.text;
    checkCounts(counts, expectedCalls);

    std::vector<Fault> faults = faultsAt(counts);
    faults.insert(faults.end(), moreFaults.begin(), moreFaults.end());
    std::size_t missed = 0;
    std::set<Call> reached;
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.description());
        prepare();
        Outcome outcome;
        bool happened = false;
        {
            const FaultPlan plan({fault});
            outcome = outcomeOf(operation);
            happened = plan.happened();
        }
        if (happened)
            reached.insert(fault.call);
        else
            ++missed;
        EXPECT_NE(outcome.kind, Outcome::Kind::undocumented) << outcome.text;
        if (!happened || fault.harmless() || (oneResult && outcome.kind == Outcome::Kind::result))
            EXPECT_TRUE(outcome == expected) << outcome.text;
        if (happened)
            check(fault, outcome);
        const ProcessCounts after = settledCounts(before, std::chrono::seconds(2));
        EXPECT_EQ(after.descriptors, before.descriptors);
        EXPECT_EQ(after.threads, before.threads);
        EXPECT_EQ(after.children, before.children);
    }
    if (repeatable)
        EXPECT_EQ(missed, 0U);
    for (const Call call : expectedCalls)
        EXPECT_TRUE(reached.contains(call)) << nameOf(static_cast<std::size_t>(call)) << " never failed";
    record(name, faults.size(), missed, counts);
}

} // namespace kinovane::test
