// SPDX-License-Identifier: Apache-2.0

// Invalid UTF-8 in the output of a program is replaced as Unicode recommends, also where a read() ends within
// a character.

#include <array>
#include <stdexcept>
#include <string>
#include <utility>

#include <unistd.h>

#include "common/files/descriptor.hpp"
#include "common/utf8.hpp"
#include "promise.hpp"
#include "target.hpp"
#include "tooling/process/output_capture.hpp"
#include "unicode.hpp"

namespace kinovane::fuzz {
namespace {

void compareRepair(std::string_view text) {
    const std::string expected = repaired(text);
    promise(repairUTF8(std::string(text)) == expected, "invalid UTF-8 is replaced as Unicode recommends",
            text);
    promise(isUTF8(text) == isWellFormed(text), "valid and invalid UTF-8 are distinguished", text);
    promise(isUTF8(expected), "repaired text is UTF-8", text);
    std::size_t ascii = 0;
    while (ascii < text.size() && static_cast<unsigned char>(text[ascii]) < 0x80)
        ++ascii;
    promise(asciiLength(text) == ascii, "the length of the ASCII prefix is correct", text);
    for (std::size_t position = 0; position < text.size(); ++position) {
        const Sequence sequence = sequenceAt(text, position);
        promise(sequenceLength(text, position) == (sequence.valid ? sequence.length : 0),
                "the length of a character is the number of its bytes", text.substr(position));
    }
}

/// The read end of a pipe that contains the text and whose write end is closed. The text must fit into the
/// pipe.
Descriptor pipeHolding(std::string_view text) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        throw std::runtime_error("no pipe");
    Descriptor reading(ends[0]);
    const Descriptor writing(ends[1]);
    if (::write(writing.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("the pipe is too small");
    return reading;
}

/// The first read() is for 4 KiB, so the length of the filling before the text determines where it is split.
void compareCapture(std::string_view text, std::size_t split) {
    constexpr std::size_t firstRead = std::size_t{4} << 10U;
    constexpr std::size_t maximumText = std::size_t{16} << 10U;
    text = text.substr(0, maximumText);
    std::string written(firstRead - split % (std::min(text.size(), firstRead) + 1), '.');
    written += text;
    const Descriptor output = pipeHolding(written);
    const Descriptor errors = pipeHolding(text);
    const CapturedOutput captured = captureOutput(output.get(), errors.get());
    promise(captured.output == written && captured.errors == text, "output is captured as it was written",
            text);
    promise(repairUTF8(captured.output) == repaired(written),
            "output is repaired across the chunks in which it was read", text);
}

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    const std::string_view input = textOf(data, size);
    if (input.empty())
        return 0;
    const auto split = static_cast<unsigned char>(input.front());
    const std::string_view text = input.substr(1);
    compareRepair(text);
    // Pipes are much slower than the repair, so only some inputs use them.
    if (text.size() % 16 == 0)
        compareCapture(text, split);
    return 0;
}
