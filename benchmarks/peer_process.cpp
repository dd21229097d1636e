// SPDX-License-Identifier: Apache-2.0

#include "peer_process.hpp"

#include <array>
#include <cerrno>
#include <memory>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace kinovane::benchmarks {

namespace {

void check(bool succeeded, const char* what) {
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), what);
}

std::vector<char*> pointers(const std::vector<std::string>& command) {
    std::vector<char*> result;
    for (const std::string& argument : command)
        result.push_back(const_cast<char*>(argument.c_str()));
    result.push_back(nullptr);
    return result;
}

void await(pid_t child, const std::string& program) {
    int status = 0;
    check(::waitpid(child, &status, 0) == child, "waitpid");
    if (status != 0)
        throw std::runtime_error(program + " failed");
}

struct Pipe {
    Pipe() { check(::pipe2(ends.data(), O_CLOEXEC) == 0, "pipe2"); }
    int reading() const { return ends[0]; }
    int writing() const { return ends[1]; }
    std::array<int, 2> ends{};
};

class FileActions {
  public:
    FileActions() { check(::posix_spawn_file_actions_init(&actions_) == 0, "posix_spawn"); }
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    posix_spawn_file_actions_t* get() { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

pid_t spawn(const std::vector<std::string>& command, FileActions& actions) {
    pid_t child = 0;
    const auto arguments = pointers(command);
    errno = ::posix_spawnp(&child, arguments[0], actions.get(), nullptr, arguments.data(), environ);
    check(errno == 0, command[0].c_str());
    return child;
}

void readToEnd(int descriptor) {
    std::array<char, 4096> buffer{};
    while (::read(descriptor, buffer.data(), buffer.size()) > 0) {
    }
    ::close(descriptor);
}

} // namespace

void runQuietly(const std::vector<std::string>& command) {
    FileActions actions;
    ::posix_spawn_file_actions_addopen(actions.get(), 1, "/dev/null", O_WRONLY, 0);
    await(spawn(command, actions), command[0]);
}

void spawnBare(const std::string& program) {
    pid_t child = 0;
    const std::vector<std::string> command{program};
    const auto arguments = pointers(command);
    errno = ::posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ);
    check(errno == 0, program.c_str());
    await(child, program);
}

void forkAndRead(const std::string& program) {
    const Pipe output;
    const Pipe errors;
    const std::vector<std::string> command{program};
    const auto arguments = pointers(command);
    const pid_t child = ::fork();
    check(child >= 0, "fork");
    if (child == 0) {
        ::dup2(output.writing(), 1);
        ::dup2(errors.writing(), 2);
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    ::close(output.writing());
    ::close(errors.writing());
    readToEnd(output.reading());
    readToEnd(errors.reading());
    await(child, program);
}

void spawnAndRead(const std::vector<std::string>& command, std::size_t size) {
    const Pipe output;
    FileActions actions;
    ::posix_spawn_file_actions_adddup2(actions.get(), output.writing(), 1);
    const pid_t child = spawn(command, actions);
    ::close(output.writing());
    const auto buffer = std::make_unique_for_overwrite<char[]>(size);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::read(output.reading(), buffer.get() + done, size - done);
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    ::close(output.reading());
    await(child, command[0]);
    if (done != size)
        throw std::runtime_error(command[0] + " wrote too little");
}

Ballast::Ballast(std::size_t size)
    : memory_(::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)),
      size_(size) {
    check(memory_ != MAP_FAILED, "mmap");
    ::madvise(memory_, size_, MADV_NOHUGEPAGE);
    constexpr std::size_t pageSize = 4096;
    for (std::size_t offset = 0; offset < size_; offset += pageSize)
        static_cast<volatile char*>(memory_)[offset] = 1;
}

Ballast::~Ballast() { ::munmap(memory_, size_); }

} // namespace kinovane::benchmarks
