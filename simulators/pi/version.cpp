// SPDX-License-Identifier: Apache-2.0

#include "version.hpp"

#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <vector>

#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

namespace pi {
namespace {

constexpr std::string_view fallback = "0.0.0-simulator";

/// Where the running program lies, with links followed; the name it was started by may be a bare word.
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

} // namespace

std::string version() {
    const std::filesystem::path program = programFile();
    if (program.empty())
        return std::string(fallback);
    std::ifstream file(program.parent_path() / "VERSION");
    std::string line;
    std::getline(file, line);
    line = trimmed(line);
    return line.empty() ? std::string(fallback) : line;
}

} // namespace pi
