// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/home_directory.hpp"

#include <cerrno>
#include <system_error>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "common/files/descriptor.hpp"

namespace kinovane {

namespace {

/// The values with which the systems say that there is no such user; any other is a failure to ask.
bool saysUnknown(int error) {
    return error == 0 || error == ENOENT || error == ESRCH || error == EBADF || error == EPERM;
}

/// The functions ask several sources in turn. When one of them fails and the next does not know the user, the
/// answer is that there is no such user, and only errno tells of the failure. Other values of errno are no
/// failure: a service that does not run leaves one, for instance.
bool tellsOfFailure(int error) {
    return error == EMFILE || error == ENFILE || error == EIO || error == ENOMEM;
}

/// Asks the user database with one of its reentrant functions. They need a buffer whose size cannot be known
/// beforehand.
template <class Ask>
std::optional<std::string> directoryFrom(const char* call, Ask ask) {
    constexpr std::size_t largestBuffer = std::size_t{1} << 20U;
    std::vector<char> buffer(1024);
    // The C library opens files and sockets to find the answer.
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        throw std::system_error(reserved.error(), std::generic_category(), call);
    for (;;) {
        passwd entry{};
        passwd* found = nullptr;
        errno = 0;
        int error = ask(&entry, buffer.data(), buffer.size(), &found);
        if (error == 0 && found == nullptr && tellsOfFailure(errno))
            error = errno;
        if (error == EINTR)
            continue;
        if (error == ERANGE && buffer.size() < largestBuffer) {
            buffer.resize(2 * buffer.size());
            continue;
        }
        if (!saysUnknown(error))
            throw std::system_error(error, std::generic_category(), call);
        if (found == nullptr || found->pw_dir == nullptr || *found->pw_dir != '/')
            return std::nullopt;
        return found->pw_dir;
    }
}

} // namespace

std::optional<std::string> homeDirectory() {
    return directoryFrom("getpwuid_r", [](passwd* entry, char* buffer, std::size_t size, passwd** found) {
        return ::getpwuid_r(::geteuid(), entry, buffer, size, found);
    });
}

std::optional<std::string> homeDirectoryOf(const std::string& user) {
    return directoryFrom("getpwnam_r", [&](passwd* entry, char* buffer, std::size_t size, passwd** found) {
        return ::getpwnam_r(user.c_str(), entry, buffer, size, found);
    });
}

} // namespace kinovane
