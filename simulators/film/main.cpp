// SPDX-License-Identifier: Apache-2.0

#include <exception>
#include <iostream>
#include <new>
#include <vector>

#include "command_line.hpp"
#include "commands.hpp"
#include "common/json_text.hpp"
#include "common/refusal.hpp"
#include "invocation_log.hpp"
#include "misbehaviour.hpp"

namespace film {
namespace {

constexpr int refused = 1;
constexpr int misused = 2;

int run(std::span<const std::string_view> arguments) {
    const auto command = parseCommandLine(arguments);
    if (!command) {
        std::cerr << usage();
        return misused;
    }
    // A new film has no log yet: its first line is written when it is there.
    const bool isNew = command->word == "plan";
    if (!isNew)
        noteInvocation(filmFolder(*command), arguments, *command);
    const Misbehaviour misbehaviour = misbehave(*command);
    if (!misbehaviour.exitStatus) {
        std::cout << perform(*command, misbehaviour.cutOff) << '\n';
        if (isNew)
            noteInvocation(filmFolder(*command), arguments, *command);
    }
    if (!std::cout.flush())
        throw simulator::Refusal("cannot write the reply to standard output");
    return misbehaviour.exitStatus.value_or(0);
}

} // namespace
} // namespace film

int main(int argumentCount, char** argumentValues) {
    try {
        const std::vector<std::string_view> all(argumentValues, argumentValues + argumentCount);
        return film::run(std::span(all).subspan(all.empty() ? 0 : 1));
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << "cannot use " << simulator::jsonQuoted(error.path1().native()) << ": "
                  << error.code().message() << '\n';
    } catch (const std::bad_alloc&) {
        std::cerr << "there is not enough memory for this film\n";
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return film::refused;
}
