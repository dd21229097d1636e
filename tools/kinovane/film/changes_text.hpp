// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>

#include <boost/json.hpp>

#include <kinovane/film_changes.hpp>

namespace kinovane::tool {

/// What changed, a line for each subject; "Nothing changed." when there is nothing.
std::string changesText(const FilmChanges& changes, std::size_t columns);

/// {"phase", "status", "approvals", "shots", "plannedShots", "artifacts", "issues", "proofSteps"}. A change
/// is
/// {"before", "after"}, in a list together with the "id"; what is absent is null.
boost::json::object changesJSON(const FilmChanges& changes);

} // namespace kinovane::tool
