#include "command_line.hpp"
#include "exit_status.hpp"
#include "output.hpp"

namespace kinovane::companion {

namespace {

struct Perform {
    void operator()(const Notice& notice) const { printResult(notice.text); }
    void operator()(const InspectRequest& request) const { inspect(request); }
    void operator()(const PublishRequest& request) const { publish(request); }
};

} // namespace

} // namespace kinovane::companion

int main(int argumentCount, char** arguments) {
    using namespace kinovane::companion;
    try {
        std::visit(Perform(), parseCommandLine(argumentCount, arguments));
        return static_cast<int>(ExitStatus::success);
    } catch (...) {
        return static_cast<int>(reportCurrentException());
    }
}
