// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <system_error>

#include <sys/resource.h>

namespace kinovane::test {

/// Sets a soft limit of this process; meant for a forked process, as it is not restored.
template <class Resource>
void limitTo(Resource resource, rlim_t amount) {
    rlimit limit{};
    if (::getrlimit(resource, &limit) == 0) {
        limit.rlim_cur = amount;
        if (::setrlimit(resource, &limit) == 0)
            return;
    }
    throw std::system_error(errno, std::generic_category(), "limit");
}

/// Limits the descriptors of this process so that exactly `wanted` more can be opened.
void leaveDescriptors(int wanted);

} // namespace kinovane::test
