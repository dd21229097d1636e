// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace kinovane {

/// How the system follows a symbolic link.
enum class LinkKind {
    text,    ///< By its text.
    magic,   ///< Straight to an object, such as an open file. Its text only describes that object.
    unknown, ///< The system does not tell; the reason is in errno.
};

/// The kind of the link `name` in a directory; `target` is its text. Magic links exist in procfs only, such
/// as /proc/self/fd/0 and /proc/self/cwd.
LinkKind kindOfLink(int directory, const char* name, std::string_view target);

} // namespace kinovane
