// SPDX-License-Identifier: Apache-2.0

#pragma once

// The headers that most sources of the command-line tool include, compiled once if
// KINOVANE_PRECOMPILE_HEADERS is on. A source includes what it uses all the same: most builds do without
// precompiled headers.

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#include <boost/json.hpp>

#include <kinovane/handoff.hpp>
#include <kinovane/publish.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>
