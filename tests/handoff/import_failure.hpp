#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <utility>

#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>

namespace kinovane::test {

/// A variable of this process, and so of the programs it starts, until the end of the block.
class Variable {
  public:
    Variable(const char* name, const std::string& value) : name_(name) { ::setenv(name, value.c_str(), 1); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { ::unsetenv(name_); }

  private:
    const char* name_;
};

/// What an import, or a check, fails with.
inline FilmToolError errorOf(Task<VistrelImportReceipt> task) {
    try {
        task.get();
    } catch (const FilmToolError& error) {
        return error;
    }
    throw std::logic_error("the program's answer was accepted");
}

} // namespace kinovane::test
