// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <unistd.h>

#include "tooling/process/system_pipe.hpp"

namespace kinovane {

int openSystemPipe(std::array<int, 2>& ends) noexcept {
    if (::pipe(ends.data()) != 0)
        return -1;
    for (const int end : ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    return 0;
}

void enlargePipe(int /*pipe*/, int /*bytes*/) noexcept {}

} // namespace kinovane
