// SPDX-License-Identifier: Apache-2.0

#include "workspace.hpp"

#include <csignal>
#include <cstdlib>

#include "common/json_text.hpp"
#include "common/refusal.hpp"

namespace film {

std::filesystem::path absolutePath(const std::filesystem::path& path) {
    return std::filesystem::absolute(path).lexically_normal();
}

Workspace::Workspace(const std::filesystem::path& runManifest, Access access)
    : runManifest_(absolutePath(runManifest)), root_(runManifest_.parent_path()) {
    if (!std::filesystem::exists(runManifest_))
        throw simulator::Refusal("there is no film at " + simulator::jsonQuoted(runManifest_.native()));
    if (access == Access::change) {
        // The run manifest is written once and never replaced, so everybody locks the same file.
        lock_.emplace(simulator::File::openRegular(runManifest_));
        lock_->lock();
    }
    project_ = readDocument(place(projectName));
    if (std::filesystem::exists(place(planName)))
        plan_ = readDocument(place(planName));
    if (std::filesystem::exists(place(treatmentName)))
        treatment_ = readDocument(place(treatmentName));
}

std::string Workspace::runId() const {
    // The run manifest may be an empty file: its place is what matters.
    try {
        return textOf(readDocument(runManifest_), "runId");
    } catch (const simulator::Refusal&) {
        return textOf(project_, "projectId");
    }
}

void Workspace::save() const {
    if (!plan_.empty())
        simulator::replaceFile(place(planName), simulator::pretty(plan_));
    simulator::replaceFile(place(projectName), simulator::pretty(project_));
}

void Workspace::saveAndDie() const {
    simulator::writeUnfinished(place(projectName), simulator::pretty(project_));
    std::raise(SIGKILL);
    std::abort();
}

} // namespace film
