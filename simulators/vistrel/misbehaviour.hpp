// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>

#include "common/misbehaviour.hpp"

namespace simulator::vistrel {

/// The values of VISTREL_MISBEHAVE.
std::span<const Misbehaviour> misbehaviours();

} // namespace simulator::vistrel
