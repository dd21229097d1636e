// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/test_program.hpp"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/files/retry_interrupted.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {

std::string testProgramPath() { return programPath("test_program"); }

Task<ProcessResult> startTestProgram(std::vector<std::string> arguments,
                                     std::map<std::string, std::string> environment) {
    return FilmToolClient(testProgramPath()).run(std::move(arguments), std::move(environment));
}

std::string outputOfTestProgram(std::vector<std::string> arguments,
                                std::map<std::string, std::string> environment) {
    return outcomeOf(startTestProgram(std::move(arguments), std::move(environment)));
}

std::string outcomeOf(Task<ProcessResult> task) {
    try {
        return task.get().stdout;
    } catch (const FilmToolError& error) {
        return error.errorDescription();
    }
}

Fifo::Fifo(const std::filesystem::path& location) : location_(location) {
    if (::mkfifo(location.c_str(), 0666) != 0)
        throw std::system_error(errno, std::generic_category(), location.string());
}

Fifo::~Fifo() { open(); }

void Fifo::open() {
    // For reading and writing, so that the call does not block.
    if (!descriptor_)
        descriptor_ = Descriptor(::open(location_.c_str(), O_RDWR | O_CLOEXEC));
}

void Fifo::awaitAnnouncements(std::size_t count) {
    open();
    for (; count > 0; --count) {
        char mark = 0;
        if (retryInterrupted([&] { return ::read(descriptor_.get(), &mark, 1); }) != 1)
            throw std::system_error(errno, std::generic_category(), location_.string());
    }
}

} // namespace kinovane::test
