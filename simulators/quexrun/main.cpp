// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <cstdlib>
#include <iostream>

#include "common/file.hpp"
#include "common/misbehaviour.hpp"
#include "common/program.hpp"
#include "common/record.hpp"

namespace simulator::quexrun {
namespace {

constexpr std::array<std::string_view, 1> forms{"agent status --json"};

constexpr std::uint64_t sizeLimit = std::uint64_t{64} << 20U;

/// The largest model is not installed and the second largest cannot be started: a careless choice shows.
constexpr const char* builtInStatus = R"({
    "contractVersion": "quexrun/agent-status.v1",
    "models": [
        {"id": "heron-8b-q4", "displayName": "Heron 8B", "installed": true, "recommendedUnifiedMemoryGB": 16,
         "servingEngine": "llama-server", "startableByQuexRun": true},
        {"id": "heron-32b-q4", "displayName": "Heron 32B", "installed": true,
         "recommendedUnifiedMemoryGB": 48, "servingEngine": "llama-server", "startableByQuexRun": true},
        {"id": "bittern-70b", "displayName": "Bittern 70B", "installed": true,
         "recommendedUnifiedMemoryGB": 96, "servingEngine": "external", "startableByQuexRun": false},
        {"id": "bittern-120b", "displayName": "Bittern 120B", "installed": false,
         "recommendedUnifiedMemoryGB": 192, "servingEngine": "mlx", "startableByQuexRun": true}
    ],
    "pi": {"installed": true, "path": "/usr/local/bin/pi", "version": "0.0.0-simulator"}
})";

int printStatus() {
    const char* file = std::getenv("QUEXRUN_STATUS_FILE");
    if (file != nullptr && *file != '\0')
        std::cout << readWholeFile(file, sizeLimit, "a status file");
    else
        std::cout << json::serialize(json::parse(builtInStatus)) << '\n';
    return 0;
}

/// Prints the built-in status with its first model changed.
template <class Change>
int printChanged(const Change& change) {
    json::value status = json::parse(builtInStatus);
    change(asRecord(listOf(asRecord(status), "models").front()));
    std::cout << json::serialize(status) << '\n';
    return 0;
}

const std::array<Misbehaviour, 7>& misbehaviours() {
    static const std::array<Misbehaviour, 7> all{
        {{"not-json",
          [] {
              std::cout << "Four models are known.\n";
              return 0;
          }},
         {"missing-key",
          [] { return printChanged([](json::object& model) { model.erase("servingEngine"); }); }},
         {"wrong-type", [] { return printChanged([](json::object& model) { model["installed"] = "yes"; }); }},
         {"noise",
          [] {
              std::cout << "[info] looking for models\n";
              return printChanged([](json::object&) {});
          }},
         {"exit-5", [] { return 5; }},
         {"complain",
          [] {
              std::cerr << "The agent runtime is being updated. Try again in a moment.\n";
              return 5;
          }},
         {"killed", []() -> int { dieByKill(); }}}};
    return all;
}

int perform(const Command&, Arguments) {
    const auto status = misbehave("QUEXRUN_MISBEHAVE", misbehaviours());
    return status ? *status : printStatus();
}

} // namespace
} // namespace simulator::quexrun

int main(int argumentCount, char** argumentValues) {
    using namespace simulator;
    return runProgram(argumentCount, argumentValues, {"quexrun", quexrun::forms, ""}, "status",
                      quexrun::perform);
}
