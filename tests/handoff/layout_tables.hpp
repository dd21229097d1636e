// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "handoff/containment_layouts.hpp"

namespace kinovane::test {

// The parts of containmentLayouts().
std::vector<Layout> textLayouts(); ///< The text of the path matters.
std::vector<Layout> fileLayouts(); ///< The type and permissions of files matter.
std::vector<Layout> linkLayouts(); ///< Links matter.
std::vector<Layout> rootLayouts(); ///< The path of the project's directory matters.

} // namespace kinovane::test
