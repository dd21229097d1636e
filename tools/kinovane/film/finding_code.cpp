// SPDX-License-Identifier: Apache-2.0

#include "film/finding_code.hpp"

namespace kinovane::tool {

std::string_view nameOf(PreflightCode code) {
    switch (code) {
    case PreflightCode::productionPlanMissing:
        return "productionPlanMissing";
    case PreflightCode::pathRecordedTwice:
        return "pathRecordedTwice";
    case PreflightCode::durationOutOfRange:
        return "durationOutOfRange";
    case PreflightCode::timelineOutOfRange:
        return "timelineOutOfRange";
    case PreflightCode::unsafePath:
        return "unsafePath";
    case PreflightCode::malformedDigest:
        return "malformedDigest";
    case PreflightCode::notEncodable:
        return "notEncodable";
    case PreflightCode::gateNotApproved:
        return "gateNotApproved";
    case PreflightCode::blockingIssue:
        return "blockingIssue";
    case PreflightCode::proofStepIncomplete:
        return "proofStepIncomplete";
    case PreflightCode::planOfOtherProject:
        return "planOfOtherProject";
    case PreflightCode::shotIdRepeated:
        return "shotIdRepeated";
    case PreflightCode::keyframeMissing:
        return "keyframeMissing";
    case PreflightCode::clipMissing:
        return "clipMissing";
    case PreflightCode::negativeDuration:
        return "negativeDuration";
    }
    return "unknown";
}

} // namespace kinovane::tool
