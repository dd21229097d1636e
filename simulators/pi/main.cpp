// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>
#include <vector>

#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

#include "common/program.hpp"

namespace simulator::pi {
namespace {

constexpr std::array<std::string_view, 1> forms{"--version"};

/// The running program's file with links resolved; argv[0] may be a bare name.
std::filesystem::path programFile() {
    std::error_code unknown;
#ifdef __APPLE__
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size);
    std::vector<char> name(size);
    return _NSGetExecutablePath(name.data(), &size) == 0 ? std::filesystem::canonical(name.data(), unknown)
                                                         : std::filesystem::path();
#else
    return std::filesystem::read_symlink("/proc/self/exe", unknown);
#endif
}

std::string trimmed(const std::string& text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The first line of the file VERSION beside the program, without surrounding blanks.
std::string version() {
    std::ifstream file(programFile().parent_path() / "VERSION");
    std::string line;
    std::getline(file, line);
    line = trimmed(line);
    return line.empty() ? "0.0.0-simulator" : line;
}

int perform(const Command&, Arguments) {
    std::cout << "pi " << version() << '\n';
    return 0;
}

} // namespace
} // namespace simulator::pi

int main(int argumentCount, char** argumentValues) {
    using namespace simulator;
    return runProgram(argumentCount, argumentValues, {"pi", pi::forms, ""}, "version", pi::perform);
}
