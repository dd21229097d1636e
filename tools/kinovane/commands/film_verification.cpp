// SPDX-License-Identifier: Apache-2.0

#include "commands/film_verification.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include <kinovane/handoff.hpp>

#include "commands/damage_text.hpp"
#include "film/document_faults.hpp"
#include "film/exported_files.hpp"
#include "film/staged_file.hpp"
#include "session/failure.hpp"
#include "terminal/display_width.hpp"
#include "terminal/human_text.hpp"
#include "terminal/progress_line.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

std::string normalized(const std::string& path) { return fs::path(path).lexically_normal().string(); }

/// Whether the path is that of a document, which belongs to the film although it is not handed over as a
/// file.
bool isDocument(const FilmWorkspaceSnapshot& film, const std::string& path) {
    const std::string name = normalized(path);
    return name == film.runManifest.filename() || name == FilmWorkspaceDocument::project ||
           name == FilmWorkspaceDocument::productionPlan || name == FilmWorkspaceDocument::treatment;
}

std::vector<FilmArtifact> chosenArtifacts(const FilmWorkspaceSnapshot& film, bool all) {
    std::vector<FilmArtifact> chosen;
    for (const FilmArtifact& artifact : film.project.artifacts)
        if (all || isExported(artifact) || isDocument(film, artifact.path))
            chosen.push_back(artifact);
    return chosen;
}

/// The findings about the documents that no examined file tells as well.
std::vector<PreflightFinding> findingsOf(const FilmWorkspaceSnapshot& film) {
    std::vector<PreflightFinding> findings = documentFaults(film);
    std::erase_if(findings, [](const PreflightFinding& finding) {
        return finding.code == PreflightCode::unsafePath || finding.code == PreflightCode::malformedDigest;
    });
    return findings;
}

/// The verification of one film.
class Verification {
  public:
    Verification(const FilmWorkspaceSnapshot& film, const fs::path& location, const VerifyRequest& request,
                 const Session& session)
        : film_(film), request_(request), console_(session.console), progress_(session.console),
          columns_(terminalColumns(STDOUT_FILENO, anyColumns)) {
        report_.film = &film;
        report_.location = location;
        options_.workers = request.workers;
        options_.compareSizes = true;
        options_.stop = session.stop;
        options_.onProgress = progress_.callback();
    }

    VerificationReport run(const std::vector<Checksum>& list) {
        report_.findings = findingsOf(film_);
        for (const PreflightFinding& finding : report_.findings)
            print(findingText(finding));
        try {
            examineArtifacts();
            if (request_.checksums)
                compare(list, *request_.checksums);
            if (request_.writeChecksums)
                writeChecksums(*request_.writeChecksums);
            if (request_.unrecorded)
                listUnrecorded();
        } catch (const std::system_error& error) {
            if (!isRequestedStop(error))
                throw;
            report_.isInterrupted = true;
            report_.seconds = progress_.seconds();
        }
        progress_.erase();
        print(report_.summary(columns_));
        return std::move(report_);
    }

  private:
    /// Writes to standard output, or to standard error if that is where the checksums go.
    void print(const std::string& text) {
        if (console_.options().json)
            return;
        progress_.outside([&] {
            if (isStandardOutput(request_.writeChecksums))
                console_.message(text);
            else
                console_.result(text);
        });
    }

    std::string findingText(const PreflightFinding& finding) const {
        std::string text;
        std::string word = styled(Style::bad, "documents") + "   ";
        for (const std::string& line :
             wrapped(shown(finding.text), std::max(columns_, 2 * wordColumns) - wordColumns)) {
            text += word + line + "\n";
            word.assign(wordColumns, ' ');
        }
        return text;
    }

