// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "artifact_list.hpp"
#include "common/file.hpp"
#include "workspace.hpp"

namespace film {

/// One change of a film: files come first, the documents last. Before a file is touched, the journal says so;
/// after a step that was cut off, `recover` undoes what the journal names and the project does not know.
class Step {
  public:
    /// Refuses a film with a journal: its last step was cut off.
    Step(Workspace& workspace, std::string_view name);

    json::object& project() noexcept { return workspace_.project(); }
    json::object& plan() noexcept { return workspace_.plan(); }
    Workspace& workspace() noexcept { return workspace_; }
    const std::string& startedAt() const noexcept { return startedAt_; }
    /// How many files the step made.
    std::size_t made() const noexcept { return made_; }

    bool has(std::string_view path) { return findArtifact(project(), path) != nullptr; }
    /// Writes a new file, records it and adds the job that made it.
    void make(std::string_view kind, const std::string& path, std::string_view source, std::string bytes,
              std::string_view shotId = {});
    void makeJson(std::string_view kind, const std::string& path, std::string_view source,
                  const json::object& content);
    /// Moves a recorded file to another place and records it there as an archived take.
    void archive(const std::string& from, const std::string& to);
    /// Forgets every file of that kind; the files go once the documents no longer name them.
    void dropKind(std::string_view kind);

    /// Replaces the documents, deletes what was dropped, and closes the journal.
    void commit();
    /// Ends this process where commit would have replaced the project.
    [[noreturn]] void breakOff();

  private:
    void note(const json::object& entry);

    Workspace& workspace_;
    std::string startedAt_;
    simulator::File journal_;
    std::vector<std::filesystem::path> dropped_;
    std::size_t made_ = 0;
};

/// Refuses a film whose last step was cut off.
void expectNoJournal(const Workspace& workspace);

} // namespace film
