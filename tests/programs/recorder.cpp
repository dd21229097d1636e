// SPDX-License-Identifier: Apache-2.0

// Records how it was started, then prints a given text. Environment variables control it:
//   RECORDER_FILE         the file for its arguments, each followed by a NUL byte
//   RECORDER_ENVIRONMENT  the file for its environment, in the same form
//   RECORDER_ARRIVALS     a FIFO to which it writes a byte before it waits for RECORDER_GATE
//   RECORDER_GATE         a FIFO; it waits until this is opened for writing
//   RECORDER_OUTPUT       the text for standard output
//   RECORDER_ERRORS       the text for standard error
//   RECORDER_STATUS       its exit status; 0 without it

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

extern char** environ; // NOLINT(readability-redundant-declaration): not every C library's header declares it

namespace {

/// Writes the texts to the file that the variable names. Returns false if that fails.
bool record(const char* variable, char** texts) {
    const char* const name = std::getenv(variable);
    if (name == nullptr)
        return true;
    std::ofstream file(name, std::ios::binary);
    for (; *texts != nullptr; ++texts)
        file << *texts << '\0';
    return static_cast<bool>(file.flush());
}

/// Waits at the gate, if there is one. Returns false if that fails.
bool waitAtGate() {
    const char* const gate = std::getenv("RECORDER_GATE");
    if (gate == nullptr)
        return true;
    if (const char* const arrivals = std::getenv("RECORDER_ARRIVALS")) {
        std::ofstream announcement(arrivals, std::ios::binary);
        if (!(announcement << '!').flush())
            return false;
    }
    // Opening a FIFO for reading blocks until it is opened for writing.
    return std::ifstream(gate, std::ios::binary).is_open();
}

std::string valueOf(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr ? value : "";
}

} // namespace

int main(int /*count*/, char** arguments) {
    if (!record("RECORDER_FILE", arguments + 1) || !record("RECORDER_ENVIRONMENT", environ) || !waitAtGate())
        return 121;
    std::cerr << valueOf("RECORDER_ERRORS") << std::flush;
    std::cout << valueOf("RECORDER_OUTPUT") << std::flush;
    if (!std::cout || !std::cerr)
        return 121;
    const std::string status = valueOf("RECORDER_STATUS");
    return status.empty() ? 0 : std::stoi(status);
}
