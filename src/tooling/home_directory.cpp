#include "tooling/home_directory.hpp"

#include <cerrno>
#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace kinovane {

namespace {

/// Asks the user database with one of its reentrant functions, which want a buffer of a size that nobody
/// knows.
template <class Ask>
std::optional<std::string> directoryFrom(Ask ask) {
    constexpr std::size_t largestBuffer = std::size_t{1} << 20U;
    for (std::vector<char> buffer(1024); buffer.size() <= largestBuffer; buffer.resize(2 * buffer.size())) {
        passwd entry{};
        passwd* found = nullptr;
        const int error = ask(&entry, buffer.data(), buffer.size(), &found);
        if (error == ERANGE)
            continue;
        if (error != 0 || found == nullptr || found->pw_dir == nullptr || *found->pw_dir == '\0')
            return std::nullopt;
        return found->pw_dir;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> homeDirectory() {
    auto home = directoryFrom([](passwd* entry, char* buffer, std::size_t size, passwd** found) {
        return ::getpwuid_r(::geteuid(), entry, buffer, size, found);
    });
    if (!home)
        if (const char* const named = std::getenv("HOME"); named != nullptr && *named != '\0')
            home = named;
    return home;
}

std::optional<std::string> homeDirectoryOf(const std::string& user) {
    return directoryFrom([&](passwd* entry, char* buffer, std::size_t size, passwd** found) {
        return ::getpwnam_r(user.c_str(), entry, buffer, size, found);
    });
}

} // namespace kinovane
