// SPDX-License-Identifier: Apache-2.0

#include "commands/film_copy.hpp"

#include <algorithm>
#include <system_error>

#include <unistd.h>

#include <kinovane/handoff.hpp>

#include "commands/damage_text.hpp"
#include "film/film_location.hpp"
#include "film/staged_file.hpp"
#include "session/failure.hpp"
#include "session/interruption.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

bool isBelowAny(const fs::path& path, const std::set<fs::path>& folders) {
    for (fs::path folder = path.parent_path(); !folder.empty(); folder = folder.parent_path())
        if (folders.contains(folder))
            return true;
    return false;
}

bool isUnfinished(const TreeEntry& entry) {
    return entry.path.filename().native().starts_with(StagedFile::prefix);
}

std::string_view typeText(const TreeEntry& entry) {
    if (S_ISFIFO(entry.status.st_mode))
        return "is a named pipe";
    return S_ISSOCK(entry.status.st_mode) ? "is a socket" : "is a device";
}

} // namespace

FilmCopy::FilmCopy(const FilmWorkspaceSnapshot& film, const CopyRequest& request, const Session& session)
    : film_(film), request_(request), session_(session), columns_(terminalColumns(STDOUT_FILENO, anyColumns)),
      line_(session.console), copy_(film.root, request.target, session.stop, [this](std::uint64_t bytes) {
          progress_.bytesDone += bytes;
          line_.show(progress_);
      }) {}

void FilmCopy::run() {
    try {
        reportLostFiles();
        readDigests();
        readTree();
        copyTree();
        copyRunManifest();
    } catch (const std::system_error& error) {
        if (!isRequestedStop(error))
            throw;
        isInterrupted_ = true;
    }
    seconds_ = line_.seconds();
    line_.erase();
}

/// Tells which recorded files cannot be part of the copy, because they are not in the film's folder.
void FilmCopy::reportLostFiles() {
    std::vector<FilmArtifact> artifacts = film_.project.artifacts;
    for (FilmArtifact& artifact : artifacts)
        artifact.bytes = -1; // Differs from any size, so that no file is read.
    HandoffBuildOptions options;
    options.compareSizes = true;
    options.stop = session_.stop;
    for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::examine(film_.root, artifacts, options))
        if (outcome.refusal || outcome.failure)
            note({outcome.artifact.path, nameOf(stateOf(outcome)), reasonText(outcome, film_.root),
                  outcome.refusal ? ExitStatus::handoff : ExitStatus::fileSystem, false});
}

void FilmCopy::readDigests() {
    for (const FilmArtifact& artifact : film_.project.artifacts) {
        struct stat status{};
        if (artifact.path.find('\0') == std::string::npos &&
            ::stat(film_.artifactURL(artifact).c_str(), &status) == 0)
            digests_[{status.st_dev, status.st_ino}].insert(artifact.sha256);
    }
}

void FilmCopy::readTree() {
    tree_ = treeBelow(film_.root);
    std::erase_if(tree_, isUnfinished);
    for (const TreeEntry& entry : tree_)
        if (entry.isFile()) {
            ++progress_.filesTotal;
            progress_.bytesTotal += static_cast<std::uint64_t>(entry.status.st_size);
        }
    line_.show(progress_);
}

void FilmCopy::copyTree() {
    isNewFolder_ = fs::create_directories(request_.target);
    removeUnfinishedFiles(request_.target);
    for (const TreeEntry& entry : tree_)
        if (entry.path != film_.runManifest.filename() && !isBelowAny(entry.path, refused_))
            copyEntry(entry);
    finishFolders();
}

void FilmCopy::copyEntry(const TreeEntry& entry) {
    if (entry.failure) {
        note({(entry.path / "").string(), "unreadable", shown(entry.failure.message()),
              ExitStatus::fileSystem, true});
    } else if (entry.isFolder()) {
        if (copy_.makeFolder(entry.path) == CopyResult::differs) {
            refused_.insert(entry.path);
            note({entry.path.string(), "differs", "is no folder in the target", ExitStatus::handoff, true});
        }
    } else if (entry.isFile()) {
        copyFile(entry);
    } else if (entry.isLink()) {
        copyLink(entry);
    } else {
        note({entry.path.string(), "skipped", std::string(typeText(entry)), ExitStatus::success, false});
    }
}

