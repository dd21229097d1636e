// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "faults/fault_plan.hpp"

namespace kinovane::test {

/// The faults of one kind of call.
struct FaultRow {
    Call call;
    std::vector<int> refusals;
    std::vector<int> lateReports;
    bool canBeShort = false;
};

/// One row for each kind of call. For a call that queries a file, "does not exist" is not a fault and not in
/// the table.
const std::vector<FaultRow>& faultTable();

/// Every fault of the table, at every one of these calls.
std::vector<Fault> faultsAt(const CallCounts& counts);

} // namespace kinovane::test
