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

// Debian's own, whatever else comes first on the search path.
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
    questions_ = ::fdopen(toPython[1], "w");
    answers_ = ::fdopen(fromPython[0], "r");
    if (failure != 0 || questions_ == nullptr || answers_ == nullptr)
        throw std::runtime_error("cannot start Python");
}

PythonPeer::~PythonPeer() {
    std::fclose(questions_);
    std::fclose(answers_);
    ::waitpid(process_, nullptr, 0);
}

double PythonPeer::run(std::size_t times, const std::vector<std::string>& command) {
    std::string question = std::to_string(times);
    for (const std::string& argument : command)
        question += '\t' + argument;
    question += '\n';
    std::array<char, 128> answer{};
    if (std::fputs(question.c_str(), questions_) < 0 || std::fflush(questions_) != 0 ||
        std::fgets(answer.data(), answer.size(), answers_) == nullptr)
        throw std::runtime_error("Python gave no answer");
    return std::stod(answer.data());
}

} // namespace kinovane::benchmarks