void FilmCopy::copyFile(const TreeEntry& file) {
    progress_.path = file.path.string();
    const auto found = digests_.find({file.status.st_dev, file.status.st_ino});
    try {
        count(file, copy_.copyFile(file, found == digests_.end() ? std::set<std::string>() : found->second));
    } catch (const fs::filesystem_error& error) {
        if (error.path1() != film_.root / file.path)
            throw;
        note({file.path.string(), "unreadable", shown(error.code().message()), ExitStatus::fileSystem, true});
    }
    ++progress_.filesDone;
    line_.show(progress_);
}

void FilmCopy::copyLink(const TreeEntry& link) {
    const fs::path text = linkTextInside(film_.root, link.path);
    if (text.empty()) {
        std::error_code ignored;
        const fs::path target = fs::weakly_canonical(film_.root / link.path, ignored);
        note({link.path.string(), "misplaced",
              "a link that leads out of the film's folder, to " + shownPath(target.string()),
              ExitStatus::handoff, true});
    } else if (copy_.makeLink(link.path, text) == CopyResult::differs) {
        note({link.path.string(), "differs", "the target has something else of that name",
              ExitStatus::handoff, true});
    }
}

void FilmCopy::count(const TreeEntry& file, CopyResult result) {
    const auto refuse = [&](std::string_view state, const char* reason, ExitStatus status) {
        note({file.path.string(), state, reason, status, true});
    };
    switch (result) {
    case CopyResult::copied:
        ++copied_;
        bytes_ += static_cast<std::uint64_t>(file.status.st_size);
        break;
    case CopyResult::present:
        ++present_;
        break;
    case CopyResult::differs:
        refuse("differs", "the target has another file of that name, which is not replaced",
               ExitStatus::handoff);
        break;
    case CopyResult::damaged:
        refuse("changed", "its content is not what was recorded, so it was not copied", ExitStatus::handoff);
        break;
    case CopyResult::changed:
        refuse("changed", "it changed while it was copied", ExitStatus::handoff);
        break;
    case CopyResult::notAsWritten:
        refuse("unreadable", "the target's disk does not return what was written", ExitStatus::fileSystem);
        break;
    }
}

void FilmCopy::finishFolders() {
    // Contents first: giving a folder its time must be the last change to it.
    for (auto entry = tree_.rbegin(); entry != tree_.rend(); ++entry)
        if (entry->isFolder() && !refused_.contains(entry->path) && !isBelowAny(entry->path, refused_))
            copy_.finishFolder(*entry);
}

/// Without its run manifest, a folder is no workspace. It is copied only when nothing else is left to copy.
void FilmCopy::copyRunManifest() {
    if (!isComplete())
        return;
    const fs::path name = film_.runManifest.filename();
    if (!(loadFilm(film_.runManifest) == film_)) {
        note({name.string(), "changed", "the film changed while it was copied", ExitStatus::handoff, true});
        return;
    }
    copy_.syncFolder("");
    for (const TreeEntry& entry : tree_)
        if (entry.path == name)
            copyEntry(entry);
    if (TreeEntry root; isNewFolder_ && ::stat(film_.root.c_str(), &root.status) == 0)
        copy_.finishFolder(root);
    else
        copy_.syncFolder("");
}

void FilmCopy::note(Problem problem) {
    // A recorded file may be lost already before its link turns out to lead out; it is told once.
    for (Problem& known : problems_)
        if (known.path == problem.path) {
            known.isIncomplete = known.isIncomplete || problem.isIncomplete;
            return;
        }
    const Style style = problem.status == ExitStatus::handoff ? Style::bad : Style::warning;
    print(pathLine(styled(style, problem.state), problem.path, problem.reason, columns_));
    problems_.push_back(std::move(problem));
}

void FilmCopy::print(const std::string& text) {
    if (!session_.console.options().json)
        line_.outside([&] { session_.console.result(text); });
}

bool FilmCopy::isComplete() const { return std::ranges::none_of(problems_, &Problem::isIncomplete); }

ExitStatus FilmCopy::status() const {
    if (isInterrupted_)
        return statusOfSignal(Interruption::signal());
    ExitStatus status = ExitStatus::success;
    for (const Problem& problem : problems_)
        if (status == ExitStatus::success || problem.status == ExitStatus::handoff)
            status = problem.status;
    return status;
}

} // namespace kinovane::tool
