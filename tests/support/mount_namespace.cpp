// SPDX-License-Identifier: Apache-2.0

#include "support/mount_namespace.hpp"

#include <fstream>
#include <string>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace kinovane::test {

namespace {

void writeText(const char* file, const std::string& text) { std::ofstream(file) << text; }

} // namespace

bool unshareMounts() {
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    // Without root privileges this needs a user namespace, which the system may forbid.
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        writeText("/proc/self/setgroups", "deny");
        writeText("/proc/self/uid_map", user + " " + user + " 1");
        writeText("/proc/self/gid_map", group + " " + group + " 1");
    }
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace kinovane::test
