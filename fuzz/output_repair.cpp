// SPDX-License-Identifier: Apache-2.0

// The output of a program is repaired as Unicode recommends, also where its bytes were read in two pieces.

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
    promise(repairUTF8(std::string(text)) == expected, "text is repaired as Unicode recommends", text);
    promise(isUTF8(text) == isWellFormed(text), "UTF-8 is told from what is not", text);
    promise(isUTF8(expected), "what was repaired is UTF-8", text);
    std::size_t ascii = 0;
    while (ascii < text.size() && static_cast<unsigned char>(text[ascii]) < 0x80)
        ++ascii;
    promise(asciiLength(text) == ascii, "the plain beginning of a text is measured", text);
    for (std::size_t position = 0; position < text.size(); ++position) {
        const Piece piece = pieceAt(text, position);
        promise(sequenceLength(text, position) == (piece.whole ? piece.length : 0),
                "a character's length is that of its bytes", text.substr(position));
    }
}

/// A pipe that holds a text and whose writer is gone; the text has to fit it.
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

/// Output is read 4 KiB at first, so filling in front of it decides where its bytes are cut.
void compareCapture(std::string_view text, std::size_t cut) {
    constexpr std::size_t firstRead = std::size_t{4} << 10U;
    constexpr std::size_t mostText = std::size_t{16} << 10U;
    text = text.substr(0, mostText);
    std::string written(firstRead - cut % (std::min(text.size(), firstRead) + 1), '.');
    written += text;
    const Descriptor output = pipeHolding(written);
    const Descriptor errors = pipeHolding(text);
    const CapturedOutput captured = captureOutput(output.get(), errors.get());
    promise(captured.output == written && captured.errors == text, "output is captured as it was written",
            text);
    promise(repairUTF8(captured.output) == repaired(written),
            "output is repaired across the pieces it came in", text);
}

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    const std::string_view input = textOf(data, size);
    if (input.empty())
        return 0;
    const auto cut = static_cast<unsigned char>(input.front());
    const std::string_view text = input.substr(1);
    compareRepair(text);
    // The pipes cost far more than the repair, so only few inputs go through them.
    if (text.size() % 16 == 0)
        compareCapture(text, cut);
    return 0;
}
