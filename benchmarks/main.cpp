// SPDX-License-Identifier: Apache-2.0

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "report.hpp"

namespace {

using namespace kinovane::benchmarks;

constexpr const char* usage = "usage: kinovane_benchmark [--quick] [--keep] [--figure NUMBER]… FOLDER\n";

Settings settingsFrom(int count, char** arguments) {
    Settings settings;
    std::filesystem::path folder;
    for (int index = 1; index < count; ++index) {
        const std::string_view argument = arguments[index];
        if (argument == "--quick")
            settings.quick = true;
        else if (argument == "--keep")
            settings.keep = true;
        else if (argument == "--figure" && index + 1 < count)
            settings.figures.insert(std::stoi(arguments[++index]));
        else if (folder.empty() && !argument.starts_with("-"))
            folder = std::filesystem::absolute(argument);
        else
            throw std::invalid_argument(usage);
    }
    if (folder.empty())
        throw std::invalid_argument(usage);
    settings.data = folder / "data";
    settings.results = folder / "results.json";
    return settings;
}

} // namespace

/// Measures every figure; writes the data and the results to FOLDER.
int main(int count, char** arguments) {
    try {
        const Settings settings = settingsFrom(count, arguments);
        std::filesystem::create_directories(settings.data);
        Report report(settings.quick);
        // First, because fork is slower in a process with more memory.
        measureProcess(settings, report);
        measureDigests(settings, report);
        measureWrite(settings, report);
        measureLoad(settings, report);
        if (!settings.keep)
            std::filesystem::remove_all(settings.data);
        report.write(settings.results);
        std::cout << (settings.quick ? "\nSmall data and few rounds: these ratios mean nothing.\n" : "\n");
        report.print(std::cout);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
