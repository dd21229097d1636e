// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>

namespace kinovane {

/// Opens a pipe, close-on-exec from the start: a child that another thread starts at this moment must not
/// inherit an end, or the output would not end before that child does. `ends` becomes the read end and the
/// write end. Returns 0, or -1 and sets errno.
///
/// Linux: `pipe2`. macOS has no such call: the ends are marked after `pipe`. The library's own children do
/// not inherit them in between (see child_descriptors.hpp); a child that other code forks at this moment may.
int openSystemPipe(std::array<int, 2>& ends) noexcept;

/// Gives a pipe a buffer of this many bytes, if the system permits it.
///
/// Linux: F_SETPIPE_SZ. macOS: does nothing, because the system enlarges pipes itself.
void enlargePipe(int pipe, int bytes) noexcept;

} // namespace kinovane
