// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>

#include "common/files/directory_access.hpp"

namespace kinovane {

const int searchFlags = O_SEARCH;

int openBeneath(int directory, const char* path, int flags) noexcept {
    return ::openat(directory, path, flags | O_NOFOLLOW_ANY);
}

} // namespace kinovane
