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

/// Identifies an open file.
struct FileIdentity {
    dev_t device;
    ino_t inode;

    bool operator==(const FileIdentity&) const = default;
};

/// Absent if the descriptor is closed.
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

// If the application has closed descriptor 0, the next file that any of its threads opens gets that number.
// Such a file is not meant as standard input. Its close-on-exec flag tells, but another thread may close the
// file and open another one between the check of the flag and the start of the child. So the child does not
// inherit descriptor 0 itself. It gets a duplicate, which no other thread can replace. The duplicate is used
// only if the flag and the identity of descriptor 0 are the same before and after the duplication, and are
// those of the duplicate. Otherwise another thread has replaced the file in between, and everything is
// checked again.
//
// Two cases cannot be told from a standard input: a file that was opened as descriptor 0 without
// close-on-exec, and a file that another thread opens both with and without that flag during these calls.
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
