// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <system_error>

#include <sys/resource.h>

namespace kinovane::test {

/// Sets a limit of this process, as in a forked one that ends with it.
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

/// Leaves exactly so many descriptors to be opened.
void leaveDescriptors(int wanted);

} // namespace kinovane::test
