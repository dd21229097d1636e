// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "common/files/directory_access.hpp"

namespace kinovane {

const int searchFlags = O_PATH;

int openBeneath(int directory, const char* path, int flags) noexcept {
    open_how how{};
    how.flags = static_cast<decltype(how.flags)>(flags);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    return static_cast<int>(::syscall(SYS_openat2, directory, path, &how, sizeof how));
}

} // namespace kinovane
