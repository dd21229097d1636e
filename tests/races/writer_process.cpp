// SPDX-License-Identifier: Apache-2.0

#include "races/writer_process.hpp"

#include <array>
#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/files/retry_interrupted.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {

WriterProcess::WriterProcess(const std::filesystem::path& target, std::size_t rounds,
                             const std::vector<std::size_t>& versions) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot make a pipe");
    output_ = Descriptor(ends[0]);
    const Descriptor input(ends[1]);

    std::vector<std::string> arguments{programPath("races_writer"), target.string(), std::to_string(rounds)};
    for (const std::size_t version : versions)
        arguments.push_back(std::to_string(version));
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input.get(), STDOUT_FILENO);
    const int error = ::posix_spawn(&process_, pointers[0], &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("cannot start the writer");
}

WriterProcess::~WriterProcess() {
    if (process_ < 0)
        return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

void WriterProcess::awaitBegin() {
    char letter = 0;
    while (letter != 'b')
        if (retryInterrupted([&] { return ::read(output_.get(), &letter, 1); }) != 1)
            throw std::runtime_error("the writer has ended");
}

std::string WriterProcess::readOutput() {
    std::string text;
    std::array<char, 4096> buffer{};
    for (;;) {
        const auto count =
            retryInterrupted([&] { return ::read(output_.get(), buffer.data(), buffer.size()); });
        if (count < 0)
            throw std::runtime_error("cannot read the output of the writer");
        if (count == 0)
            return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

int WriterProcess::wait() {
    readOutput();
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool WriterProcess::killDuringWrite() {
    ::kill(process_, SIGKILL);
    const std::string text = readOutput();
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    if (WIFEXITED(status) && WEXITSTATUS(status) != 0)
        throw std::runtime_error("the writer has failed");
    // awaitBegin has already read the "b" of this write.
    return WIFSIGNALED(status) && (text.empty() || text.back() == 'b');
}

} // namespace kinovane::test
