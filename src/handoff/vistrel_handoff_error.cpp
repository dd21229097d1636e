// SPDX-License-Identifier: Apache-2.0

#include <kinovane/handoff.hpp>

#include "common/overloaded.hpp"

namespace kinovane {

std::string VistrelHandoffErrorCases::describe(const Case& value) {
    return std::visit(
        Overloaded{
            [](const unsafeArtifactPath& error) {
                return "The handoff contains an unsafe artifact path: " + error.path;
            },
            [](const missingArtifact& error) { return "The handoff artifact is missing: " + error.path; },
            [](const hashMismatch& error) {
                return "Artifact hash mismatch for " + error.path + ". Expected " + error.expected +
                       ", got " + error.actual + ".";
            },
            [](const productionPlanMissing& /*error*/) {
                return std::string("An accepted production plan is required before publishing to Vistrel.");
            },
        },
        value);
}

VistrelHandoffError::~VistrelHandoffError() = default;

} // namespace kinovane
