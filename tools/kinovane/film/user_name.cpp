// SPDX-License-Identifier: Apache-2.0

#include "film/user_name.hpp"

#include <cerrno>
#include <cstddef>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "session/failure.hpp"

namespace kinovane::tool {

std::string userName() {
    constexpr std::size_t mostBytes = std::size_t{1} << 20U;
    passwd entry{};
    passwd* found = nullptr;
    std::vector<char> buffer(1024);
    while (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < mostBytes)
        buffer.resize(buffer.size() * 2);
    if (found == nullptr || *found->pw_name == '\0')
        throw CommandError(ExitStatus::usage, "your user name is unknown; name who approves with --by NAME");
    return found->pw_name;
}

} // namespace kinovane::tool
