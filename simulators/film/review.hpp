// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "step.hpp"

namespace simulator::film {

/// Looks at the film as it is and records a technical and a creative review of it.
void makeReviews(Step& step);

/// The reviews, and a review request for every shot in which somebody speaks. Answers a sentence about it.
std::string review(Workspace& workspace);

} // namespace simulator::film
