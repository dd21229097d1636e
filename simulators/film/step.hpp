// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "workspace.hpp"

namespace simulator::film {

/// One change of a film: files are written first, the documents last. Each file is named in the journal
/// before it is touched; after an interrupted step, `recover` undoes what is in the journal but not in the
/// project.
class Step {
  public:
    /// Refuses a film with a journal: its last step was interrupted.
    Step(Workspace& workspace, std::string_view name);

    json::object& project() noexcept { return workspace_.project(); }
    json::object& plan() noexcept { return workspace_.plan(); }
    const std::string& startedAt() const noexcept { return startedAt_; }

    bool has(std::string_view path) { return findArtifact(project(), path) != nullptr; }
    /// Writes a new file, records it and adds the job that made it.
    void make(std::string_view kind, const std::string& path, std::string_view source,
              const std::string& bytes, std::string_view shotId = {});
    void makeJson(std::string_view kind, const std::string& path, std::string_view source,
                  const json::object& content);
    /// Makes a recorded media file; `takes` names the takes that it shows, so that other takes give another
    /// digest.
    void makeMedia(std::string_view kind, const std::string& path, std::string_view source,
                   std::string_view recording, const std::string& takes, std::string_view shotId = {});
    /// Moves a recorded file and records it as an archived take.
    void archive(const std::string& from, const std::string& to);
    /// Removes all files of that kind; they are deleted after the documents no longer name them.
    void removeKind(std::string_view kind);

    /// Sets flags of the project's proof.
    void setProof(const std::vector<std::string_view>& flags, bool value);

    /// Replaces the documents, deletes the removed files, and closes the journal.
    void commit();
    /// Ends this process where commit would have replaced the project.
    [[noreturn]] void breakOff() { workspace_.saveAndDie(); }

  private:
    void note(const json::object& entry);

    Workspace& workspace_;
    std::string startedAt_;
    File journal_;
    std::vector<std::filesystem::path> removed_;
};

/// Refuses a film whose last step was interrupted.
void expectNoJournal(const Workspace& workspace);

} // namespace simulator::film
