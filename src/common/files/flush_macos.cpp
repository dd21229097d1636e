// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <unistd.h>

#include "common/files/flush.hpp"
#include "common/files/retry_interrupted.hpp"

namespace kinovane {

int flushToDisk(int descriptor) noexcept {
    if (retryInterrupted([&] { return ::fcntl(descriptor, F_FULLFSYNC); }) == 0)
        return 0;
    return retryInterrupted([&] { return ::fsync(descriptor); });
}

} // namespace kinovane
