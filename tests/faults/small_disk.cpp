// SPDX-License-Identifier: Apache-2.0

#include "faults/small_disk.hpp"

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace kinovane::test {

namespace {

void writeText(const char* file, const std::string& text) { std::ofstream(file) << text; }

/// Gives this process its own mount namespace. Without root privileges this needs a user namespace, which the
/// system may forbid.
bool unshareMounts() {
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        writeText("/proc/self/setgroups", "deny");
        writeText("/proc/self/uid_map", user + " " + user + " 1");
        writeText("/proc/self/gid_map", group + " " + group + " 1");
    }
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

bool mountSmallDisk(const std::filesystem::path& directory, const char* options) {
    return unshareMounts() && ::mount("small", directory.c_str(), "tmpfs", 0, options) == 0;
}

void makeReadOnly(const std::filesystem::path& directory) {
    if (::mount(nullptr, directory.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        throw std::system_error(errno, std::generic_category(), "read-only");
}

} // namespace kinovane::test
