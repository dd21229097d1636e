// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <utility>

#include <stdlib.h>

namespace kinovane::testing {

/// Sets an environment variable of this process for the lifetime of the object, or removes it if there is no
/// value. Programs that are started meanwhile inherit it. The environment belongs to the whole process: a
/// test must not run other threads that read or change it.
///
/// Where an operation takes RunOptions, RunOptions::environment needs no such care.
class EnvironmentVariable {
  public:
    /// `name` must not be empty or hold "=": the system then changes nothing.
    EnvironmentVariable(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
        if (const char* former = ::getenv(name_.c_str()))
            former_ = former;
        set(value);
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable() { set(former_); }

  private:
    void set(const std::optional<std::string>& value) const noexcept {
        if (value)
            ::setenv(name_.c_str(), value->c_str(), 1);
        else
            ::unsetenv(name_.c_str());
    }

    std::string name_;
    std::optional<std::string> former_;
};

} // namespace kinovane::testing
