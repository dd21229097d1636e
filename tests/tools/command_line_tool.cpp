// SPDX-License-Identifier: Apache-2.0

#include "tools/command_line_tool.hpp"

#include <cerrno>
#include <ostream>
#include <system_error>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kinovane/tooling.hpp>

#include "support/temporary_directory.hpp"

extern char** environ; // NOLINT(readability-redundant-declaration): not every C library's header declares it

namespace kinovane::test {

namespace {

void check(int error, const char* what) {
    if (error != 0)
        throw std::system_error(error, std::generic_category(), what);
}

class FileActions {
  public:
    FileActions() { check(::posix_spawn_file_actions_init(&actions_), "file actions"); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }

    /// Makes `descriptor` the descriptor `number` of the child; -1 closes it there.
    void assign(int descriptor, int number) {
        if (descriptor < 0)
            check(::posix_spawn_file_actions_addclose(&actions_, number), "close");
        else
            check(::posix_spawn_file_actions_adddup2(&actions_, descriptor, number), "dup2");
    }

    const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

} // namespace

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return stream << "status " << outcome.status << "\n--- out:\n"
                  << outcome.out << "--- err:\n"
                  << outcome.err;
}

Outcome runCommandLineTool(std::vector<std::string> arguments,
                           std::map<std::string, std::string> environment) {
    const FilmToolClient tool(programPath("kinovane"));
    try {
        const ProcessResult result = tool.run(std::move(arguments), std::move(environment)).get();
        return {result.exitCode, result.stdout, result.stderr};
    } catch (const FilmToolError& error) {
        if (const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value()))
            return {failed->result.exitCode, failed->result.stdout, failed->result.stderr};
        throw;
    }
}

pid_t startCommandLineTool(std::vector<std::string> arguments, int out, int err) {
    std::string program = programPath("kinovane");
    std::vector<char*> pointers{program.data()};
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    FileActions actions;
    actions.assign(out, STDOUT_FILENO);
    actions.assign(err, STDERR_FILENO);
    pid_t child = 0;
    check(::posix_spawn(&child, program.c_str(), actions.get(), nullptr, pointers.data(), environ), "spawn");
    return child;
}

int exitStatusOf(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "waitpid");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void writeDocuments(const WorkspaceMaker& workspace) {
    std::string artifacts;
    for (const FilmArtifact& artifact : workspace.snapshot.project.artifacts)
        artifacts += (artifacts.empty() ? "" : ",") + encodeJSON(artifact);
    workspace.directory.write("film-project.json", replaced(smallestProject(), R"("artifacts":[])",
                                                            R"("artifacts":[)" + artifacts + "]"));
    if (workspace.snapshot.productionPlan)
        workspace.directory.write("production-plan.json", encodeJSON(*workspace.snapshot.productionPlan));
}

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    for (auto found = text.find(what); found != std::string::npos; found = text.find(what, found + by.size()))
        text.replace(found, what.size(), by);
    return text;
}

std::string golden(const std::string& name, const std::filesystem::path& workspace) {
    return replaced(contentOf(std::filesystem::path(KINOVANE_GOLDEN) / name), "{WORKSPACE}",
                    workspace.string());
}

} // namespace kinovane::test
