// SPDX-License-Identifier: Apache-2.0

#include "support/limits.hpp"

#include <fcntl.h>

namespace kinovane::test {

void leaveDescriptors(int wanted) {
    int limit = 0;
    for (int spare = 0; spare < wanted || ::fcntl(limit, F_GETFD) >= 0; ++limit)
        spare += ::fcntl(limit, F_GETFD) < 0 ? 1 : 0;
    limitTo(RLIMIT_NOFILE, static_cast<rlim_t>(limit));
}

} // namespace kinovane::test
