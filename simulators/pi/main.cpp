// SPDX-License-Identifier: Apache-2.0

#include <exception>
#include <iostream>
#include <string_view>

#include "version.hpp"

int main(int argumentCount, char** argumentValues) {
    try {
        if (argumentCount != 2 || argumentValues[1] != std::string_view("--version")) {
            std::cerr << "usage: pi --version\n";
            return 2;
        }
        std::cout << "pi " << pi::version() << '\n' << std::flush;
        return std::cout ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "cannot tell the version: " << error.what() << '\n';
        return 1;
    }
}
