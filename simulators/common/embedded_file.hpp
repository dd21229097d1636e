// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace simulator {

/// The content of a file that the build compiles into the program.
std::string_view embeddedFile(std::string_view name);

} // namespace simulator
