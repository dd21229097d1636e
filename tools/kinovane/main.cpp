// SPDX-License-Identifier: Apache-2.0

#include "arguments/command_line.hpp"
#include "session/exit_status.hpp"
#include "session/output.hpp"

namespace kinovane::tool {

namespace {

struct Perform {
    ExitStatus operator()(const Notice& notice) const {
        printResult(notice.text);
        return ExitStatus::success;
    }
    ExitStatus operator()(const InspectRequest& request) const {
        inspect(request);
        return ExitStatus::success;
    }
    ExitStatus operator()(const VerifyRequest& request) const { return verify(request); }
    ExitStatus operator()(const PublishRequest& request) const {
        publish(request);
        return ExitStatus::success;
    }
    ExitStatus operator()(const DoctorRequest& request) const {
        return doctor(request) ? ExitStatus::success : ExitStatus::program;
    }
};

} // namespace

} // namespace kinovane::tool

int main(int argumentCount, char** arguments) {
    using namespace kinovane::tool;
    try {
        return static_cast<int>(std::visit(Perform(), parseCommandLine(argumentCount, arguments)));
    } catch (...) {
        return static_cast<int>(reportCurrentException());
    }
}
