// SPDX-License-Identifier: Apache-2.0

#include "commands/diagnosis.hpp"

#include <algorithm>
#include <variant>

#include <kinovane/user_message.hpp>

namespace kinovane::tool {

namespace {

/// The advice for each case of the error.
class Advice {
  public:
    explicit Advice(const ProgramFinding& program)
        : program_(program), option_("--" + program.role + " PROGRAM") {}

    std::string operator()(const FilmToolError::executableNotFound& /*error*/) const {
        const bool pi = program_.role == "pi";
        if (program_.name == program_.role)
            return "Put it into a folder of the search path (PATH), " +
                   std::string(pi ? "have quexrun install a copy, " : "") + "or say with " + option_ +
                   " where it is.";
        return "Name an executable file with " + option_ + ", or leave this option out to have " +
               program_.role + " looked for on the search path (PATH)" +
               (pi ? " and among the installed copies." : ".");
    }
    std::string operator()(const FilmToolError::launchFailed& /*error*/) const {
        return "Make sure that this file is a program for this machine, or name another one with " + option_ +
               ".";
    }
    std::string operator()(const FilmToolError::commandFailed& /*error*/) const {
        return "Run it in a terminal with \"agent status --json\" to find out more, or name another program "
               "with " +
               option_ + ".";
    }
    std::string operator()(const FilmToolError::invalidJSON& /*error*/) const {
        return "Make sure that this is quexrun, and a version that fits; otherwise name another program "
               "with " +
               option_ + ".";
    }

  private:
    const ProgramFinding& program_;
    std::string option_;
};

} // namespace

std::size_t Diagnosis::problemCount() const {
    return static_cast<std::size_t>(std::ranges::count_if(
        programs(), [](const ProgramFinding* program) { return program->problem.has_value(); }));
}

Problem problemOf(const ProgramFinding& program, const FilmToolError& error) {
    return {userMessage(error), std::visit(Advice(program), error.value())};
}

} // namespace kinovane::tool
