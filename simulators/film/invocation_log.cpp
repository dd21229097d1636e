// SPDX-License-Identifier: Apache-2.0

#include "invocation_log.hpp"

#include <cstdlib>

#include "common/file.hpp"
#include "common/json_text.hpp"
#include "workspace.hpp"

namespace simulator::film {
namespace {

constexpr std::string_view logName = "film-tool-log.jsonl";

void addVariable(json::object& entry, const char* key, const char* variable) {
    if (const char* value = std::getenv(variable))
        entry[key] = value;
}

} // namespace

void createInvocationLog(const std::filesystem::path& root) { writeWholeFile(root / logName, ""); }

void logInvocation(const std::filesystem::path& root, Arguments arguments, const Command& command) {
    const std::filesystem::path log = root / logName;
    if (!std::filesystem::exists(log))
        return;
    json::object entry{{"at", timeStamp()}, {"arguments", json::array(arguments.begin(), arguments.end())}};
    if (const auto pi = command.optionalValue("pi"))
        entry["piCommand"] = *pi;
    addVariable(entry, "piProvider", "QUEX_FILM_TOOLS_PI_PROVIDER");
    addVariable(entry, "piModel", "QUEX_FILM_TOOLS_PI_MODEL");
    // One write per line keeps the lines of concurrent calls apart.
    File::append(log).write(json::serialize(entry) + '\n');
}

} // namespace simulator::film
