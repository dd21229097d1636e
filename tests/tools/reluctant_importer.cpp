// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <iostream>
#include <span>
#include <string_view>

int main(int argumentCount, char** arguments) {
    const std::span all(arguments, static_cast<std::size_t>(argumentCount));
    const bool dryRun = std::ranges::any_of(
        all, [](std::string_view argument) { return argument == std::string_view("--dry-run"); });
    std::cout << (dryRun ? R"({"ok":true,"project_id":"p"})" : R"({"ok":false,"project_id":"p"})") << '\n';
    return std::cout.flush() ? 0 : 1;
}
