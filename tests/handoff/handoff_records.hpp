// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include <kinovane/handoff.hpp>

#include "support/record_rows.hpp"

namespace kinovane::test {

RecordRow shotRow();
RecordRow handoffRow();

/// The records of the module.
std::vector<RecordRow> handoffRecords();

/// The handoff in which every key of `handoffRow` has its value.
VistrelHandoff fullHandoff();

/// Compact JSON of an asset, and of a shot whose take is this text; empty for no take.
std::string assetOf(const std::string& id);
std::string shotOfTake(const std::string& take);

} // namespace kinovane::test
