// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane::test {

/// Gives this process its own mount namespace; meant for a forked process, as it stays. Returns false when
/// this is not permitted. Linux only.
bool unshareMounts();

} // namespace kinovane::test
