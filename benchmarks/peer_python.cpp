// SPDX-License-Identifier: Apache-2.0

#include "peer_python.hpp"

#include <array>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace kinovane::benchmarks {

namespace {

// The system's Python, not the first one on the search path.
constexpr const char* python = "/usr/bin/python3";

} // namespace

PythonPeer::PythonPeer() {
    std::array<int, 2> toPython{};
    std::array<int, 2> fromPython{};
    if (::pipe2(toPython.data(), O_CLOEXEC) != 0 || ::pipe2(fromPython.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe for Python");
    posix_spawn_file_actions_t actions{};
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, toPython[0], 0);
    ::posix_spawn_file_actions_adddup2(&actions, fromPython[1], 1);
    std::string program = python;
    std::string script = KINOVANE_PYTHON_PEER;
    std::array<char*, 3> arguments{program.data(), script.data(), nullptr};
    const int failure = ::posix_spawn(&process_, python, &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(toPython[0]);
    ::close(fromPython[1]);
    requests_ = ::fdopen(toPython[1], "w");
    replies_ = ::fdopen(fromPython[0], "r");
    if (failure != 0 || requests_ == nullptr || replies_ == nullptr)
        throw std::runtime_error("cannot start Python");
}

PythonPeer::~PythonPeer() {
    std::fclose(requests_);
    std::fclose(replies_);
    ::waitpid(process_, nullptr, 0);
}

double PythonPeer::run(std::size_t times, const std::vector<std::string>& command) {
    std::string request = std::to_string(times);
    for (const std::string& argument : command)
        request += '\t' + argument;
    request += '\n';
    std::array<char, 128> reply{};
    if (std::fputs(request.c_str(), requests_) < 0 || std::fflush(requests_) != 0 ||
        std::fgets(reply.data(), reply.size(), replies_) == nullptr)
        throw std::runtime_error("Python gave no reply");
    return std::stod(reply.data());
}

} // namespace kinovane::benchmarks
