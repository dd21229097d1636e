// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace simulator::film {

/// The content of a file of media/ or templates/, which are compiled into the program.
std::string_view embeddedFile(std::string_view name);

} // namespace simulator::film
