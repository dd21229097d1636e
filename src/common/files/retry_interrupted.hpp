// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>

namespace kinovane {

/// Repeats a system call until a signal no longer interrupts it (EINTR). `call` returns a negative number and
/// sets errno on failure. Not for `close`, whose descriptor is closed even when the call is interrupted.
template <class Call>
auto retryInterrupted(Call call) {
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR)
            return result;
    }
}

} // namespace kinovane
