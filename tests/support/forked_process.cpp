// SPDX-License-Identifier: Apache-2.0

#include "support/forked_process.hpp"

#include <array>
#include <cerrno>
#include <exception>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

#include "common/files/descriptor.hpp"
#include "common/files/retry_interrupted.hpp"

namespace kinovane::test {

namespace {

[[noreturn]] void runAndReport(const std::function<std::string()>& job, int report) {
    std::string text;
    try {
        text = job();
    } catch (const std::exception& error) {
        text = std::string("exception: ") + error.what();
    }
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = ::write(report, text.data() + written, text.size() - written);
        if (count < 0)
            ::_exit(1);
        written += static_cast<std::size_t>(count);
    }
    ::_exit(0);
}

std::string readToEnd(int descriptor) {
    std::string text;
    std::array<char, 4096> buffer{};
    for (;;) {
        const auto count = retryInterrupted([&] { return ::read(descriptor, buffer.data(), buffer.size()); });
        if (count <= 0)
            return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

std::string inForkedProcess(const std::function<std::string()>& job) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    Descriptor readEnd(ends[0]);
    Descriptor writeEnd(ends[1]);
    const pid_t process = ::fork();
    if (process < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (process == 0) {
        readEnd.close();
        runAndReport(job, writeEnd.get());
    }
    writeEnd.close();
    std::string text = readToEnd(readEnd.get());
    int status = 0;
    if (retryInterrupted([&] { return ::waitpid(process, &status, 0); }) != process || status != 0)
        text += "[the process ended with status " + std::to_string(status) + "]";
    return text;
}

} // namespace kinovane::test
