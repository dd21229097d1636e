// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <string>

namespace kinovane::test {

/// Runs `work` in a child process without root's permissions, because root bypasses permission checks, and
/// returns its text. The files that it uses must be accessible to the user "nobody".
std::string asOrdinaryUser(const std::function<std::string()>& work);

} // namespace kinovane::test
