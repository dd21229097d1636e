// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

// The CMake target KinovaneCore::testkit defines these.
#if !defined(KINOVANE_SIMULATOR_FILM) || !defined(KINOVANE_SIMULATOR_VISTREL) ||                             \
    !defined(KINOVANE_SIMULATOR_QUEXRUN) || !defined(KINOVANE_SIMULATOR_PI)
#error "link the target KinovaneCore::testkit, which tells where the simulators are"
#endif

/// The absolute paths of the simulators, for the constructors of the clients. docs/guide/testing.md describes
/// what each simulator does, and how it can be made to misbehave.
namespace kinovane::testing {

/// The film tool, for FilmToolClient.
inline std::string filmSimulator() { return KINOVANE_SIMULATOR_FILM; }

/// Vistrel's importer, for VistrelClient.
inline std::string vistrelSimulator() { return KINOVANE_SIMULATOR_VISTREL; }

/// The agent runtime, for QuexRunAgentClient.
inline std::string quexrunSimulator() { return KINOVANE_SIMULATOR_QUEXRUN; }

/// The coding agent, for the parameters `piCommand`.
inline std::string piSimulator() { return KINOVANE_SIMULATOR_PI; }

} // namespace kinovane::testing
