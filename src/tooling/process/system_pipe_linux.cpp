// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <unistd.h>

#include "tooling/process/system_pipe.hpp"

namespace kinovane {

int openSystemPipe(std::array<int, 2>& ends) noexcept { return ::pipe2(ends.data(), O_CLOEXEC); }

void enlargePipe(int pipe, int bytes) noexcept { ::fcntl(pipe, F_SETPIPE_SZ, bytes); }

} // namespace kinovane
