// SPDX-License-Identifier: Apache-2.0

#include "step.hpp"

#include <algorithm>

#include "common/refusal.hpp"
#include "media.hpp"
#include "shots.hpp"

namespace simulator::film {
namespace {

/// Ids in the documents become components of paths, and these must stay inside the workspace.
void expectInside(const std::filesystem::path& path) {
    if (path.is_absolute() || std::ranges::find(path, std::filesystem::path("..")) != path.end()) {
        throw Refusal("the film's documents are damaged: " + jsonQuoted(path.native()) +
                      " does not lie inside the film's folder");
    }
}

std::filesystem::path newJournal(const Workspace& workspace) {
    expectNoJournal(workspace);
    return workspace.journal();
}

} // namespace

void expectNoJournal(const Workspace& workspace) {
    if (std::filesystem::exists(workspace.journal()))
        throw Refusal("The last step of this film was cut off. Recover the film first.");
}

Step::Step(Workspace& workspace, std::string_view name)
    : workspace_(workspace), startedAt_(timeStamp()), journal_(File::append(newJournal(workspace))) {
    note({{"step", name}, {"startedAt", startedAt_}});
}

void Step::note(const json::object& entry) { journal_.write(json::serialize(entry) + '\n'); }

void Step::make(std::string_view kind, const std::string& path, std::string_view source,
                const std::string& bytes, std::string_view shotId) {
    expectInside(path);
    note({{"creates", path}});
    std::filesystem::create_directories(workspace_.path(path).parent_path());
    writeWholeFile(workspace_.path(path), bytes);
    recordArtifact(project(), kind, path, source, bytes, startedAt_);

    json::array& jobs = listOf(project(), "jobs");
    json::object job{
        {"id", "job-" + std::to_string(jobs.size() + 1)}, {"kind", kind}, {"status", "completed"}};
    if (!shotId.empty())
        job["shotId"] = shotId;
    jobs.emplace_back(std::move(job));
}

void Step::makeJson(std::string_view kind, const std::string& path, std::string_view source,
                    const json::object& content) {
    make(kind, path, source, pretty(content));
}

void Step::makeMedia(std::string_view kind, const std::string& path, std::string_view source,
                     std::string_view recording, const std::string& takes, std::string_view shotId) {
    const std::string film = textOf(project(), "projectId");
    make(kind, path, source, mediaFile(recording, film + ", " + path + ", " + takes), shotId);
}

void Step::archive(const std::string& from, const std::string& to) {
    json::object* artifact = findArtifact(project(), from);
    if (artifact == nullptr)
        return;
    expectInside(from);
    expectInside(to);
    note({{"moves", from}, {"to", to}});
    std::filesystem::create_directories(workspace_.path(to).parent_path());
    std::filesystem::rename(workspace_.path(from), workspace_.path(to));
    (*artifact)["kind"] = "archived-take";
    (*artifact)["path"] = to;
}

void Step::removeKind(std::string_view kind) {
    for (std::string path = latestPath(project(), kind); !path.empty(); path = latestPath(project(), kind)) {
        expectInside(path);
        note({{"removes", path}});
        removeRecords(listOf(project(), "artifacts"), "path", path);
        removed_.push_back(workspace_.path(path));
    }
}

void Step::setProof(const std::vector<std::string_view>& flags, bool value) {
    for (const std::string_view flag : flags)
        recordOf(project(), "proof")[flag] = value;
}

void Step::commit() {
    project()["updatedAt"] = timeStamp();
    copyShotStates(project(), plan());
    workspace_.save();
    for (const std::filesystem::path& file : removed_)
        std::filesystem::remove(file);
    std::filesystem::remove(workspace_.journal());
}

} // namespace simulator::film
