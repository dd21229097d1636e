// SPDX-License-Identifier: Apache-2.0

// The examination of an artifact and an independent model of path resolution agree on every path in a tree of
// directories and links.

#include <array>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include <kinovane/handoff.hpp>

#include "film_tree.hpp"
#include "handoff/artifact_examiner.hpp"
#include "handoff/project_directory.hpp"
#include "path_model.hpp"
#include "promise.hpp"
#include "support/temporary_directory.hpp"
#include "target.hpp"

namespace kinovane::fuzz {
namespace {

/// A byte of the input below 45 encodes one of these names; consecutive names are separated by slashes. Byte
/// 45 encodes NUL, the two highest bytes are below, and every other byte encodes itself. The regression
/// corpus depends on the order.
constexpr std::string_view names[] = {"a.png",
                                      "b.png",
                                      "frames",
                                      "deep",
                                      "here",
                                      "above",
                                      "out",
                                      "film",
                                      "outside",
                                      "back",
                                      "home",
                                      "in",
                                      "in-frames",
                                      "in-deep",
                                      "in-slash",
                                      "top",
                                      "out-file",
                                      "out-and-in",
                                      "full",
                                      "full-out",
                                      "full-given",
                                      "longer",
                                      "shorter",
                                      "nowhere",
                                      "nowhere-out",
                                      "nowhere-back",
                                      "nowhere-climb",
                                      "nowhere-return",
                                      "through-file",
                                      "loop",
                                      "ping",
                                      "loop-out",
                                      "pipe",
                                      "in-pipe",
                                      "out-pipe",
                                      "up",
                                      "higher",
                                      "nothing",
                                      "..",
                                      ".",
                                      "given",
                                      "..b",
                                      "...",
                                      "fil",
                                      "film-other"};
static_assert(std::size(names) == 45);

constexpr unsigned magicByte = 254; ///< The name "magic".
constexpr unsigned longByte = 255;  ///< "." and many slashes; three of them make a path too long.
constexpr std::size_t slashCount = 1400;

std::string pathOf(std::string_view input) {
    std::string path;
    bool afterName = false;
    for (const char byte : input) {
        const auto number = static_cast<unsigned char>(byte);
        const bool isName = number < std::size(names) || number == magicByte;
        if ((isName || number == longByte) && afterName)
            path += '/';
        if (isName)
            path += number == magicByte ? "magic" : names[number];
        else if (number == longByte)
            path.append(".").append(slashCount, '/');
        else if (number == std::size(names))
            path += '\0';
        else
            path += byte;
        afterName = isName;
    }
    return path;
}

using Error = VistrelHandoffError;

Verdict verdictOf(const VistrelHandoffError& refusal, const std::string& path) {
    if (refusal == Error(Error::unsafeArtifactPath{path}))
        return Verdict::unsafe;
    if (refusal == Error(Error::missingArtifact{path}))
        return Verdict::missing;
    promise(refusal == Error(Error::hashMismatch{path, std::string(soundDigest), std::string(changedDigest)}),
            "a refusal names the artifact's path", refusal.what());
    return Verdict::changed;
}

Verdict verdictOf(std::error_code failure, const std::string& path) {
    if (failure == std::errc::is_a_directory)
        return Verdict::directory;
    promise(failure == std::errc::operation_not_supported, "the tree holds no other file that cannot be read",
            path);
    return Verdict::noRegularFile;
}

/// One of the directories that are used as a project's directory, with the examiner of its artifacts.
class Project {
  public:
    explicit Project(std::string root) : root_(std::move(root)), directory_(root_) {}
    Project(const Project&) = delete; // The examiner refers to directory_.
    Project& operator=(const Project&) = delete;
    ~Project() = default;

    const std::string& root() const { return root_; }

    Verdict examined(const FilmArtifact& artifact) {
        try {
            RegularFile file = examiner_.open(artifact);
            examiner_.requireDigest(artifact, file, {});
            return Verdict::sound;
        } catch (const VistrelHandoffError& error) {
            return verdictOf(error, artifact.path);
        } catch (const std::filesystem::filesystem_error& error) {
            return verdictOf(error.code(), artifact.path);
        }
    }

    Verdict audited(const FilmArtifact& artifact) const {
        FilmWorkspaceSnapshot snapshot;
        snapshot.root = root_;
        snapshot.project.artifacts = {artifact};
        const auto outcomes = VistrelHandoffBuilder::audit(snapshot);
        promise(outcomes.size() == 1, "an audit has one outcome for one artifact");
        const ArtifactOutcome& outcome = outcomes.front();
        promise(!outcome.refusal || !outcome.failure, "an artifact has one kind of failure", artifact.path);
        promise(outcome.sound() == (!outcome.refusal && !outcome.failure),
                "an artifact is sound when it has no failure", artifact.path);
        if (outcome.refusal)
            return verdictOf(*outcome.refusal, artifact.path);
        return outcome.failure ? verdictOf(outcome.failure, artifact.path) : Verdict::sound;
    }

  private:
    std::string root_;
    ProjectDirectory directory_;
    ArtifactExaminer examiner_{directory_, false};
};

void compare(std::size_t choice, std::string_view input) {
    static const test::TemporaryDirectory area;
    static const FilmTree tree(area.path());
    static std::array<Project, 5> projects = {Project(area / "film"), Project(area / "given"),
                                              Project(area / "film/frames"), Project(area / "film/here/"),
                                              Project(area / "outside/home")};
    Project& project = projects[choice % projects.size()];
    const FilmArtifact artifact{7,     "image/png", "", "poster", pathOf(input), std::string(soundDigest),
                                "film"};
    const Verdict expected = verdictOf(tree, project.root(), artifact.path);
    const std::string what = project.root() + " : " + artifact.path;
    promise(project.examined(artifact) == expected, "the examination and the model agree", what);
    // A whole audit is as slow as the examination of many artifacts, so only few inputs get one.
    constexpr std::size_t firstAudited = 250;
    if (choice >= firstAudited && input.size() % 8 == 0)
        promise(project.audited(artifact) == expected, "the audit and the model agree", what);
}

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    const std::string_view input = textOf(data, size);
    if (!input.empty())
        compare(static_cast<unsigned char>(input.front()), input.substr(1));
    return 0;
}
