// SPDX-License-Identifier: Apache-2.0

#include "handoff/open_directory.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include "common/files/directory_access.hpp"
#include "common/files/standard_descriptors.hpp"

namespace kinovane {

OpenDirectory::OpenDirectory(Descriptor descriptor) : descriptor_(std::move(descriptor)) {
    struct stat status{};
    if (!descriptor_)
        return;
    if (::fstat(descriptor_.get(), &status) == 0) {
        identity_ = {status.st_dev, status.st_ino};
        return;
    }
    const int error = errno;
    descriptor_.close();
    errno = error;
}

OpenDirectory OpenDirectory::at(const char* path) {
    return OpenDirectory(
        openAboveStandard([&] { return ::open(path, searchFlags | O_DIRECTORY | O_CLOEXEC); }));
}

OpenDirectory OpenDirectory::in(const OpenDirectory& parent, const char* name) {
    return OpenDirectory(openAboveStandard([&] {
        return ::openat(parent.descriptor(), name, searchFlags | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    }));
}

} // namespace kinovane
