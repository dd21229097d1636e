// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/handoff.hpp>

#include "common/text_buffer.hpp"

namespace kinovane {

/// The manifest as it is stored: pretty-printed JSON. Throws JSONEncodingError.
TextBuffer documentOf(const VistrelHandoff& handoff);

} // namespace kinovane
