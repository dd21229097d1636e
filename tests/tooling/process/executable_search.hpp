// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// The path that was found, or the description of the error.
inline std::string found(const std::string& name) {
    try {
        return FilmToolClient::resolveExecutable(name).string();
    } catch (const FilmToolError& error) {
        return error.errorDescription();
    }
}

inline std::string notFound(const std::string& name) { return "Required executable not found: " + name; }

/// A working directory with the programs "first/tool", "second/tool" and "second/other", and with entries
/// that are not programs. PATH and HOME are restored afterwards.
class ExecutableSearch : public testing::Test {
  protected:
    ExecutableSearch() {
        for (const char* name : {"PATH", "HOME"})
            if (const char* value = std::getenv(name))
                former_.emplace_back(name, value);
        addProgram("first/tool");
        addProgram("second/tool");
        addProgram("second/other");
        directory.write("first/plain", "no program");
        std::filesystem::create_directories(directory / "first/directory");
        std::filesystem::create_symlink("nowhere", directory / "first/dangling");
        std::filesystem::create_symlink("loop", directory / "first/loop");
        std::filesystem::create_symlink("../second/other", directory / "first/link");
        for (const char* name : {"plain", "directory", "dangling", "loop"})
            addProgram("second/" + std::string(name));
        std::filesystem::current_path(directory.path());
    }

    ~ExecutableSearch() override {
        std::filesystem::current_path("/");
        ::unsetenv("PATH");
        ::unsetenv("HOME");
        for (const auto& [name, value] : former_)
            ::setenv(name.c_str(), value.c_str(), 1);
    }

    void addProgram(const std::string& name) const {
        std::filesystem::permissions(directory.write(name, "never run"), std::filesystem::perms::owner_all);
    }

    std::string at(const std::string& name) const { return (directory / name).string(); }

    TemporaryDirectory directory;

  private:
    std::vector<std::pair<std::string, std::string>> former_;
};

inline void setPath(const std::optional<std::string>& path) {
    if (path)
        ::setenv("PATH", path->c_str(), 1);
    else
        ::unsetenv("PATH");
}

} // namespace kinovane::test
