// SPDX-License-Identifier: Apache-2.0

// A film tool or importer that writes a line and never ends by itself.
#include <unistd.h>

int main() {
    constexpr char line[] = "waiting\n";
    if (::write(STDERR_FILENO, line, sizeof(line) - 1) < 0)
        return 1;
    ::pause();
    return 1;
}
