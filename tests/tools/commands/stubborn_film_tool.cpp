// SPDX-License-Identifier: Apache-2.0

#include <cstdlib>
#include <iostream>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

/// A film tool that never ends by itself. It writes one line, and opens the pipe that STUBBORN_STARTED names.
/// If it is called by "review", it reads its standard input and ends.
int main(int argumentCount, char** arguments) {
    if (argumentCount > 1 && std::string_view(arguments[1]) == "review") {
        char byte = 0;
        std::cout << "read " << ::read(STDIN_FILENO, &byte, 1) << " bytes\r\n" << std::flush;
        return 0;
    }
    std::cout << "\x1b[31mworking\x1b[m\tnow" << std::flush;
    if (const char* started = std::getenv("STUBBORN_STARTED"))
        ::close(::open(started, O_WRONLY));
    for (;;)
        ::pause();
}
