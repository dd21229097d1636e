// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane::fuzz {

/// Ends the process, so that the input is kept, unless the library kept its promise. `detail` is printed with
/// every byte that is not plain text as a number.
void promise(bool kept, std::string_view what, std::string_view detail = {});

} // namespace kinovane::fuzz
