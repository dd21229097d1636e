// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "workspace.hpp"

namespace simulator::film {

/// Undoes the step that was cut off: files that the project does not know are deleted, moved files go back to
/// where the project knows them, and the plan follows the project. Answers a sentence about what was done.
std::string recover(Workspace& workspace);

} // namespace simulator::film
