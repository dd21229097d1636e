// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include <kinovane/tooling.hpp>

#include "support/record_rows.hpp"

namespace kinovane::test {

RecordRow statusRow();
RecordRow exportReceiptRow();
RecordRow launchSpecRow();

/// The records that are read from replies.
std::vector<RecordRow> replyRecords();

/// The records in which every key of the row has its value.
FilmStatusResponse fullStatus();
FilmVistrelExportReceipt fullExportReceipt();
PiAgentLaunchSpec fullLaunchSpec();

/// A reply to `plan` with this run manifest, among much that nobody asked for.
std::string planReply(const std::string& runManifest);

} // namespace kinovane::test
