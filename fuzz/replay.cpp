// SPDX-License-Identifier: Apache-2.0

// Passes every file of the given folders to a target: replay FOLDER…
// A missing or empty folder is an error, because nothing would be checked.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "target.hpp"

namespace {

namespace fs = std::filesystem;

std::vector<std::uint8_t> bytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<fs::path> filesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        files.push_back(entry.path());
    if (files.empty())
        throw std::runtime_error("no inputs in " + folder.string());
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const fs::path& folder) {
    const std::vector<fs::path> files = filesIn(folder);
    for (const fs::path& file : files) {
        // Printed first, because the target may abort.
        std::printf("%s\n", file.c_str());
        std::fflush(stdout);
        const std::vector<std::uint8_t> bytes = bytesOf(file);
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%zu inputs of %s\n", files.size(), folder.c_str());
}

} // namespace

int main(int count, char** arguments) {
    if (count < 2) {
        std::fputs("usage: replay FOLDER...\n", stderr);
        return 2;
    }
    try {
        for (int index = 1; index < count; ++index)
            replay(arguments[index]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
