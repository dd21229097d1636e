// SPDX-License-Identifier: Apache-2.0

#include "common/files/file_lease.hpp"

#include <cerrno>
#include <chrono>
#include <thread>

namespace kinovane {

bool LeaseWait::pause() {
    constexpr int maximumPauses = 100;
    constexpr auto pauseLength = std::chrono::milliseconds(10);
    if (errno != EWOULDBLOCK || pauses_ == maximumPauses)
        return false;
    ++pauses_;
    std::this_thread::sleep_for(pauseLength);
    errno = EWOULDBLOCK;
    return true;
}

} // namespace kinovane
