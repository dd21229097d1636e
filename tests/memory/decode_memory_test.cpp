// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cstdio>
#include <map>

#include <gtest/gtest.h>

#include "memory/hostile_documents.hpp"
#include "memory/record_types.hpp"
#include "support/heap_count.hpp"

namespace kinovane::test {
namespace {

class DecodeMemory : public testing::TestWithParam<RecordType> {};

// The document itself is not counted.
TEST_P(DecodeMemory, IsBoundedByTheSizeOfTheDocument) {
    struct Worst {
        double ratio = 0;
        std::string sentence;
    };
    std::map<bool, Worst> worst;
    forEachHostileDocument(*GetParam().shape, hostileSize, [&](const HostileDocument& document) {
        SCOPED_TRACE(document.sentence);
        bool accepted = false;
        const std::size_t peak = peakBytesOf([&] { accepted = GetParam().read(document.text); });
        EXPECT_EQ(accepted, document.accepted);
        const double ratio = static_cast<double>(peak) / static_cast<double>(document.text.size());
        EXPECT_LT(ratio, accepted ? 32 : 8);
        if (ratio > worst[accepted].ratio)
            worst[accepted] = {ratio, document.sentence};
    });
    for (const auto& [accepted, most] : worst)
        std::printf("MEMORY %s %s: %.2f times the document, %.60s\n", GetParam().name.c_str(),
                    accepted ? "accepted" : "refused", most.ratio, most.sentence.c_str());
}

const auto nameOf = [](const auto& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(Record, DecodeMemory, testing::ValuesIn(recordTypes()), nameOf);

} // namespace
} // namespace kinovane::test