    void examineArtifacts() {
        const std::vector<FilmArtifact> chosen = chosenArtifacts(film_, request_.all);
        report_.chosen = chosen.size();
        HandoffBuildOptions options = options_;
        options.onOutcome = [this](const ArtifactOutcome& outcome) {
            report_.outcomes.push_back(outcome);
            if (!outcome.sound() || console_.options().verbose)
                print(fileText(outcome, film_.root, columns_, console_.options().verbose));
        };
        examined_ = VistrelHandoffBuilder::examine(film_.root, chosen, options);
        report_.seconds = progress_.seconds();
    }

    void compare(const std::vector<Checksum>& list, const fs::path& file) {
        ChecksumReport& checksums = report_.checksums.emplace();
        checksums.file = file.string();
        checksums.listed = list.size();
        std::multimap<std::string, const FilmArtifact*> recorded;
        for (const FilmArtifact& artifact : film_.project.artifacts)
            recorded.emplace(normalized(artifact.path), &artifact);
        std::vector<FilmArtifact> others;
        for (const Checksum& checksum : list) {
            const auto [begin, end] = recorded.equal_range(normalized(checksum.path));
            if (begin == end)
                others.push_back(artifactOf(checksum));
            else if (std::none_of(begin, end, [&](const auto& entry) {
                         return entry.second->sha256 == checksum.digest;
                     })) {
                checksums.differing.push_back(checksum.path);
                print(pathLine(styled(Style::bad, "differs"), checksum.path,
                               "the list and the project have different digests", columns_));
            }
        }
        HandoffBuildOptions options = options_;
        options.compareSizes = false;
        options.onOutcome = [&](const ArtifactOutcome& outcome) {
            checksums.outcomes.push_back(outcome);
            const FileState state = stateOf(outcome);
            if (state != FileState::sound)
                print(pathLine(
                    styled(state == FileState::unreadable ? Style::warning : Style::bad, nameOf(state)),
                    outcome.artifact.path,
                    state == FileState::changed ? "its content is not what was listed"
                                                : reasonText(outcome, film_.root),
                    columns_));
        };
        VistrelHandoffBuilder::examine(film_.root, others, options);
    }

    FilmArtifact artifactOf(const Checksum& checksum) const {
        FilmArtifact artifact;
        artifact.path = checksum.path;
        artifact.sha256 = checksum.digest;
        struct stat status{};
        if (::stat((film_.root / checksum.path).c_str(), &status) == 0)
            artifact.bytes = status.st_size; // Only for the progress.
        return artifact;
    }

    void writeChecksums(const fs::path& file) {
        std::string list;
        std::set<std::string> written;
        for (const ArtifactOutcome& outcome : examined_)
            if (outcome.sound() && written.insert(outcome.artifact.path).second)
                list += checksumLine({outcome.artifact.path, outcome.artifact.sha256});
        progress_.erase();
        if (isStandardOutput(request_.writeChecksums)) {
            console_.bytes(list);
            return;
        }
        writeFile(file, list);
        console_.step("Wrote the digests of " + countText(written.size(), "file", "files") + " to " +
                      shownPath(file.string()) + "\n");
    }

    void listUnrecorded() {
        for (const UnrecordedFile& file : report_.unrecorded.emplace(unrecordedFiles(film_)))
            print(pathLine("unrecorded", file.path,
                           file.bytes ? sizeText(static_cast<std::int64_t>(*file.bytes)) : file.remark,
                           columns_));
    }

    const FilmWorkspaceSnapshot& film_;
    const VerifyRequest& request_;
    const Console& console_;
    ProgressLine progress_;
    std::size_t columns_;
    HandoffBuildOptions options_;
    VerificationReport report_;
    std::vector<ArtifactOutcome> examined_; ///< In the order of the project.
};

} // namespace

bool isStandardOutput(const std::optional<fs::path>& path) { return path && *path == "-"; }

VerificationReport verifyFilm(const FilmWorkspaceSnapshot& film, const std::filesystem::path& location,
                              const VerifyRequest& request, const std::vector<Checksum>& list,
                              const Session& session) {
    return Verification(film, location, request, session).run(list);
}

} // namespace kinovane::tool
