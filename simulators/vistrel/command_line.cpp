// SPDX-License-Identifier: Apache-2.0

#include "command_line.hpp"

#include <algorithm>
#include <array>

namespace vistrel {
namespace {

using std::string_view_literals::operator""sv;

constexpr std::array leadingWords{"production"sv, "import-film"sv};
constexpr std::array dryRunWords{"--dry-run"sv, "--output"sv, "json"sv};
constexpr std::array importWords{"--output"sv, "json"sv};

} // namespace

std::optional<Command> parseCommandLine(std::span<const std::string_view> arguments) {
    if (arguments.size() <= leadingWords.size() ||
        !std::ranges::equal(arguments.first(leadingWords.size()), leadingWords)) {
        return std::nullopt;
    }
    const std::string_view manifest = arguments[leadingWords.size()];
    // A forgotten manifest would otherwise turn "--dry-run" into a file name, and a check into an import.
    if (manifest.empty() || manifest.front() == '-')
        return std::nullopt;
    const auto options = arguments.subspan(leadingWords.size() + 1);
    if (std::ranges::equal(options, dryRunWords))
        return Command{manifest, true};
    if (std::ranges::equal(options, importWords))
        return Command{manifest, false};
    return std::nullopt;
}

std::string_view usage() {
    return "usage: vistrel production import-film <manifest> --dry-run --output json\n"
           "       vistrel production import-film <manifest> --output json\n"
           "A manifest whose name begins with \"-\" is written as \"./-name\".\n";
}

} // namespace vistrel
