// Records how it was started: its arguments, each followed by a NUL byte, go into the file that RECORDER_FILE
// names. Then it prints what RECORDER_OUTPUT says, without adding anything.

#include <cstdlib>
#include <fstream>
#include <iostream>

int main(int count, char** arguments) {
    if (const char* name = std::getenv("RECORDER_FILE")) {
        std::ofstream file(name, std::ios::binary);
        for (int index = 1; index < count; ++index)
            file << arguments[index] << '\0';
        if (!file.flush())
            return 1;
    }
    if (const char* output = std::getenv("RECORDER_OUTPUT"))
        std::cout << output;
    return std::cout.flush() ? 0 : 1;
}
