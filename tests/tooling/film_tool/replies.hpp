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

/// The records that the full documents of the rows hold.
FilmStatusResponse fullStatus();
FilmVistrelExportReceipt fullExportReceipt();
PiAgentLaunchSpec fullLaunchSpec();

/// A reply to `plan` with this run manifest, and with keys that are ignored.
std::string planReply(const std::string& runManifest);

} // namespace kinovane::test
