// SPDX-License-Identifier: Apache-2.0

#include <unistd.h>

#include "common/files/flush.hpp"
#include "common/files/retry_interrupted.hpp"

namespace kinovane {

int flushToDisk(int descriptor) noexcept {
    return retryInterrupted([&] { return ::fsync(descriptor); });
}

} // namespace kinovane
