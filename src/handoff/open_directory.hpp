// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <sys/types.h>

#include "common/files/descriptor.hpp"

namespace kinovane {

/// A directory that was opened to look up names in it: search permission is needed, read permission is not.
class OpenDirectory {
  public:
    /// Unique among the directories that exist at the same time.
    struct Identity {
        dev_t device = 0;
        ino_t inode = 0;

        bool operator==(const Identity&) const = default;
    };

    OpenDirectory() = default;

    /// The directory at a path; links are followed. Closed when it cannot be opened, with the reason in
    /// errno.
    static OpenDirectory at(const char* path);

    /// The directory of this name in another one; a link is not followed. Closed as above.
    static OpenDirectory in(const OpenDirectory& parent, const char* name);

    /// For system calls.
    int descriptor() const noexcept { return descriptor_.get(); }
    explicit operator bool() const noexcept { return bool(descriptor_); }

    const Identity& identity() const noexcept { return identity_; }

    /// Closes it; the identity is kept.
    void close() noexcept { descriptor_.close(); }

  private:
    explicit OpenDirectory(Descriptor descriptor);

    Descriptor descriptor_;
    Identity identity_;
};

} // namespace kinovane
