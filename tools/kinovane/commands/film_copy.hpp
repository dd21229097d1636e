// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/json/object.hpp>

#include <kinovane/workspace.hpp>

#include "commands/copy.hpp"
#include "film/film_tree.hpp"
#include "film/verified_copy.hpp"
#include "session/session.hpp"
#include "terminal/progress_line.hpp"

namespace kinovane::tool {

/// Copies one film, prints what could not be copied as it is found, and keeps the numbers.
class FilmCopy {
  public:
    FilmCopy(const FilmWorkspaceSnapshot& film, const CopyRequest& request, const Session& session);

    /// Throws std::filesystem::filesystem_error when the target cannot be written.
    void run();

    ExitStatus status() const;
    std::string summary() const;

    /// The command that continues an unfinished copy, as a line for a shell.
    std::string continuation() const;

    /// Keys: film, title, target, state, files, copied, present, bytes, seconds, problems.
    boost::json::object json() const;

  private:
    using Inode = std::pair<dev_t, ino_t>;

    struct Problem {
        std::string path;
        std::string_view state;
        std::string reason;
        ExitStatus status;
        bool isIncomplete; ///< Whether the copy lacks something because of it.
    };

    void reportLostFiles();
    void readDigests();
    void readTree();
    void copyTree();
    void copyEntry(const TreeEntry& entry);
    void copyFile(const TreeEntry& file);
    void copyLink(const TreeEntry& link);
    void finishFolders();
    void copyRunManifest();
    void count(const TreeEntry& file, CopyResult result);
    void note(Problem problem);
    void print(const std::string& text);
    bool isComplete() const;

    const FilmWorkspaceSnapshot& film_;
    const CopyRequest& request_;
    const Session& session_;
    std::size_t columns_; ///< Of the terminal.
    ProgressLine line_;
    VerificationProgress progress_;
    VerifiedCopy copy_;
    std::vector<TreeEntry> tree_;
    std::map<Inode, std::set<std::string>> digests_; ///< Of the recorded files.
    std::set<std::filesystem::path> refused_;        ///< Folders whose contents cannot be copied.
    std::vector<Problem> problems_;
    std::size_t copied_ = 0;
    std::size_t present_ = 0;
    std::uint64_t bytes_ = 0; ///< Of the copied files.
    double seconds_ = 0;
    bool isNewFolder_ = false; ///< The target was made by this run.
    bool isInterrupted_ = false;
};

} // namespace kinovane::tool
