// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane {

/// The flags with which `open` returns a directory for looking up names in it: search permission is needed,
/// read permission is not. Such a descriptor cannot be read; `fsync` fails with EBADF.
///
/// Linux: O_PATH. macOS: O_SEARCH.
extern const int searchFlags;

/// Opens a file below a directory like `openat`, but never one that lies outside it, even if links are
/// exchanged meanwhile. `path` is relative and has no component "..". A failure does not mean that the file
/// is missing or outside: the system may refuse paths that lead inside.
///
/// Linux: `openat2` with RESOLVE_BENEATH and RESOLVE_NO_MAGICLINKS. It refuses links that lead out and back
/// in, and does not exist before Linux 5.6.
///
/// macOS: O_NOFOLLOW_ANY, which refuses every link. O_RESOLVE_BENEATH would accept more, but systems that do
/// not know it ignore it, and follow links to the outside.
int openBeneath(int directory, const char* path, int flags) noexcept;

} // namespace kinovane
