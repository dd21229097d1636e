// SPDX-License-Identifier: Apache-2.0

#include "memory/record_types.hpp"

#include <ostream>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "agent_runtime/agent_tables.hpp"
#include "common/json/decoder.hpp"
#include "handoff/handoff_tables.hpp"
#include "tooling/film_tool/reply_tables.hpp"
#include "workspace/brief_form.hpp"
#include "workspace/film_project_tables.hpp"
#include "workspace/production_plan_tables.hpp"
#include "workspace/treatment_table.hpp"

namespace kinovane::test {

namespace {

template <class Record>
RecordType recordType(std::string name) {
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

void PrintTo(const RecordType& type, std::ostream* stream) { *stream << type.name; }

std::vector<RecordType> recordTypes() {
    return {
        recordType<FilmProject>("FilmProject"),
        recordType<FilmBrief>("FilmBrief"),
        recordType<FilmApproval>("FilmApproval"),
        recordType<FilmDepartmentTask>("FilmDepartmentTask"),
        recordType<FilmShotState>("FilmShotState"),
        recordType<FilmReviewRequest>("FilmReviewRequest"),
        recordType<FilmJob>("FilmJob"),
        recordType<FilmProductionConfiguration>("FilmProductionConfiguration"),
        recordType<FilmModelConfiguration>("FilmModelConfiguration"),
        recordType<FilmArtifact>("FilmArtifact"),
        recordType<FilmProof>("FilmProof"),
        recordType<FilmIssue>("FilmIssue"),
        recordType<FilmProductionPlan>("FilmProductionPlan"),
        recordType<FilmTarget>("FilmTarget"),
        recordType<FilmCastMember>("FilmCastMember"),
        recordType<FilmLocation>("FilmLocation"),
        recordType<FilmProductionShot>("FilmProductionShot"),
        recordType<FilmDialogueLine>("FilmDialogueLine"),
        recordType<FilmSoundEffect>("FilmSoundEffect"),
        recordType<FilmTreatment>("FilmTreatment"),
        recordType<VistrelHandoff>("VistrelHandoff"),
        recordType<VistrelHandoffSource>("VistrelHandoffSource"),
        recordType<VistrelHandoffProject>("VistrelHandoffProject"),
        recordType<VistrelHandoffShot>("VistrelHandoffShot"),
        recordType<VistrelHandoffAsset>("VistrelHandoffAsset"),
        recordType<VistrelImportReceipt>("VistrelImportReceipt"),
        recordType<FilmStatusResponse>("FilmStatusResponse"),
        recordType<FilmVistrelExportReceipt>("FilmVistrelExportReceipt"),
        recordType<FilmPlanResponse>("FilmPlanResponse"),
        recordType<PiAgentLaunchSpec>("PiAgentLaunchSpec"),
        recordType<QuexRunAgentStatus>("QuexRunAgentStatus"),
        recordType<QuexRunAgentModel>("QuexRunAgentModel"),
        recordType<QuexRunAgentPi>("QuexRunAgentPi"),
    };
}

} // namespace kinovane::test
