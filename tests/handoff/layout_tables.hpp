// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "handoff/containment_layouts.hpp"

namespace kinovane::test {

// The parts of containmentLayouts(), by what makes a path lead where it leads.
std::vector<Layout> textLayouts(); ///< Its own text.
std::vector<Layout> fileLayouts(); ///< What is there.
std::vector<Layout> linkLayouts();
std::vector<Layout> rootLayouts(); ///< How the project's directory is given.

} // namespace kinovane::test
