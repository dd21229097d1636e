// SPDX-License-Identifier: Apache-2.0

#pragma once

// The headers that most tests include, compiled once for all test programs. A test includes what it uses all
// the same, and builds with -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON too.

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
