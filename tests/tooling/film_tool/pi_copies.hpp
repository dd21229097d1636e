// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace kinovane::test {

/// Puts an executable where the copy of this version belongs below a root; gives its location.
inline std::filesystem::path installPi(const std::filesystem::path& root, const std::string& version) {
    const std::filesystem::path program = root / version / "pi/pi";
    std::filesystem::create_directories(program.parent_path());
    std::ofstream(program) << "never run";
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return program;
}

} // namespace kinovane::test
