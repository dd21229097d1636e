// SPDX-License-Identifier: Apache-2.0

#include "status_reply.hpp"

#include <cstdint>
#include <cstdlib>

#include "common/file.hpp"
#include "common/json_text.hpp"

namespace quexrun {
namespace {

namespace json = boost::json;

constexpr std::uint64_t sizeLimit = std::uint64_t{64} << 20U;

json::object model(const char* id, const char* name, bool installed, int gigabytes, const char* engine,
                   bool startable) {
    return {{"id", id},
            {"displayName", name},
            {"installed", installed},
            {"recommendedUnifiedMemoryGB", gigabytes},
            {"servingEngine", engine},
            {"startableByQuexRun", startable}};
}

} // namespace

json::object builtInStatus() {
    // The largest model is missing and the second largest cannot be started: a careless choice shows.
    json::array models;
    models.emplace_back(model("heron-8b-q4", "Heron 8B", true, 16, "llama-server", true));
    models.emplace_back(model("heron-32b-q4", "Heron 32B", true, 48, "llama-server", true));
    models.emplace_back(model("bittern-70b", "Bittern 70B", true, 96, "external", false));
    models.emplace_back(model("bittern-120b", "Bittern 120B", false, 192, "mlx", true));
    json::object pi{{"installed", true}, {"path", "/usr/local/bin/pi"}, {"version", "0.0.0-simulator"}};
    return {
        {"contractVersion", "quexrun/agent-status.v1"}, {"models", std::move(models)}, {"pi", std::move(pi)}};
}

std::string statusReply() {
    const char* file = std::getenv("QUEXRUN_STATUS_FILE");
    if (file != nullptr && *file != '\0')
        return simulator::readWholeFile(file, sizeLimit, "a status file");
    return simulator::compact(builtInStatus()) + '\n';
}

} // namespace quexrun
