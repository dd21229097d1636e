// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <regex>
#include <string>

#include <sys/stat.h>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

/// A copy of the sample film that a test may damage.
class FilmCopy {
  public:
    FilmCopy() { std::filesystem::copy(sampleFilm(), root(), std::filesystem::copy_options::recursive); }

    std::filesystem::path root() const { return directory_ / "film"; }
    std::filesystem::path outside() const { return directory_ / "elsewhere"; }

    void change(const std::string& path) const {
        std::string content = contentOf(root() / path);
        content.front() = static_cast<char>(content.front() + 1);
        directory_.write("film/" + path, content);
    }
    void cut(const std::string& path) const { std::filesystem::resize_file(root() / path, 1000); }
    void remove(const std::string& path) const { std::filesystem::remove(root() / path); }
    void linkOutside(const std::string& path) const {
        std::filesystem::rename(root() / path, outside());
        std::filesystem::create_symlink(outside(), root() / path);
    }
    void makeFolder(const std::string& path) const {
        remove(path);
        std::filesystem::create_directory(root() / path);
    }
    void makePipe(const std::string& path) const {
        remove(path);
        ::mkfifo((root() / path).c_str(), 0600);
    }

  private:
    TemporaryDirectory directory_;
};

/// The output with "{TIME}" in place of the duration and the rate, which depend on the machine.
inline Outcome withoutTimes(Outcome outcome) {
    static const std::regex times("in ([0-9]+ min )?[0-9.]+ m?s(, [0-9.]+ [kMGT]?B/s)?");
    outcome.out = std::regex_replace(outcome.out, times, "in {TIME}");
    outcome.err = std::regex_replace(outcome.err, times, "in {TIME}");
    return outcome;
}

} // namespace kinovane::test
