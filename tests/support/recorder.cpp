// SPDX-License-Identifier: Apache-2.0

#include "support/recorder.hpp"

#include <algorithm>

#include <unistd.h>

#include "programs/numbered_lines.hpp"
#include "support/sample_film.hpp"

#ifdef __APPLE__
#include <crt_externs.h>
#define environ (*_NSGetEnviron())
#else
extern char** environ; // NOLINT(readability-redundant-declaration): not every C library's header declares it
#endif

namespace kinovane::test {

namespace {

/// The texts of a file in which each text ends with a NUL byte.
std::vector<std::string> textsOf(const std::filesystem::path& file) {
    const std::string content = contentOf(file);
    std::vector<std::string> texts;
    std::size_t start = 0;
    for (std::size_t end = content.find('\0'); end != std::string::npos; end = content.find('\0', start)) {
        texts.push_back(content.substr(start, end - start));
        start = end + 1;
    }
    if (start != content.size())
        texts.push_back("not terminated: " + content.substr(start));
    return texts;
}

} // namespace

Recorder::Recorder(const std::string& output)
    : argumentsFile_("RECORDER_FILE", directory_ / "arguments"),
      environmentFile_("RECORDER_ENVIRONMENT", directory_ / "environment"),
      output_("RECORDER_OUTPUT", output) {}

std::string Recorder::path() { return programPath("recorder"); }

bool Recorder::ran() const { return std::filesystem::exists(directory_ / "arguments"); }

std::vector<std::string> Recorder::arguments() const { return textsOf(directory_ / "arguments"); }

std::vector<std::string> Recorder::environment() const {
    std::vector<std::string> entries = textsOf(directory_ / "environment");
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::vector<std::string> ownEnvironment() {
    std::vector<std::string> entries;
    for (char** entry = environ; *entry != nullptr; ++entry)
        entries.emplace_back(*entry);
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::filesystem::path brokenProgram(const TemporaryDirectory& directory) {
    std::filesystem::path file = directory.write("broken program", "This is no program.\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
}

std::string longText() { return numberedLines("a long story,", 100'000); }

} // namespace kinovane::test
