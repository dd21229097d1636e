// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane {

/// Whether artifacts of this kind go into the handoff. Kinds are compared exactly.
bool isExportedKind(std::string_view kind);

} // namespace kinovane
