// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/stop.hpp>

#include "session/console.hpp"
#include "session/exit_status.hpp"

namespace kinovane::tool {

/// What every command needs: where to write, and how to learn that it should stop.
struct Session {
    const Console& console;
    StopToken stop;
};

} // namespace kinovane::tool
