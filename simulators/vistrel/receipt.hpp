// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/record.hpp"

namespace simulator::vistrel {

/// The importer's reply for an accepted film; the same for a dry run and for the import itself.
json::object receiptFor(const json::object& manifest);

/// The project id of a film and the name of its folder. It depends on the id of the film's own project only;
/// two such ids never get the same. It is safe as a file name.
std::string projectIdFor(const json::object& manifest);

/// The scene of each shot, counted from 1. Consecutive shots at one location are one scene.
std::vector<std::int64_t> sceneNumbers(const json::array& shots);

} // namespace simulator::vistrel
