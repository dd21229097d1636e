// SPDX-License-Identifier: Apache-2.0

// Records how it was started: its arguments, each followed by a NUL byte, go into the file that RECORDER_FILE
// names, and its environment likewise into the one of RECORDER_ENVIRONMENT. Then it prints what
// RECORDER_OUTPUT and RECORDER_ERRORS say, without adding anything, and ends with the status
// RECORDER_STATUS. Before that it waits, if RECORDER_GATE names a FIFO, until somebody opens that for
// writing, and says so by a byte in the FIFO RECORDER_ARRIVALS.

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

extern char** environ; // NOLINT(readability-redundant-declaration): not every C library's header declares it

namespace {

/// Writes the texts into the file that the variable names; false when it cannot.
bool record(const char* variable, char** texts) {
    const char* const name = std::getenv(variable);
    if (name == nullptr)
        return true;
    std::ofstream file(name, std::ios::binary);
    for (; *texts != nullptr; ++texts)
        file << *texts << '\0';
    return static_cast<bool>(file.flush());
}

/// Opening a FIFO for reading takes until somebody opens it for writing.
bool passGate() {
    const char* const gate = std::getenv("RECORDER_GATE");
    if (gate == nullptr)
        return true;
    if (const char* const arrivals = std::getenv("RECORDER_ARRIVALS")) {
        std::ofstream announcement(arrivals, std::ios::binary);
        if (!(announcement << '!').flush())
            return false;
    }
    return std::ifstream(gate, std::ios::binary).is_open();
}

std::string told(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr ? value : "";
}

} // namespace

int main(int /*count*/, char** arguments) {
    if (!record("RECORDER_FILE", arguments + 1) || !record("RECORDER_ENVIRONMENT", environ) || !passGate())
        return 121;
    std::cerr << told("RECORDER_ERRORS") << std::flush;
    std::cout << told("RECORDER_OUTPUT") << std::flush;
    if (!std::cout || !std::cerr)
        return 121;
    const std::string status = told("RECORDER_STATUS");
    return status.empty() ? 0 : std::stoi(status);
}
