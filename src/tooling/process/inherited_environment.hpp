// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane {

/// The environment of this process: an array with a null pointer at its end, or null. A change of the
/// environment by another thread invalidates it.
///
/// Linux: `environ`. macOS: `_NSGetEnviron`, because shared libraries cannot refer to `environ` there.
char** inheritedEnvironment() noexcept;

} // namespace kinovane
