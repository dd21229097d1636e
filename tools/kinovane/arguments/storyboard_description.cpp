// SPDX-License-Identifier: Apache-2.0

#include "arguments/storyboard_description.hpp"

#include <array>
#include <charconv>
#include <memory>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>

namespace kinovane::tool {

std::optional<std::uint64_t> bytesOf(std::string_view size) {
    constexpr std::array<std::pair<std::string_view, std::uint64_t>, 5> units{
        {{"", 1}, {"B", 1}, {"kB", 1000}, {"MB", 1'000'000}, {"GB", 1'000'000'000}}};
    std::uint64_t number = 0;
    const char* begin = std::to_address(size.begin());
    const auto [rest, error] = std::from_chars(begin, std::to_address(size.end()), number);
    if (error != std::errc())
        return std::nullopt;
    size.remove_prefix(static_cast<std::size_t>(rest - begin));
    if (size.starts_with(' '))
        size.remove_prefix(1);
    std::uint64_t bytes = 0;
    for (const auto& [unit, factor] : units)
        if (size == unit && !__builtin_mul_overflow(number, factor, &bytes))
            return bytes;
    return std::nullopt;
}

void describeStoryboard(CLI::App& command, StoryboardRequest& request) {
    command
        .add_option(
            "FILM", request.film,
            "The film's folder, the run.json in it, or a handoff manifest (default: the current folder)")
        ->type_name("");
    command.add_option("--output", request.output, "Where to store the page")->type_name("PAGE")->required();
    command.add_flag("--force", request.force, "Replace a file of another kind");
    command.add_flag("--open", request.open, "Open the page in the browser");
    command.add_flag("--verify", request.verify, "Examine every recorded file, and show its state");
    command
        .add_option_function<std::string>(
            "--embed-limit", [&request](const std::string& size) { request.embedLimit = *bytesOf(size); },
            "Embed pictures and clips up to this size in total, and link the others (default: 16 MB)")
        ->type_name("SIZE")
        ->check([](const std::string& size) {
            return bytesOf(size) ? std::string() : "\"" + size + "\" is not a size such as 16 MB";
        });
}

} // namespace kinovane::tool
