// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "documents.hpp"

namespace simulator::film {

/// Adds a note about a shot. One with an archived take is an order for a new one; the shot then also has an
/// issue until the new take is there.
void addRequest(json::object& project, const std::string& shotId, const std::string& note,
                const std::string& recordedAt, std::optional<std::int64_t> archivedTake);

/// Whether that note waits for an answer already.
bool isRequested(const json::object& project, const std::string& shotId, const std::string& note);

/// A new take of the shot answers all notes about it.
void applyRequests(json::object& project, const std::string& shotId, const std::string& appliedAt);

} // namespace simulator::film
