// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string_view>

namespace kinovane::fuzz {

/// The records that a target decodes. The first byte of an input selects one, and the rest is its document.
/// The regression corpus depends on the order: add new records at the end.
template <class... Records>
struct RecordChoice {
    /// Calls `use.template operator()<Record>(document)`.
    template <class Use>
    static void apply(std::string_view input, const Use& use) {
        static constexpr void (*steps[])(std::string_view, const Use&) = {&step<Records, Use>...};
        if (input.empty())
            return;
        const std::size_t choice = static_cast<unsigned char>(input.front()) % sizeof...(Records);
        steps[choice](input.substr(1), use);
    }

  private:
    template <class Record, class Use>
    static void step(std::string_view document, const Use& use) {
        use.template operator()<Record>(document);
    }
};

} // namespace kinovane::fuzz
