// SPDX-License-Identifier: Apache-2.0

#include "step.hpp"

#include <algorithm>

#include "clock.hpp"
#include "common/json_text.hpp"
#include "common/refusal.hpp"
#include "shots.hpp"

namespace film {
namespace {

/// Ids out of the documents become part of paths, and these must stay inside the workspace.
void expectInside(const std::filesystem::path& path) {
    if (path.is_absolute() || std::ranges::find(path, std::filesystem::path("..")) != path.end()) {
        throw simulator::Refusal("the film's documents are damaged: " + simulator::jsonQuoted(path.native()) +
                                 " does not lie inside the film's folder");
    }
}

std::filesystem::path openableJournal(const Workspace& workspace) {
    expectNoJournal(workspace);
    return workspace.journal();
}

} // namespace

void expectNoJournal(const Workspace& workspace) {
    if (std::filesystem::exists(workspace.journal()))
        throw simulator::Refusal("The last step of this film was cut off. Recover the film first.");
}

Step::Step(Workspace& workspace, std::string_view name)
    : workspace_(workspace), startedAt_(timeStamp()),
      journal_(simulator::File::append(openableJournal(workspace))) {
    note({{"step", std::string(name)}, {"startedAt", startedAt_}});
}

void Step::note(const json::object& entry) { journal_.write(simulator::compact(entry) + '\n'); }

void Step::make(std::string_view kind, const std::string& path, std::string_view source, std::string bytes,
                std::string_view shotId) {
    expectInside(path);
    note({{"creates", path}});
    const std::filesystem::path place = workspace_.place(path);
    std::filesystem::create_directories(place.parent_path());
    simulator::writeWholeFile(place, bytes);
    recordArtifact(project(),
                   {std::string(kind), path, contentTypeOf(path), std::string(source), std::move(bytes)},
                   startedAt_);

    json::array& jobs = listOf(project(), "jobs");
    json::object job{{"id", "job-" + std::to_string(jobs.size() + 1)},
                     {"kind", std::string(kind)},
                     {"status", "completed"}};
    if (!shotId.empty())
        job["shotId"] = std::string(shotId);
    jobs.emplace_back(std::move(job));
    ++made_;
}

void Step::makeJson(std::string_view kind, const std::string& path, std::string_view source,
                    const json::object& content) {
    make(kind, path, source, simulator::pretty(content));
}

void Step::archive(const std::string& from, const std::string& to) {
    json::object* artifact = findArtifact(project(), from);
    if (artifact == nullptr)
        return;
    expectInside(from);
    expectInside(to);
    note({{"moves", from}, {"to", to}});
    const std::filesystem::path target = workspace_.place(to);
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::rename(workspace_.place(from), target);
    (*artifact)["kind"] = "archived-take";
    (*artifact)["path"] = to;
}

void Step::dropKind(std::string_view kind) {
    for (std::string path = latestPath(project(), kind); !path.empty(); path = latestPath(project(), kind)) {
        expectInside(path);
        note({{"removes", path}});
        forgetArtifact(project(), path);
        dropped_.push_back(workspace_.place(path));
    }
}

void Step::commit() {
    project()["updatedAt"] = timeStamp();
    copyShotStates(project(), plan());
    workspace_.save();
    for (const std::filesystem::path& file : dropped_)
        std::filesystem::remove(file);
    std::filesystem::remove(workspace_.journal());
}

void Step::breakOff() { workspace_.saveAndDie(); }

} // namespace film
