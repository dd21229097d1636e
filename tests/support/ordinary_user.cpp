// SPDX-License-Identifier: Apache-2.0

#include "support/ordinary_user.hpp"

#include <array>
#include <exception>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace kinovane::test {

namespace {

constexpr unsigned nobody = 65534;

[[noreturn]] void report(int descriptor, const std::function<std::string()>& work) {
    std::string text;
    try {
        const bool dropped = ::geteuid() != 0 || (::setgid(nobody) == 0 && ::setuid(nobody) == 0);
        text = dropped ? work() : "the permissions of root could not be dropped";
    } catch (const std::exception& error) {
        text = std::string("unexpected: ") + error.what();
    }
    const bool reported = ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::_exit(reported ? 0 : 1);
}

} // namespace

std::string asOrdinaryUser(const std::function<std::string()>& work) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child == 0)
        report(ends[1], work);
    ::close(ends[1]);
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    ::close(ends[0]);
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error("the unprivileged child process failed: " + text);
    return text;
}

} // namespace kinovane::test
