// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <cstdlib>
#include <iostream>

#include "common/embedded_file.hpp"
#include "common/file.hpp"
#include "common/json_text.hpp"
#include "common/misbehaviour.hpp"
#include "common/program.hpp"

namespace simulator::quexrun {
namespace {

constexpr std::array<std::string_view, 1> forms{"agent status --json"};

constexpr std::uint64_t sizeLimit = std::uint64_t{64} << 20U;

/// The largest model is not installed and the second largest cannot be started: a careless choice shows.
json::value builtInStatus() { return json::parse(embeddedFile("status.json")); }

json::object& firstModel(json::value& status) { return asRecord(listOf(asRecord(status), "models").front()); }

int printStatus() {
    const char* file = std::getenv("QUEXRUN_STATUS_FILE");
    if (file != nullptr && *file != '\0')
        std::cout << readWholeFile(file, sizeLimit, "a status file");
    else
        std::cout << json::serialize(builtInStatus()) << '\n';
    return 0;
}

int printWithoutKey() {
    json::value status = builtInStatus();
    firstModel(status).erase("servingEngine");
    return print(json::serialize(status));
}

int printWrongType() {
    json::value status = builtInStatus();
    firstModel(status)["installed"] = "yes";
    return print(json::serialize(status));
}

int perform(const Command&, Arguments) {
    static const std::array<Misbehaviour, 10> misbehaviours{
        {{"not-json", [] { return print("Four models are known."); }},
         {"missing-key", printWithoutKey},
         {"wrong-type", printWrongType},
         {"noise", [] { return print("[info] looking for models\n" + json::serialize(builtInStatus())); }},
         {"flood", [] { return flood(json::serialize(builtInStatus())); }},
         {"exit-5", [] { return 5; }},
         {"complain",
          [] { return complain("The agent runtime is being updated. Try again in a moment.", 5); }},
         {"slow", [] { return waitForRelease("QUEXRUN_RELEASE"); }},
         {"stubborn", [] { return waitStubbornly("QUEXRUN_RELEASE"); }},
         {"killed", []() -> int { dieByKill(); }}}};
    const auto status = misbehave("QUEXRUN_MISBEHAVE", misbehaviours);
    return status ? *status : printStatus();
}

} // namespace
} // namespace simulator::quexrun

int main(int argumentCount, char** argumentValues) {
    using namespace simulator;
    return runProgram(argumentCount, argumentValues, {"quexrun", quexrun::forms, ""}, "status",
                      quexrun::perform);
}
