// SPDX-License-Identifier: Apache-2.0

#include <cstdlib>
#include <fstream>
#include <iostream>

/// Appends its arguments to the file that the environment variable OPENER_LOG names, and writes to both
/// streams. Ends with the status OPENER_STATUS.
int main(int argumentCount, char** arguments) {
    const char* log = std::getenv("OPENER_LOG");
    std::ofstream file(log == nullptr ? "/dev/null" : log, std::ios::app);
    for (int index = 1; index < argumentCount; ++index)
        file << arguments[index] << '\n';
    std::cout << "\x1b[31mopening\n";
    std::cerr << "\x1b[31mopening\n";
    const char* status = std::getenv("OPENER_STATUS");
    return status == nullptr ? EXIT_SUCCESS : std::atoi(status);
}
