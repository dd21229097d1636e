// SPDX-License-Identifier: Apache-2.0

// Long documents made of short inputs, by repeating a part of the input: decoding takes memory in proportion
// to the size of a document, which shows only in documents much longer than the inputs of a fuzzer.

#include <cstddef>
#include <string>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "decoding.hpp"
#include "record_choice.hpp"
#include "target.hpp"

namespace kinovane::fuzz {
namespace {

using Documents = RecordChoice<FilmProject, FilmProductionPlan, FilmTreatment, FilmBrief, FilmDepartmentTask,
                               FilmProductionShot, VistrelHandoff, VistrelHandoffShot, FilmStatusResponse,
                               PiAgentLaunchSpec, QuexRunAgentStatus>;

constexpr std::size_t documentSize = std::size_t{32} << 10U;

/// Repeats `part`. Every "#" in it becomes the number of the repetition, so that keys can differ.
std::string repeated(std::string_view part) {
    std::string text;
    for (std::size_t number = 0; text.size() < documentSize; ++number)
        for (const char character : part)
            if (character == '#')
                text += std::to_string(number);
            else
                text += character;
    return text;
}

struct DecodeRepeated {
    std::size_t begin;
    std::size_t length;

    template <class Record>
    void operator()(std::string_view input) const {
        const std::string_view before = input.substr(0, begin % (input.size() + 1));
        const std::string_view part = input.substr(before.size(), length + 1);
        if (part.empty())
            return;
        std::string document(before);
        document += repeated(part);
        document += input.substr(before.size() + part.size());
        static_cast<void>(decodeWithinMemory<Record>(document));
    }
};

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    if (size < 3)
        return 0;
    // The first three bytes choose where the repeated part begins and how long it is.
    const DecodeRepeated decode{data[0] * std::size_t{256} + data[1], data[2]};
    Documents::apply(textOf(data, size).substr(3), decode);
    return 0;
}
