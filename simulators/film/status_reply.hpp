// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "workspace.hpp"

namespace simulator::film {

/// Where the film stands, computed from its documents.
json::object statusOf(const Workspace& workspace);

} // namespace simulator::film
