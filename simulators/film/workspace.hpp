// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "common/file.hpp"
#include "documents.hpp"

namespace simulator::film {

enum class Access {
    read,
    /// Holds the film's lock: only one process at a time changes a film.
    change
};

/// The folder of one film, with its documents as they were when it was opened.
class Workspace {
  public:
    Workspace(const std::filesystem::path& runManifest, Access access);

    const std::filesystem::path& root() const noexcept { return root_; }
    const std::filesystem::path& runManifest() const noexcept { return runManifest_; }
    std::filesystem::path journal() const { return root_ / "film-journal.jsonl"; }
    std::filesystem::path path(std::string_view relativePath) const { return root_ / relativePath; }

    json::object& project() noexcept { return project_; }
    const json::object& project() const noexcept { return project_; }
    /// Empty when the film has no plan.
    json::object& plan() noexcept { return plan_; }
    const json::object& plan() const noexcept { return plan_; }
    const std::optional<json::object>& treatment() const noexcept { return treatment_; }
    std::string runId() const;

    /// Replaces plan and project on disk; the project comes last, because recovery goes by it.
    void save() const;
    /// Ends this process in the middle of save: the new project exists as a temporary file only.
    [[noreturn]] void saveAndDie() const;

  private:
    std::filesystem::path runManifest_, root_;
    std::optional<File> lock_;
    json::object project_, plan_;
    std::optional<json::object> treatment_;
};

inline constexpr const char* projectName = "film-project.json";
inline constexpr const char* planName = "production-plan.json";
/// One line of JSON for each call of this program.
inline constexpr const char* logName = "film-tool-log.jsonl";
inline constexpr const char* treatmentName = "treatment.json";

/// The value of the environment variable FILM_CLOCK, or else the current time in UTC as
/// 2026-03-01T14:05:09Z.
std::string timeStamp();

/// The absolute path without "." and "..".
std::filesystem::path absolutePath(const std::filesystem::path& path);

/// Where the film stands, computed from its documents.
json::object statusOf(const Workspace& workspace);

} // namespace simulator::film
