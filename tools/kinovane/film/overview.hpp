// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>

#include <boost/json.hpp>

#include <kinovane/workspace.hpp>

#include "film/workspace_summary.hpp"

/// The parts that `status` and `inspect` have in common.
namespace kinovane::tool {

/// The title in one line of at most `columns` columns.
std::string titleLine(const std::string& title, std::size_t columns);

/// "7, all accepted" or "4: 2 accepted, 1 failed, 1 without a status".
std::string shotsText(const FilmWorkspaceSnapshot& film, const WorkspaceSummary& summary);

/// {"completed", "total", "missing"}.
boost::json::object proofJSON(const FilmProof& proof, const WorkspaceSummary& summary);

/// {"count", "byStatus", "withoutStatus", "planned", "plannedSeconds"}.
boost::json::object shotsJSON(const FilmWorkspaceSnapshot& film, const WorkspaceSummary& summary);

} // namespace kinovane::tool
