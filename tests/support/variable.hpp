// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace kinovane::test {

/// Sets an environment variable of this process for the lifetime of the object, or removes it when there is
/// no value. Child processes inherit it.
class Variable {
  public:
    Variable(const char* name, const std::optional<std::string>& value) : name_(name) {
        if (const char* former = std::getenv(name))
            former_ = former;
        set(value);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { set(former_); }

  private:
    void set(const std::optional<std::string>& value) const {
        if (value)
            ::setenv(name_, value->c_str(), 1);
        else
            ::unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> former_;
};

} // namespace kinovane::test
