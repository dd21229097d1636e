// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>

#include <kinovane/handoff.hpp>

namespace kinovane {

/// The outcome of an artifact whose examination threw `failure`, or nothing if that is null. Rethrows a
/// failure that is not about the artifact, such as std::bad_alloc.
ArtifactOutcome outcomeOf(const FilmArtifact& artifact, const std::exception_ptr& failure);

} // namespace kinovane
