// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "common/files/descriptor.hpp"

/// Opening files on which another process holds a lease. With O_NONBLOCK, `open` then asks the holder to
/// release its lease and fails with EWOULDBLOCK at once; a later attempt succeeds.
namespace kinovane {

/// Pauses between attempts to open a leased file, for a limited time in all.
class LeaseWait {
  public:
    /// Pauses when errno is EWOULDBLOCK, and returns whether to try again. Keeps errno.
    bool pause();

  private:
    int pauses_ = 0;
};

/// Calls `open`, which returns a Descriptor or sets errno, again for as long as a lease prevents it from
/// opening the file, for about a second. An invalid descriptor leaves the reason in errno: EWOULDBLOCK when
/// the lease was not released in time.
template <class Open>
Descriptor retryWhileLeased(Open open) {
    LeaseWait wait;
    for (;;) {
        Descriptor descriptor = open();
        if (descriptor || !wait.pause())
            return descriptor;
    }
}

} // namespace kinovane
