// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>

#include "documents.hpp"

namespace film {

/// What a film is planned from.
struct Pitch {
    std::string idea, title;
    std::int64_t seconds = 0;
    std::string createdAt;
};

/// The same for the same idea and title, and never the same for two.
std::string projectIdOf(const Pitch& pitch);

/// The documents of the plan: three shots whose lengths make exactly the length that was asked for.
json::object productionPlanOf(const Pitch& pitch);
json::object treatmentOf(const Pitch& pitch);

} // namespace film
