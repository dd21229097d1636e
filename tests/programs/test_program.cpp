// SPDX-License-Identifier: Apache-2.0

// A program that does what its arguments say, one verb after the other, and then ends with status 0. It
// stands for every way in which an outside program can behave.

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "programs/numbered_lines.hpp"

extern char** environ; // NOLINT(readability-redundant-declaration): not every C library's header declares it

namespace {

using Words = std::span<char*>;

/// Not a status that a test asks for.
constexpr int broken = 120;

[[noreturn]] void fail(std::string_view what) {
    std::fprintf(stderr, "test_program: %.*s: %s\n", static_cast<int>(what.size()), what.data(),
                 std::strerror(errno));
    std::_Exit(broken);
}

void writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count < 0)
            fail("write");
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

void say(std::string_view text) { writeAll(STDOUT_FILENO, text); }

std::string unhex(std::string_view digits) {
    std::string bytes;
    for (; digits.size() >= 2; digits.remove_prefix(2))
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(0, 2)), nullptr, 16));
    return bytes;
}

/// Both streams by turns, in pieces larger than what a pipe holds.
void flood(Words words) {
    constexpr std::size_t piece = 100'000;
    const auto bytes = static_cast<std::size_t>(std::stoul(words[0]));
    const std::string output = kinovane::test::numberedLines("output", bytes);
    const std::string errors = kinovane::test::numberedLines("errors", bytes);
    for (std::size_t position = 0; position < bytes; position += piece) {
        writeAll(STDOUT_FILENO, std::string_view(output).substr(position, piece));
        writeAll(STDERR_FILENO, std::string_view(errors).substr(position, piece));
    }
}

/// Opening a FIFO for reading takes until somebody opens it for writing.
void waitFor(const char* fifo) {
    const int descriptor = ::open(fifo, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        fail(fifo);
    ::close(descriptor);
}

/// Tells whoever reads the FIFO that this point was reached.
void announce(Words words) {
    const int descriptor = ::open(words[0], O_WRONLY | O_CLOEXEC);
    if (descriptor < 0)
        fail(words[0]);
    writeAll(descriptor, "!");
    ::close(descriptor);
}

/// Leaves a process behind that holds both streams until the FIFO is opened, and then writes to them.
void leaveGrandchild(Words words) {
    const pid_t process = ::fork();
    if (process < 0)
        fail("fork");
    if (process > 0)
        return;
    waitFor(words[0]);
    say("late output\n");
    writeAll(STDERR_FILENO, "late errors\n");
    std::_Exit(0);
}

void copyInput(Words /*words*/) {
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count < 0)
            fail("read");
        if (count == 0)
            return;
        say({buffer.data(), static_cast<std::size_t>(count)});
    }
}

/// Whether standard input is the null device, or what kind of file.
void sayInputKind(Words /*words*/) {
    struct stat input{};
    struct stat null{};
    if (::fstat(STDIN_FILENO, &input) != 0 || ::stat("/dev/null", &null) != 0)
        fail("stat");
    if (S_ISCHR(input.st_mode) && input.st_rdev == null.st_rdev)
        say("null");
    else
        say(S_ISFIFO(input.st_mode) ? "pipe" : S_ISREG(input.st_mode) ? "file" : "other");
}

void listDescriptors(Words /*words*/) {
    const long limit = std::min(::sysconf(_SC_OPEN_MAX), 65536L);
    std::string text;
    for (int descriptor = 0; descriptor < limit; ++descriptor)
        if (::fcntl(descriptor, F_GETFD) >= 0)
            text += std::to_string(descriptor) + "\n";
    say(text);
}

void listSignals(Words /*words*/) {
    sigset_t mask;
    ::sigemptyset(&mask);
    if (::sigprocmask(SIG_BLOCK, nullptr, &mask) != 0)
        fail("sigprocmask");
    std::string blocked = "blocked:";
    std::string ignored = "ignored:";
    for (int signal = 1; signal <= 64; ++signal) {
        if (::sigismember(&mask, signal) == 1)
            blocked += " " + std::to_string(signal);
        struct sigaction action{};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
            ignored += " " + std::to_string(signal);
    }
    say(blocked + "\n" + ignored + "\n");
}

void listEnvironment(Words /*words*/) {
    for (char** entry = environ; *entry != nullptr; ++entry)
        say(std::string(*entry) + '\0');
}

/// In hexadecimal digits, because an argument may hold what is no text.
void listArguments(Words words) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const std::string_view word : words) {
        for (const char byte : word) {
            text += digits[static_cast<unsigned char>(byte) / 16U];
            text += digits[static_cast<unsigned char>(byte) % 16U];
        }
        text += '\n';
    }
    say(text);
}

void create(Words words) {
    const int descriptor = ::open(words[0], O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0)
        fail(words[0]);
    ::close(descriptor);
}

void sayDirectory(Words /*words*/) {
    std::array<char, 4096> path{};
    if (::getcwd(path.data(), path.size()) == nullptr)
        fail("getcwd");
    say(path.data());
}

struct Verb {
    std::string_view name;
    std::size_t operands;
    void (*act)(Words);
};

/// As an operand count: all that follow.
constexpr std::size_t rest = ~std::size_t{0};

constexpr std::array verbs{
    Verb{"flood", 1, flood},
    Verb{"out", 1, [](Words words) { say(words[0]); }},
    Verb{"err", 1, [](Words words) { writeAll(STDERR_FILENO, words[0]); }},
    Verb{"out-hex", 1, [](Words words) { say(unhex(words[0])); }},
    Verb{"err-hex", 1, [](Words words) { writeAll(STDERR_FILENO, unhex(words[0])); }},
    Verb{"exit", 1, [](Words words) { std::_Exit(std::stoi(words[0])); }},
    Verb{"signal", 1, [](Words words) { ::raise(std::stoi(words[0])); }},
    Verb{"close", 1, [](Words words) { ::close(std::stoi(words[0])); }},
    Verb{"wait", 1, [](Words words) { waitFor(words[0]); }},
    Verb{"announce", 1, announce},
    Verb{"grandchild", 1, leaveGrandchild},
    Verb{"create", 1, create},
    Verb{"copy", 0, copyInput},
    Verb{"input-kind", 0, sayInputKind},
    Verb{"descriptors", 0, listDescriptors},
    Verb{"signals", 0, listSignals},
    Verb{"environment", 0, listEnvironment},
    Verb{"directory", 0, sayDirectory},
    Verb{"arguments", rest, listArguments},
};

} // namespace

int main(int count, char** arguments) {
    Words words = Words(arguments, static_cast<std::size_t>(count)).subspan(1);
    while (!words.empty()) {
        const std::string_view name = words[0];
        const auto verb =
            std::find_if(verbs.begin(), verbs.end(), [&](const Verb& known) { return known.name == name; });
        words = words.subspan(1);
        if (verb == verbs.end() || (verb->operands != rest && verb->operands > words.size())) {
            std::fprintf(stderr, "test_program: unknown verb or missing operand: %s\n",
                         std::string(name).c_str());
            return broken;
        }
        const std::size_t operands = std::min(verb->operands, words.size());
        verb->act(words.first(operands));
        words = words.subspan(operands);
    }
    return 0;
}
