// SPDX-License-Identifier: Apache-2.0

#include "commands/doctor.hpp"

#include <filesystem>
#include <utility>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/tooling.hpp>

#include "commands/diagnosis.hpp"
#include "commands/diagnosis_text.hpp"

namespace kinovane::tool {

namespace {

using Lookup = std::filesystem::path (*)(const std::string&);

ProgramFinding findProgram(std::string role, const std::string& name, Lookup lookup) {
    ProgramFinding program{std::move(role), name, {}, {}};
    try {
        program.path = lookup(name);
    } catch (const FilmToolError& error) {
        program.problem = problemOf(program, error);
    }
    return program;
}

PiOrigin originOf(const std::string& name) {
    if (name.find('/') != std::string::npos)
        return PiOrigin::namedPath;
    return findProgram("pi", name, FilmToolClient::resolveExecutable).path ? PiOrigin::searchPath
                                                                           : PiOrigin::installedCopy;
}

void queryAgent(Diagnosis& diagnosis) {
    try {
        diagnosis.agent = QuexRunAgentClient(diagnosis.quexrun.name).status().get();
    } catch (const FilmToolError& error) {
        diagnosis.quexrun.problem = problemOf(diagnosis.quexrun, error);
    }
}

Diagnosis diagnose(const DoctorRequest& request) {
    Diagnosis diagnosis;
    diagnosis.film = findProgram("film", request.film, FilmToolClient::resolveExecutable);
    diagnosis.vistrel = findProgram("vistrel", request.vistrel, FilmToolClient::resolveExecutable);
    diagnosis.quexrun = findProgram("quexrun", request.quexrun, FilmToolClient::resolveExecutable);
    diagnosis.pi = findProgram("pi", request.pi, PiExecutableResolver::resolve);
    if (diagnosis.pi.path)
        diagnosis.piOrigin = originOf(request.pi);
    diagnosis.installedPis = PiExecutableResolver::bundledCandidates();
    if (diagnosis.quexrun.path)
        queryAgent(diagnosis);
    return diagnosis;
}

} // namespace

ExitStatus doctor(const DoctorRequest& request, const Session& session) {
    const Diagnosis diagnosis = diagnose(request);
    session.console.result(session.console.options().json ? jsonText(diagnosis) : humanText(diagnosis));
    return diagnosis.problemCount() == 0 ? ExitStatus::success : ExitStatus::program;
}

} // namespace kinovane::tool
