// SPDX-License-Identifier: Apache-2.0

#include "workspace.hpp"

#include <array>
#include <cstdlib>
#include <ctime>

#include "common/misbehaviour.hpp"
#include "common/refusal.hpp"

namespace simulator::film {

std::string timeStamp() {
    const char* fixed = std::getenv("FILM_CLOCK");
    if (fixed != nullptr && *fixed != '\0')
        return fixed;
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return {text.data(), length};
}

std::filesystem::path absolutePath(const std::filesystem::path& path) {
    return std::filesystem::absolute(path).lexically_normal();
}

Workspace::Workspace(const std::filesystem::path& runManifest, Access access)
    : runManifest_(absolutePath(runManifest)), root_(runManifest_.parent_path()) {
    if (!std::filesystem::exists(runManifest_))
        throw Refusal("there is no film at " + jsonQuoted(runManifest_.native()));
    if (access == Access::change) {
        // The run manifest is never replaced, so that all processes lock the same file.
        lock_.emplace(File::openRegular(runManifest_));
        lock_->lock();
    }
    project_ = readDocument(path(projectName));
    if (std::filesystem::exists(path(planName)))
        plan_ = readDocument(path(planName));
    if (std::filesystem::exists(path(treatmentName)))
        treatment_ = readDocument(path(treatmentName));
}

std::string Workspace::runId() const {
    // The run manifest may be an empty file: only its location matters.
    try {
        return textOf(readDocument(runManifest_), "runId");
    } catch (const Refusal&) {
        return textOf(project_, "projectId");
    }
}

void Workspace::save() const {
    if (!plan_.empty())
        replaceFile(path(planName), pretty(plan_));
    replaceFile(path(projectName), pretty(project_));
}

void Workspace::saveAndDie() const {
    writeTemporary(path(projectName), pretty(project_));
    dieByKill();
}

} // namespace simulator::film
