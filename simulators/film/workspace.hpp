// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "common/file.hpp"
#include "documents.hpp"

namespace film {

enum class Access {
    look,
    /// Waits until no other process changes the film, and keeps the others waiting.
    change
};

/// The folder of one film, with its documents as they were when it was opened.
class Workspace {
  public:
    Workspace(const std::filesystem::path& runManifest, Access access);

    const std::filesystem::path& root() const noexcept { return root_; }
    const std::filesystem::path& runManifest() const noexcept { return runManifest_; }
    std::filesystem::path journal() const { return root_ / "film-journal.jsonl"; }
    std::filesystem::path place(std::string_view relativePath) const { return root_ / relativePath; }

    json::object& project() noexcept { return project_; }
    const json::object& project() const noexcept { return project_; }
    json::object& plan() noexcept { return plan_; }
    const json::object& plan() const noexcept { return plan_; }
    const std::optional<json::object>& treatment() const noexcept { return treatment_; }
    std::string runId() const;

    /// Puts plan and project in the place of what is on the disk, the project last: it decides what is true.
    void save() const;
    /// Ends this process in the middle of save: the new project lies there under another name.
    [[noreturn]] void saveAndDie() const;

  private:
    std::filesystem::path runManifest_, root_;
    std::optional<simulator::File> lock_;
    json::object project_, plan_;
    std::optional<json::object> treatment_;
};

inline constexpr std::string_view projectName = "film-project.json";
inline constexpr std::string_view planName = "production-plan.json";
inline constexpr std::string_view treatmentName = "treatment.json";

/// The location as an absolute one, without "." and "..".
std::filesystem::path absolutePath(const std::filesystem::path& path);

} // namespace film
