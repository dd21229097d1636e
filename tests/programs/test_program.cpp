// SPDX-License-Identifier: Apache-2.0

// Does what its arguments say, one verb after the other, and then ends with status 0. Tests start it in place
// of an external program.

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

/// The exit status for an error in this program; no test asks for it.
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

void print(std::string_view text) { writeAll(STDOUT_FILENO, text); }

std::string unhex(std::string_view digits) {
    std::string bytes;
    for (; digits.size() >= 2; digits.remove_prefix(2))
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(0, 2)), nullptr, 16));
    return bytes;
}

/// Writes to both streams by turns, in chunks that are larger than a pipe.
void flood(Words words) {
    constexpr std::size_t chunk = 100'000;
    const auto bytes = static_cast<std::size_t>(std::stoul(words[0]));
    const std::string output = kinovane::test::numberedLines("output", bytes);
    const std::string errors = kinovane::test::numberedLines("errors", bytes);
    for (std::size_t position = 0; position < bytes; position += chunk) {
        writeAll(STDOUT_FILENO, std::string_view(output).substr(position, chunk));
        writeAll(STDERR_FILENO, std::string_view(errors).substr(position, chunk));
    }
}

/// Blocks until the FIFO is opened for writing.
void waitFor(const char* fifo) {
    const int descriptor = ::open(fifo, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        fail(fifo);
    ::close(descriptor);
}

/// Writes a byte to the FIFO, so that its reader knows that this point was reached.
void announce(Words words) {
    const int descriptor = ::open(words[0], O_WRONLY | O_CLOEXEC);
    if (descriptor < 0)
        fail(words[0]);
    writeAll(descriptor, "!");
    ::close(descriptor);
}

/// Starts a process that keeps both streams open until the FIFO is opened, then writes to them and ends.
void leaveGrandchild(Words words) {
    const pid_t process = ::fork();
    if (process < 0)
        fail("fork");
    if (process > 0)
        return;
    waitFor(words[0]);
    print("late output\n");
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
        print({buffer.data(), static_cast<std::size_t>(count)});
    }
}

/// Prints what standard input is.
void printInputKind(Words /*words*/) {
    struct stat input{};
    struct stat null{};
    if (::fstat(STDIN_FILENO, &input) != 0 || ::stat("/dev/null", &null) != 0)
        fail("stat");
    if (S_ISCHR(input.st_mode) && input.st_rdev == null.st_rdev)
        print("null");
    else
        print(S_ISFIFO(input.st_mode) ? "pipe" : S_ISREG(input.st_mode) ? "file" : "other");
}

/// Writes "ready", waits for SIGTERM, writes the text and ends.
void cleanUpOnTerm(Words words) {
    sigset_t term;
    sigemptyset(&term);
    sigaddset(&term, SIGTERM);
    if (::sigprocmask(SIG_BLOCK, &term, nullptr) != 0)
        fail("sigprocmask");
    print("ready");
    int signal = 0;
    ::sigwait(&term, &signal);
    print(words[0]);
}

void listDescriptors(Words /*words*/) {
    const long limit = std::min(::sysconf(_SC_OPEN_MAX), 65536L);
    std::string text;
    for (int descriptor = 0; descriptor < limit; ++descriptor)
        if (::fcntl(descriptor, F_GETFD) >= 0)
            text += std::to_string(descriptor) + "\n";
    print(text);
}

void listSignals(Words /*words*/) {
    sigset_t mask;
    sigemptyset(&mask);
    if (::sigprocmask(SIG_BLOCK, nullptr, &mask) != 0)
        fail("sigprocmask");
    std::string blocked = "blocked:";
    std::string ignored = "ignored:";
    for (int signal = 1; signal <= 64; ++signal) {
        if (sigismember(&mask, signal) == 1)
            blocked += " " + std::to_string(signal);
        struct sigaction action{};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
            ignored += " " + std::to_string(signal);
    }
    print(blocked + "\n" + ignored + "\n");
}

void listEnvironment(Words /*words*/) {
    for (char** entry = environ; *entry != nullptr; ++entry)
        print(std::string(*entry) + '\0');
}

/// Prints the arguments in hexadecimal digits, because they may hold any bytes.
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
    print(text);
}

void create(Words words) {
    const int descriptor = ::open(words[0], O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0)
        fail(words[0]);
    ::close(descriptor);
}

void printDirectory(Words /*words*/) {
    std::array<char, 4096> path{};
    if (::getcwd(path.data(), path.size()) == nullptr)
        fail("getcwd");
    print(path.data());
}

struct Verb {
    std::string_view name;
    std::size_t operands;
    void (*act)(Words);
};

/// The operand count of a verb that takes all arguments after it.
constexpr std::size_t rest = ~std::size_t{0};

constexpr std::array verbs{
    Verb{"flood", 1, flood},
    Verb{"out", 1, [](Words words) { print(words[0]); }},
    Verb{"err", 1, [](Words words) { writeAll(STDERR_FILENO, words[0]); }},
    Verb{"out-hex", 1, [](Words words) { print(unhex(words[0])); }},
    Verb{"err-hex", 1, [](Words words) { writeAll(STDERR_FILENO, unhex(words[0])); }},
    Verb{"exit", 1, [](Words words) { std::_Exit(std::stoi(words[0])); }},
    Verb{"signal", 1, [](Words words) { ::raise(std::stoi(words[0])); }},
    Verb{"ignore", 1, [](Words words) { ::signal(std::stoi(words[0]), SIG_IGN); }},
    Verb{"on-term", 1, cleanUpOnTerm},
    Verb{"close", 1, [](Words words) { ::close(std::stoi(words[0])); }},
    Verb{"wait", 1, [](Words words) { waitFor(words[0]); }},
    Verb{"announce", 1, announce},
    Verb{"grandchild", 1, leaveGrandchild},
    Verb{"create", 1, create},
    Verb{"copy", 0, copyInput},
    Verb{"input-kind", 0, printInputKind},
    Verb{"descriptors", 0, listDescriptors},
    Verb{"signals", 0, listSignals},
    Verb{"environment", 0, listEnvironment},
    Verb{"directory", 0, printDirectory},
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
