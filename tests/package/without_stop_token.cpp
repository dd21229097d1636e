// SPDX-License-Identifier: Apache-2.0

// Compiled with the headers of without_stop_token in front of those of the standard library.

#include <concepts>

#include <kinovane/stop.hpp>

#if defined(__cpp_lib_jthread)
#error "the standard library has <stop_token>"
#endif

static_assert(std::default_initializable<kinovane::StopToken>);
static_assert(std::same_as<decltype(kinovane::StopSource().token()), kinovane::StopToken>);
