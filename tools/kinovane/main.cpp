// SPDX-License-Identifier: Apache-2.0

#include <csignal>
#include <variant>

#include "arguments/command_line.hpp"
#include "session/failure.hpp"
#include "session/interruption.hpp"

namespace kinovane::tool {

namespace {

struct Perform {
    const Session& session;

    ExitStatus operator()(const Notice& notice) const {
        session.console.result(notice.text);
        return ExitStatus::success;
    }
    ExitStatus operator()(const StatusRequest& request) const { return status(request, session); }
    ExitStatus operator()(const InspectRequest& request) const { return inspect(request, session); }
    ExitStatus operator()(const VerifyRequest& request) const { return verify(request, session); }
    ExitStatus operator()(const CopyRequest& request) const { return copy(request, session); }
    ExitStatus operator()(const PublishRequest& request) const { return publish(request, session); }
    ExitStatus operator()(const ShotsRequest& request) const { return shots(request, session); }
    ExitStatus operator()(const ArtifactsRequest& request) const { return artifacts(request, session); }
    ExitStatus operator()(const StoryboardRequest& request) const { return storyboard(request, session); }
    ExitStatus operator()(const OpenRequest& request) const { return open(request, session); }
    ExitStatus operator()(const PlanRequest& request) const { return plan(request, session); }
    ExitStatus operator()(const ApproveRequest& request) const { return approve(request, session); }
    ExitStatus operator()(const AdvanceRequest& request) const { return advance(request, session); }
    ExitStatus operator()(const RerollRequest& request) const { return reroll(request, session); }
    ExitStatus operator()(const ReviewRequest& request) const { return review(request, session); }
    ExitStatus operator()(const RecoverRequest& request) const { return recover(request, session); }
    ExitStatus operator()(const ExportRequest& request) const { return exportFilm(request, session); }
    ExitStatus operator()(const DoctorRequest& request) const { return doctor(request, session); }
    ExitStatus operator()(const TimelineRequest& request) const { return timeline(request, session); }
};

ExitStatus run(int argumentCount, const char* const* arguments) {
    CommonOptions options;
    Command command;
    try {
        command = parseCommandLine(argumentCount, arguments, options, Console(options).columns());
    } catch (...) {
        return reportCurrentException(Console(options));
    }
    const Console console(options);
    try {
        const Interruption interruption;
        const Session session{console, interruption.token()};
        return std::visit(Perform{session}, command);
    } catch (...) {
        return reportCurrentException(console);
    }
}

} // namespace

} // namespace kinovane::tool

int main(int argumentCount, char** arguments) {
    std::signal(SIGPIPE, SIG_IGN); // NOLINT(cert-err33-c): a closed pipe is an error of write instead
    return static_cast<int>(kinovane::tool::run(argumentCount, arguments));
}
