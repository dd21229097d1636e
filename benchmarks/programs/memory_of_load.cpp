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

/// A line of /proc/self/status that counts kilobytes.
long kilobytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name + ":"))
            return std::stol(line.substr(name.size() + 1));
    throw std::runtime_error("the system does not tell " + name);
}

} // namespace

/// Loads one project document in a process that did nothing else, and prints by how many kilobytes its
/// resident memory had grown at most: memory_of_load library|nlohmann FOLDER
int main(int count, char** arguments) {
    if (count != 3)
        return 2;
    const std::string_view way = arguments[1];
    const std::filesystem::path folder = arguments[2];
    const long before = kilobytes("VmRSS");
    std::size_t artifacts = 0;
    if (way == "library")
        artifacts = kinovane::FilmProjectLoader::load(folder / "run.json").project.artifacts.size();
    else if (way == "nlohmann")
        artifacts = kinovane::benchmarks::loadWithNlohmann(folder / "film-project.json").artifacts.size();
    std::cout << kilobytes("VmHWM") - before << '\n';
    return artifacts > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
