// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane {

/// Flushes a file or a directory, so that it survives a loss of power. Returns 0, or -1 and sets errno.
///
/// Linux: `fsync`. macOS: F_FULLFSYNC, because `fsync` does not flush the drive's cache there; `fsync` on
/// file systems that do not support F_FULLFSYNC.
int flushToDisk(int descriptor) noexcept;

} // namespace kinovane
