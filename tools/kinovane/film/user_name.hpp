// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace kinovane::tool {

/// The current user's name in the user database; the environment is ignored. Throws CommandError (`usage`)
/// when the database has none.
std::string userName();

} // namespace kinovane::tool
