// SPDX-License-Identifier: Apache-2.0

#include "doctor.hpp"

#include <filesystem>
#include <utility>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/tooling.hpp>

#include "diagnosis.hpp"
#include "diagnosis_text.hpp"
#include "output.hpp"

namespace kinovane::tool {

namespace {

using Lookup = std::filesystem::path (*)(const std::string&);

ProgramFinding lookedUp(std::string role, const std::string& name, Lookup lookup) {
    ProgramFinding program{std::move(role), name, {}, {}};
    try {
        program.place = lookup(name);
    } catch (const FilmToolError& error) {
        program.complaint = complaintAbout(program, error);
    }
    return program;
}

PiOrigin originOf(const std::string& name) {
    if (name.find('/') != std::string::npos)
        return PiOrigin::namedPlace;
    return lookedUp("pi", name, FilmToolClient::resolveExecutable).place ? PiOrigin::searchPath
                                                                         : PiOrigin::installedCopy;
}

void ask(Diagnosis& diagnosis) {
    try {
        diagnosis.agent = QuexRunAgentClient(diagnosis.quexrun.name).status().get();
    } catch (const FilmToolError& error) {
        diagnosis.quexrun.complaint = complaintAbout(diagnosis.quexrun, error);
    }
}

Diagnosis diagnose(const DoctorRequest& request) {
    Diagnosis diagnosis;
    diagnosis.film = lookedUp("film", request.film, FilmToolClient::resolveExecutable);
    diagnosis.vistrel = lookedUp("vistrel", request.vistrel, FilmToolClient::resolveExecutable);
    diagnosis.quexrun = lookedUp("quexrun", request.quexrun, FilmToolClient::resolveExecutable);
    diagnosis.pi = lookedUp("pi", request.pi, PiExecutableResolver::resolve);
    if (diagnosis.pi.place)
        diagnosis.piOrigin = originOf(request.pi);
    diagnosis.installedPis = PiExecutableResolver::bundledCandidates();
    if (diagnosis.quexrun.place)
        ask(diagnosis);
    return diagnosis;
}

} // namespace

bool doctor(const DoctorRequest& request) {
    const Diagnosis diagnosis = diagnose(request);
    printResult(request.json ? jsonText(diagnosis) : humanText(diagnosis));
    return diagnosis.complaints() == 0;
}

} // namespace kinovane::tool
