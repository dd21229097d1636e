// SPDX-License-Identifier: Apache-2.0

#include "film/document_faults.hpp"

namespace kinovane::tool {

std::vector<PreflightFinding> documentFaults(const FilmWorkspaceSnapshot& film) {
    std::vector<PreflightFinding> findings = VistrelHandoffBuilder::preflight(film, film.root.string());
    std::erase_if(findings, [](const PreflightFinding& finding) {
        return finding.severity != PreflightSeverity::blocking ||
               finding.code == PreflightCode::productionPlanMissing;
    });
    return findings;
}

} // namespace kinovane::tool
