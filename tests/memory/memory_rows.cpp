// SPDX-License-Identifier: Apache-2.0

#include <ostream>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "agent_runtime/agent_tables.hpp"
#include "common/json/decoder.hpp"
#include "handoff/handoff_tables.hpp"
#include "memory/memory_row.hpp"
#include "tooling/film_tool/reply_tables.hpp"
#include "workspace/brief_form.hpp"
#include "workspace/film_project_tables.hpp"
#include "workspace/production_plan_tables.hpp"
#include "workspace/treatment_table.hpp"

namespace kinovane::test {

namespace {

template <class Record>
MemoryRow row(std::string name) {
    return {std::move(name), &json::shapeOf<Record>(), [](std::string_view document) {
                try {
                    static_cast<void>(json::decode<Record>(document));
                    return true;
                } catch (const JSONDecodingError&) {
                    return false;
                }
            }};
}

} // namespace

void PrintTo(const MemoryRow& row, std::ostream* stream) { *stream << row.name; }

std::vector<MemoryRow> memoryRows() {
    return {
        row<FilmProject>("FilmProject"),
        row<FilmBrief>("FilmBrief"),
        row<FilmApproval>("FilmApproval"),
        row<FilmDepartmentTask>("FilmDepartmentTask"),
        row<FilmShotState>("FilmShotState"),
        row<FilmReviewRequest>("FilmReviewRequest"),
        row<FilmJob>("FilmJob"),
        row<FilmProductionConfiguration>("FilmProductionConfiguration"),
        row<FilmModelConfiguration>("FilmModelConfiguration"),
        row<FilmArtifact>("FilmArtifact"),
        row<FilmProof>("FilmProof"),
        row<FilmIssue>("FilmIssue"),
        row<FilmProductionPlan>("FilmProductionPlan"),
        row<FilmTarget>("FilmTarget"),
        row<FilmCastMember>("FilmCastMember"),
        row<FilmLocation>("FilmLocation"),
        row<FilmProductionShot>("FilmProductionShot"),
        row<FilmDialogueLine>("FilmDialogueLine"),
        row<FilmSoundEffect>("FilmSoundEffect"),
        row<FilmTreatment>("FilmTreatment"),
        row<VistrelHandoff>("VistrelHandoff"),
        row<VistrelHandoffSource>("VistrelHandoffSource"),
        row<VistrelHandoffProject>("VistrelHandoffProject"),
        row<VistrelHandoffShot>("VistrelHandoffShot"),
        row<VistrelHandoffAsset>("VistrelHandoffAsset"),
        row<VistrelImportReceipt>("VistrelImportReceipt"),
        row<FilmStatusResponse>("FilmStatusResponse"),
        row<FilmVistrelExportReceipt>("FilmVistrelExportReceipt"),
        row<FilmPlanResponse>("FilmPlanResponse"),
        row<PiAgentLaunchSpec>("PiAgentLaunchSpec"),
        row<QuexRunAgentStatus>("QuexRunAgentStatus"),
        row<QuexRunAgentModel>("QuexRunAgentModel"),
        row<QuexRunAgentPi>("QuexRunAgentPi"),
    };
}

} // namespace kinovane::test
