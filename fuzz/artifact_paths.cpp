// SPDX-License-Identifier: Apache-2.0

// Where an artifact's path leads: the examination and an independent model agree on every path in a tree of
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

/// A low byte of the input stands for one of these names; those in a row are parted by slashes. The byte
/// after them stands for NUL, the two highest for what is named below, and every other one for itself. Kept
/// inputs rely on the order.
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
constexpr unsigned longByte = 255;  ///< "." and so many slashes that three of them make a path too long.
constexpr std::size_t longCount = 1400;

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
            path.append(".").append(longCount, '/');
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
    promise(failure == std::errc::operation_not_supported, "the tree holds nothing else that cannot be read",
            path);
    return Verdict::noRegularFile;
}

/// One of the directories that are taken for a project's, with what an audit makes for it once.
class Project {
  public:
    explicit Project(std::string root) : root_(std::move(root)), directory_(root_) {}
    Project(const Project&) = delete; // The examiner keeps to its directory.
    Project& operator=(const Project&) = delete;
    ~Project() = default;

    const std::string& root() const { return root_; }

    Verdict examined(const FilmArtifact& artifact) {
        try {
            examiner_.examine(artifact, {});
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
        promise(!outcome.refusal || !outcome.failure, "an artifact has one fault", artifact.path);
        promise(outcome.sound() == (!outcome.refusal && !outcome.failure), "sound is what has no fault",
                artifact.path);
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
    promise(project.examined(artifact) == expected, "an artifact's path leads where it leads", what);
    // A whole audit costs as much as the examination of many artifacts, so only few inputs have one.
    constexpr std::size_t firstAudited = 250;
    if (choice >= firstAudited && input.size() % 8 == 0)
        promise(project.audited(artifact) == expected, "an audit finds the same", what);
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
