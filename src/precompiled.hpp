// SPDX-License-Identifier: Apache-2.0

#pragma once

// The headers that most sources of the library include, compiled once if KINOVANE_PRECOMPILE_HEADERS is on.
// A source includes what it uses all the same: most builds do without precompiled headers.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <variant>
#include <vector>
