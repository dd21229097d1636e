// SPDX-License-Identifier: Apache-2.0

#include "faults/small_disk.hpp"

#include <cerrno>
#include <system_error>

#include <sys/mount.h>

#include "support/mount_namespace.hpp"

namespace kinovane::test {

bool mountSmallDisk(const std::filesystem::path& directory, const char* options) {
    return unshareMounts() && ::mount("small", directory.c_str(), "tmpfs", 0, options) == 0;
}

void makeReadOnly(const std::filesystem::path& directory) {
    if (::mount(nullptr, directory.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        throw std::system_error(errno, std::generic_category(), "read-only");
}

} // namespace kinovane::test
