// SPDX-License-Identifier: Apache-2.0

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include <kinovane/workspace.hpp>

#include "peer_json.hpp"

namespace {

/// A value of /proc/self/status in kilobytes.
long kilobytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name + ":"))
            return std::stol(line.substr(name.size() + 1));
    throw std::runtime_error("/proc/self/status has no " + name);
}

} // namespace

/// Loads one project document and prints the peak growth of resident memory in kilobytes:
/// memory_of_load library|nlohmann FOLDER
int main(int count, char** arguments) {
    if (count != 3)
        return 2;
    const std::string_view loader = arguments[1];
    const std::filesystem::path folder = arguments[2];
    const long before = kilobytes("VmRSS");
    std::size_t artifacts = 0;
    if (loader == "library")
        artifacts = kinovane::FilmProjectLoader::load(folder / "run.json").project.artifacts.size();
    else if (loader == "nlohmann")
        artifacts = kinovane::benchmarks::loadWithNlohmann(folder / "film-project.json").artifacts.size();
    std::cout << kilobytes("VmHWM") - before << '\n';
    return artifacts > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
