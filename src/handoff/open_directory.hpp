// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <sys/types.h>

#include "common/files/descriptor.hpp"

namespace kinovane {

/// A directory that is open to be passed through: the right to search it is needed, the right to list it is
/// not.
class OpenDirectory {
  public:
    /// What tells a directory from every other one that exists at the same time.
    struct Identity {
        dev_t device = 0;
        ino_t number = 0;

        bool operator==(const Identity&) const = default;
    };

    OpenDirectory() = default;

    /// The directory at a path, links followed as the system follows them. Closed when it cannot be opened,
    /// with the reason in errno.
    static OpenDirectory at(const char* path);

    /// The directory of this name in another one; a link is not followed.
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
