// SPDX-License-Identifier: Apache-2.0

#include "common/program.hpp"

#include <exception>
#include <filesystem>
#include <iostream>
#include <new>
#include <vector>

#include "common/json_text.hpp"
#include "common/refusal.hpp"

namespace simulator {

int runProgram(int argumentCount, char** argumentValues, const CommandLine& commandLine, const char* reply,
               const std::function<int(const Command&, Arguments)>& perform) {
    try {
        const std::vector<std::string_view> all(argumentValues, argumentValues + argumentCount);
        const Arguments arguments = Arguments(all).subspan(all.empty() ? 0 : 1);
        const auto command = commandLine.parse(arguments);
        if (!command) {
            std::cerr << commandLine.usage();
            return misused;
        }
        const int status = perform(*command, arguments);
        if (!std::cout.flush())
            throw Refusal("cannot write the " + std::string(reply) + " to standard output");
        return status;
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << "cannot use " << jsonQuoted(error.path1().native()) << ": " << error.code().message()
                  << '\n';
    } catch (const std::bad_alloc&) {
        std::cerr << "there is not enough memory\n";
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return refused;
}

} // namespace simulator
