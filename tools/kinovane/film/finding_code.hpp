// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

#include <kinovane/preflight.hpp>

namespace kinovane::tool {

/// The word for the code in JSON, such as "clipMissing".
std::string_view nameOf(PreflightCode code);

} // namespace kinovane::tool
