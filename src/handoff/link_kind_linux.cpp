// SPDX-License-Identifier: Apache-2.0

#include <cerrno>

#include <fcntl.h>
#include <linux/magic.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "common/files/standard_descriptors.hpp"
#include "handoff/link_kind.hpp"
#include "handoff/open_directory.hpp"

namespace kinovane {

namespace {

/// The text of a magic link is absolute, or names an object without a path, such as "pipe:[4711]". Other
/// links of procfs, such as "self" and "mounts", are relative.
LinkKind kindByText(std::string_view target) {
    const bool isPlain = !target.starts_with('/') && target.find(':') == std::string_view::npos;
    return isPlain ? LinkKind::text : LinkKind::magic;
}

} // namespace

LinkKind kindOfLink(int directory, const char* name, std::string_view target) {
    struct statfs fileSystem{};
    if (retryInterrupted([&] { return ::fstatfs(directory, &fileSystem); }) != 0)
        return LinkKind::unknown;
    if (fileSystem.f_type != PROC_SUPER_MAGIC)
        return LinkKind::text;
    open_how how{};
    how.flags = O_PATH | O_CLOEXEC;
    how.resolve = RESOLVE_NO_MAGICLINKS;
    if (openAboveStandard(
            [&] { return static_cast<int>(::syscall(SYS_openat2, directory, name, &how, sizeof how)); }))
        return LinkKind::text;
    if (errno == ELOOP) // Procfs has no link loops.
        return LinkKind::magic;
    if (errno == EMFILE || errno == ENFILE || errno == ENOMEM)
        return LinkKind::unknown;
    // Older kernels do not have the call, and a sandbox may forbid it.
    return kindByText(target);
}

} // namespace kinovane
