// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane {

/// How the system resolves a symbolic link.
enum class LinkKind {
    text,    ///< By its text, which is a path.
    magic,   ///< To an object, such as an open file; the text only describes that object.
    unknown, ///< A system call failed; the reason is in errno.
};

/// The kind of the link `name` in a directory; `target` is its text.
///
/// Linux: links of procfs may be magic, such as /proc/self/fd/0 and /proc/self/cwd. macOS has no procfs, and
/// no magic links.
LinkKind kindOfLink(int directory, const char* name, std::string_view target);

} // namespace kinovane
