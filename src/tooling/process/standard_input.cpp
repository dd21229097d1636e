// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/standard_input.hpp"

#include <cerrno>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kinovane {

namespace {

/// What tells two open files apart.
struct FileIdentity {
    dev_t device;
    ino_t inode;

    bool operator==(const FileIdentity&) const = default;
};

/// Absent when the descriptor is closed.
std::optional<FileIdentity> identityOf(int descriptor) {
    struct stat status{};
    if (::fstat(descriptor, &status) == 0)
        return FileIdentity{status.st_dev, status.st_ino};
    if (errno != EBADF)
        throw std::system_error(errno, std::generic_category(), "fstat");
    return std::nullopt;
}

bool mayBeInherited(int descriptor) {
    const int flags = ::fcntl(descriptor, F_GETFD);
    return flags >= 0 && (flags & FD_CLOEXEC) == 0;
}

} // namespace

// An application that has closed descriptor 0 gives the number away: the next file that any of its threads
// opens gets it, for as long as that file is open. Such a file is standard input only by accident. It can be
// told by its close-on-exec flag, but between a look at the flag and the start of the child another thread
// may close the number and open something else under it. So the child is not told to use descriptor 0: it
// gets a duplicate, which no other thread can exchange, and which counts only if the flag and the identity of
// descriptor 0 are the same before and after the duplication, and the duplicate is that file. Otherwise
// something was exchanged in between, and everything is looked at anew.
//
// What cannot be told apart: a file that was opened under the number 0 without close-on-exec, which is what a
// standard input is; and one that another thread opens both with and without it, all within these calls.
Descriptor duplicateStandardInput() {
    for (;;) {
        const auto before = identityOf(STDIN_FILENO);
        if (!before || !mayBeInherited(STDIN_FILENO))
            return {};
        Descriptor duplicate(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
        if (!duplicate && errno != EBADF)
            throw std::system_error(errno, std::generic_category(), "fcntl");
        if (duplicate && identityOf(duplicate.get()) == before && mayBeInherited(STDIN_FILENO) &&
            identityOf(STDIN_FILENO) == before)
            return duplicate;
    }
}

} // namespace kinovane
