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

std::string listOf(const Census& census) {
    std::string text;
    for (std::size_t kind = 0; kind < census.size(); ++kind)
        if (census[kind] != 0)
            text += (text.empty() ? "" : ", ") + std::to_string(census[kind]) + " " + nameOf(kind);
    return text;
}

/// Every call that is made has to be tried, and every one that is known of has to be made.
void checkCensus(const Census& census, const std::vector<Call>& expected) {
    for (const Call call : expected)
        EXPECT_GT(census.at(static_cast<std::size_t>(call)), 0U)
            << nameOf(static_cast<std::size_t>(call)) << " was not called, or not seen";
    for (std::size_t kind = 0; kind < census.size(); ++kind)
        EXPECT_TRUE(census[kind] == 0 || std::any_of(faultTable().begin(), faultTable().end(),
                                                     [&](const FaultRow& row) {
                                                         return static_cast<std::size_t>(row.call) == kind;
                                                     }))
            << nameOf(kind) << " was called, but no fault of it is known";
}

void record(const std::string& path, std::size_t faults, std::size_t missed, const Census& census) {
    std::string key;
    for (const char letter : path)
        key += letter == ' ' ? '_' : letter;
    testing::Test::RecordProperty(key, std::to_string(faults));
    std::cout << "[ FAULTS   ] " << path << ": " << faults << " faults tried";
    if (missed != 0)
        std::cout << " (" << missed << " of them at calls that were not made this time)";
    std::cout << ", at " << listOf(census) << std::endl;
}

} // namespace

void FaultSweep::run() const {
    SCOPED_TRACE(path);
    prepare();
    (void)outcomeOf(operation); // Whatever is only made once, at the first use, is there from now on.
    const ProcessCounts before = restingCounts();

    prepare();
    Census census{};
    Outcome sound;
    {
        const FaultPlan none;
        sound = outcomeOf(operation);
        census = none.census();
    }
    EXPECT_NE(sound.kind, Outcome::Kind::undocumented) << sound.text;
    checkCensus(census, expectedCalls);

    std::vector<Fault> faults = faultsAt(census);
    faults.insert(faults.end(), moreFaults.begin(), moreFaults.end());
    std::size_t missed = 0;
    std::set<Call> reached;
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.description());
        prepare();
        Outcome outcome;
        bool struck = false;
        {
            const FaultPlan plan({fault});
            outcome = outcomeOf(operation);
            struck = plan.struck();
        }
        if (struck)
            reached.insert(fault.call);
        else
            ++missed;
        EXPECT_NE(outcome.kind, Outcome::Kind::undocumented) << outcome.text;
        if (!struck || fault.harmless() || (oneResult && outcome.kind == Outcome::Kind::result))
            EXPECT_TRUE(outcome == sound) << outcome.text;
        if (struck)
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
    record(path, faults.size(), missed, census);
}

} // namespace kinovane::test
