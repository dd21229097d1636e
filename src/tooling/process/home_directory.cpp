// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/home_directory.hpp"

#include <cerrno>
#include <system_error>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "common/files/standard_descriptors.hpp"

namespace kinovane {

namespace {

/// Whether a return value means that there is no such user. Systems differ in the value; all others are
/// errors.
bool meansUnknownUser(int error) {
    return error == 0 || error == ENOENT || error == ESRCH || error == EBADF || error == EPERM;
}

/// Whether errno shows an error behind the result that there is no such user. The C library reads several
/// sources in turn. If one fails and the next does not hold the user, only errno shows the failure. Other
/// values of errno do not: a service that does not run leaves one, for instance.
bool meansFailedSource(int error) {
    return error == EMFILE || error == ENFILE || error == EIO || error == ENOMEM;
}

/// Reads a home directory with one of the reentrant functions of the user database. They need a buffer whose
/// size is not known beforehand.
template <class Query>
std::optional<std::string> directoryFrom(const char* call, Query query) {
    constexpr std::size_t largestBuffer = std::size_t{1} << 20U;
    std::vector<char> buffer(1024);
    // The C library opens files and sockets for the query.
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        throw std::system_error(reserved.error(), std::generic_category(), call);
    for (;;) {
        passwd entry{};
        passwd* found = nullptr;
        errno = 0;
        int error = query(&entry, buffer.data(), buffer.size(), &found);
        if (error == 0 && found == nullptr && meansFailedSource(errno))
            error = errno;
        if (error == EINTR)
            continue;
        if (error == ERANGE && buffer.size() < largestBuffer) {
            buffer.resize(2 * buffer.size());
            continue;
        }
        if (!meansUnknownUser(error))
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
