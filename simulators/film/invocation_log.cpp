// SPDX-License-Identifier: Apache-2.0

#include "invocation_log.hpp"

#include <cstdlib>

#include "clock.hpp"
#include "common/file.hpp"
#include "common/json_text.hpp"
#include "documents.hpp"

namespace film {
namespace {

void addVariable(json::object& entry, const char* key, const char* variable) {
    if (const char* value = std::getenv(variable))
        entry[key] = value;
}

} // namespace

void createInvocationLog(const std::filesystem::path& root) {
    simulator::writeWholeFile(root / invocationLogName, "");
}

void noteInvocation(const std::filesystem::path& root, std::span<const std::string_view> arguments,
                    const Command& command) {
    const std::filesystem::path log = root / invocationLogName;
    if (!std::filesystem::exists(log))
        return;
    json::array list;
    for (const std::string_view argument : arguments)
        list.emplace_back(std::string(argument));
    json::object entry{{"at", timeStamp()}, {"arguments", std::move(list)}};
    if (const auto pi = command.optionalValue("pi"))
        entry["piCommand"] = *pi;
    addVariable(entry, "piProvider", "QUEX_FILM_TOOLS_PI_PROVIDER");
    addVariable(entry, "piModel", "QUEX_FILM_TOOLS_PI_MODEL");
    // One write per line keeps the lines of calls at the same time apart.
    simulator::File::append(log).write(simulator::compact(entry) + '\n');
}

} // namespace film
