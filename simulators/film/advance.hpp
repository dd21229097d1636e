// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "workspace.hpp"

namespace simulator::film {

/// Takes the film through one phase after the other, up to the next gate that is not approved. Answers what
/// was done, as JSON. A film that stands before such a gate already is refused. `cutOff` ends this process in
/// the middle of the first phase.
std::string advance(Workspace& workspace, bool cutOff);

/// Records the approval of a gate. An unknown gate is refused, and so is one that is approved already; a gate
/// may be approved before the film stands before it.
std::string approve(Workspace& workspace, const std::string& gate, const std::string& note,
                    const std::string& approvedBy);

} // namespace simulator::film
