// SPDX-License-Identifier: Apache-2.0

// What an application shows and offers for each error:
//   guide_errors
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

#include <kinovane/publish.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

using namespace kinovane;

namespace {

/// One function for each case that std::visit may find.
template <class... Functions>
struct Cases : Functions... {
    using Functions::operator()...;
};

//! [project]
std::string offerFor(const FilmProjectError& error) {
    using Error = FilmProjectError;
    return std::visit(Cases{
                          [](const Error::missingRunManifest&) { return "choose another film"; },
                          [](const Error::missingProject&) { return "choose another film"; },
                          [](const Error::unsupportedContract&) { return "update the application"; },
                          [](const Error::invalidProject&) { return "load again, then report the file"; },
                      },
                      error.value());
}
//! [project]

//! [handoff]
std::string offerFor(const VistrelHandoffError& error) {
    using Error = VistrelHandoffError;
    return std::visit(Cases{
                          [](const Error::unsafeArtifactPath&) { return "do not publish; report the film"; },
                          [](const Error::missingArtifact&) { return "restore the file, or make it again"; },
                          [](const Error::hashMismatch&) { return "restore the file, or make it again"; },
                          [](const Error::productionPlanMissing&) { return "continue the production"; },
                      },
                      error.value());
}
//! [handoff]

//! [tool]
std::string offerFor(const FilmToolError& error) {
    using Error = FilmToolError;
    return std::visit(Cases{
                          [](const Error::executableNotFound&) { return "open the settings"; },
                          [](const Error::launchFailed&) { return "load the film again, then repeat"; },
                          [](const Error::commandFailed&) { return "show the tool's output"; },
                          [](const Error::invalidJSON&) { return "update the film tool"; },
                      },
                      error.value());
}
//! [tool]

//! [publish]
std::string offerFor(const PublishError& error) {
    using Error = PublishError;
    return std::visit(Cases{
                          [](const Error::blocked&) { return "show the findings"; },
                          [](const Error::refused&) { return "show Vistrel's words"; },
                      },
                      error.value());
}
//! [publish]

//! [all]
/// What a dialog says, and what its button offers. Called in a handler of `catch`.
std::string offerForCurrentException() {
    try {
        throw;
    } catch (const FilmProjectError& error) {
        return offerFor(error);
    } catch (const VistrelHandoffError& error) {
        return offerFor(error);
    } catch (const FilmToolError& error) {
        return offerFor(error);
    } catch (const PublishError& error) {
        return offerFor(error);
    } catch (const RunStopped&) { // Before std::system_error, of which it is one.
        return "recover the film";
    } catch (const std::system_error& error) { // std::filesystem::filesystem_error is one, too.
        if (error.code() == std::errc::operation_canceled)
            return "nothing: the user stopped it";
        return "check the disk and the permissions";
    } catch (const std::exception&) { // JSONDecodingError, JSONEncodingError, std::bad_alloc.
        return "report the problem";
    }
}
//! [all]

template <class Error>
void show(const Error& error) {
    try {
        throw error;
    } catch (const std::exception& caught) {
        std::cout << userMessage(caught) << "\n  [" << offerForCurrentException() << "]\n";
    }
}

void showAll() {
    show(FilmProjectError(FilmProjectError::missingRunManifest{"/films/lamp/run.json"}));
    show(FilmProjectError(FilmProjectError::missingProject{"/films/lamp/film-project.json"}));
    show(FilmProjectError(FilmProjectError::unsupportedContract{"quexrun/film-project.v2"}));
    show(FilmProjectError(FilmProjectError::invalidProject{"treatment.json: title is missing"}));

    show(VistrelHandoffError(VistrelHandoffError::unsafeArtifactPath{"../clips/shot-01.mp4"}));
    show(VistrelHandoffError(VistrelHandoffError::missingArtifact{"clips/shot-01.mp4"}));
    show(VistrelHandoffError(VistrelHandoffError::hashMismatch{"poster.png", "sha256:0a…", "sha256:f3…"}));
    show(VistrelHandoffError(VistrelHandoffError::productionPlanMissing{}));

    const ProcessResult silent{"/usr/bin/film", {"run", "/films/lamp/run.json"}, 4, "", ""};
    const ProcessResult speaking{"/usr/bin/film", {"run", "/films/lamp/run.json"}, 4, "", "no disk space\n"};
    show(FilmToolError(FilmToolError::executableNotFound{"film"}));
    show(FilmToolError(FilmToolError::launchFailed{"/usr/bin/film: pipe: Too many open files"}));
    show(FilmToolError(FilmToolError::commandFailed{silent}));
    show(FilmToolError(FilmToolError::commandFailed{speaking}));
    show(FilmToolError(FilmToolError::invalidJSON{"phase is missing"}));

    const PreflightFinding noPlan{
        PreflightCode::productionPlanMissing, PreflightSeverity::blocking, {}, {}, "The film has no plan."};
    show(PublishError(PublishError::blocked{{noPlan}}));
    show(PublishError(PublishError::refused{PublishStep::validate, "the storyboard is open", {}}));

    show(RunStopped(std::errc::operation_canceled, silent));
    show(RunStopped(std::errc::timed_out, silent));
    show(std::system_error(std::make_error_code(std::errc::operation_canceled)));
    show(std::filesystem::filesystem_error("open", "/films/lamp/poster.png",
                                           std::make_error_code(std::errc::permission_denied)));
    show(JSONEncodingError("title", "title: text that is not UTF-8"));
    show(std::bad_alloc());
}

} // namespace

int main(int count, char** /*arguments*/) {
    if (count != 1) {
        std::cerr << "usage: guide_errors\n";
        return 2;
    }
    showAll();
    return EXIT_SUCCESS;
}
