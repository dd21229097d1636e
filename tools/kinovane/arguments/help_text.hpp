// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>

namespace CLI {
class App;
}

namespace kinovane::tool {

/// The help of `command`, or of the tool when that is `app`, for a terminal of this width.
std::string helpText(const CLI::App& app, const CLI::App& command, std::size_t columns);

} // namespace kinovane::tool
