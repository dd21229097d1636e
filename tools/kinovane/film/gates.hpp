// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <vector>

#include <kinovane/film_project.hpp>

namespace kinovane::tool {

/// An approval gate and its name.
struct Gate {
    std::string name;
    FilmApproval approval;

    bool operator==(const Gate&) const = default;
};

/// The gates in the order in which the project asks for them: those whose approval was requested, by the time
/// of the request; then the others, by the position of the first department task whose phase has the name of
/// the gate; then by name.
std::vector<Gate> gatesInOrder(const FilmProject& project);

/// Whether the gate waits for a decision: its approval was requested, and its status is that of a request.
bool isWaiting(const FilmApproval& approval);

/// The gate that waits for an approval, the first of several. If the project's status says that it waits and
/// no approval was requested: the gate of the present phase.
std::optional<std::string> waitingGate(const FilmProject& project);

} // namespace kinovane::tool
