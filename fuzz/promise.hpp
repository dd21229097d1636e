// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane::fuzz {

/// Aborts when `kept` is false, so that libFuzzer saves the input. Prints `what` and `detail`, with every
/// byte of `detail` that is not printable ASCII as a number.
void promise(bool kept, std::string_view what, std::string_view detail = {});

} // namespace kinovane::fuzz
