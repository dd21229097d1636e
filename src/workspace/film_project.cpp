// SPDX-License-Identifier: Apache-2.0

#include <algorithm>

#include <kinovane/film_project.hpp>

#include "common/json/instances.hpp"
#include "workspace/brief_form.hpp"
#include "workspace/film_project_tables.hpp"

namespace kinovane {

std::string FilmReviewRequest::id() const { return shotId + ":" + recordedAt; }

std::string FilmArtifact::id() const { return kind + ":" + path + ":" + sha256; }

const std::string& FilmIssue::id() const noexcept { return code; }

int FilmProof::completedCount() const noexcept {
    const auto all = steps();
    return static_cast<int>(std::ranges::count(all, true, &FilmProofStep::complete));
}

std::array<FilmProofStep, 10> FilmProof::steps() const noexcept {
    return std::apply(
        [&](const auto&... step) {
            return std::array<FilmProofStep, 10>{FilmProofStep{step.key, this->*step.member}...};
        },
        json::Table<FilmProof>::fields);
}

KINOVANE_JSON_READABLE(FilmProject)
KINOVANE_JSON_READABLE(FilmBrief)
KINOVANE_JSON_WRITABLE(FilmApproval)
KINOVANE_JSON_WRITABLE(FilmDepartmentTask)
KINOVANE_JSON_WRITABLE(FilmShotState)
KINOVANE_JSON_WRITABLE(FilmReviewRequest)
KINOVANE_JSON_WRITABLE(FilmJob)
KINOVANE_JSON_WRITABLE(FilmProductionConfiguration)
KINOVANE_JSON_WRITABLE(FilmModelConfiguration)
KINOVANE_JSON_WRITABLE(FilmArtifact)
KINOVANE_JSON_WRITABLE(FilmProof)
KINOVANE_JSON_WRITABLE(FilmIssue)

} // namespace kinovane
