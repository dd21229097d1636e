// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "faults/fault_plan.hpp"

namespace kinovane::test {

/// How one kind of call can go wrong.
struct FaultRow {
    Call call;
    std::vector<int> refusals;
    std::vector<int> lateReports;
    bool canBeShort = false;
};

/// One row for each kind of call. Where a call asks what is there, an answer that nothing is there is no
/// fault, and not in the table.
const std::vector<FaultRow>& faultTable();

/// Every fault of the table, at every one of these calls.
std::vector<Fault> faultsAt(const Census& census);

} // namespace kinovane::test
